#include "board/request.h"

#include <rapidjson/document.h>
#include <rapidjson/error/en.h>

namespace orvelin::board {

namespace {

/// Without recursion no nesting is too deep.
constexpr unsigned int flags =
    rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag;

using value_t = rapidjson::Value;

[[noreturn]] void refuse(char const* name, std::string const& wanted) {
    throw RequestError(std::string(name) + ": " + wanted + " is expected");
}

std::string_view text_of(value_t const& value) {
    return {value.GetString(), value.GetStringLength()};
}

}  // namespace

struct Request::State {
    /// Empty for a part.
    rapidjson::Document document;
    value_t const* object = nullptr;

    /// Null when there is none.
    value_t const* find(char const* name) const {
        auto const member = object->FindMember(name);
        bool const there = member != object->MemberEnd() && !member->value.IsNull();
        return there ? &member->value : nullptr;
    }
};

Request::Request(std::string_view json) : state_(std::make_unique<State>()) {
    if (json.size() > most_bytes) {
        throw RequestError("the request is longer than " + std::to_string(most_bytes) + " bytes");
    }
    rapidjson::Document& document = state_->document;
    document.Parse<flags>(json.data(), json.size());
    if (document.HasParseError()) {
        throw RequestError("no JSON, at byte " + std::to_string(document.GetErrorOffset()) + ": " +
                           rapidjson::GetParseError_En(document.GetParseError()));
    }
    if (!document.IsObject()) {
        throw RequestError("a request is an object");
    }
    state_->object = &document;
}

Request::Request(std::unique_ptr<State> state) : state_(std::move(state)) {}

Request::~Request() = default;

Request::Request(Request&&) noexcept = default;

Request& Request::operator=(Request&&) noexcept = default;

std::string_view Request::text(char const* name) const {
    value_t const* const value = state_->find(name);
    if (value == nullptr || !value->IsString()) {
        refuse(name, "a text");
    }
    return text_of(*value);
}

std::string_view Request::text(char const* name, std::string_view otherwise) const {
    return state_->find(name) == nullptr ? otherwise : text(name);
}

bool Request::flag(char const* name) const {
    value_t const* const value = state_->find(name);
    if (value != nullptr && !value->IsBool()) {
        refuse(name, "true or false");
    }
    return value != nullptr && value->GetBool();
}

std::optional<std::int64_t> Request::number(char const* name) const {
    value_t const* const value = state_->find(name);
    if (value == nullptr) {
        return std::nullopt;
    }
    if (!value->IsInt64()) {
        refuse(name, "a whole number");
    }
    return value->GetInt64();
}

std::int64_t Request::number(char const* name, std::int64_t otherwise, std::int64_t least,
                             std::int64_t most) const {
    std::int64_t const value = number(name).value_or(otherwise);
    if (value < least || value > most) {
        refuse(name, "a number from " + std::to_string(least) + " to " + std::to_string(most));
    }
    return value;
}

std::vector<std::string_view> Request::texts(char const* name, std::size_t most) const {
    std::vector<std::string_view> texts;
    value_t const* const value = state_->find(name);
    if (value == nullptr) {
        return texts;
    }
    if (!value->IsArray()) {
        refuse(name, "an array of texts");
    }
    if (value->Size() > most) {
        throw RequestError(std::string(name) + ": there are " + std::to_string(value->Size()) +
                           ", more than " + std::to_string(most));
    }
    for (value_t const& element : value->GetArray()) {
        if (!element.IsString()) {
            refuse(name, "an array of texts");
        }
        texts.push_back(text_of(element));
    }
    return texts;
}

std::optional<Request> Request::part(char const* name) const {
    value_t const* const value = state_->find(name);
    if (value == nullptr) {
        return std::nullopt;
    }
    if (!value->IsObject()) {
        refuse(name, "an object");
    }
    auto state = std::make_unique<State>();
    state->object = value;
    return Request(std::move(state));
}

std::vector<std::pair<std::string_view, std::string_view>> Request::pairs(char const* name) const {
    std::vector<std::pair<std::string_view, std::string_view>> pairs;
    value_t const* const value = state_->find(name);
    if (value == nullptr) {
        return pairs;
    }
    if (!value->IsObject()) {
        refuse(name, "an object");
    }
    for (auto const& member : value->GetObject()) {
        if (!member.value.IsString()) {
            refuse(name, "an object of texts");
        }
        pairs.emplace_back(text_of(member.name), text_of(member.value));
    }
    return pairs;
}

}  // namespace orvelin::board
