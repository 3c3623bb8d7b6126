#include "board/board_fixture.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <rapidjson/document.h>
#include <sstream>
#include <utility>

namespace orvelin::board::test {

Answer::Answer(std::string const& text) : document_(std::make_shared<rapidjson::Document>()) {
    constexpr unsigned int flags = rapidjson::kParseIterativeFlag |
                                   rapidjson::kParseValidateEncodingFlag |
                                   rapidjson::kParseFullPrecisionFlag;
    document_->Parse<flags>(text.data(), text.size());
    EXPECT_FALSE(document_->HasParseError()) << text;
}

Answer::Answer(rapidjson::Value const& value) : document_(std::make_shared<rapidjson::Document>()) {
    document_->CopyFrom(value, document_->GetAllocator());
}

rapidjson::Value const& Answer::at(char const* name) const {
    static rapidjson::Value const none;
    bool const there = document_->IsObject() && document_->HasMember(name);
    EXPECT_TRUE(there) << name << ' ' << error();
    return there ? std::as_const(*document_)[name] : none;
}

std::string Answer::text(char const* name) const {
    auto const& value = at(name);
    EXPECT_TRUE(value.IsString()) << name;
    return value.IsString() ? std::string(value.GetString(), value.GetStringLength()) : "";
}

int Answer::number(char const* name) const {
    auto const& value = at(name);
    EXPECT_TRUE(value.IsInt()) << name;
    return value.IsInt() ? value.GetInt() : 0;
}

double Answer::real(char const* name) const {
    auto const& value = at(name);
    EXPECT_TRUE(value.IsNumber()) << name;
    return value.IsNumber() ? value.GetDouble() : 0;
}

bool Answer::flag(char const* name) const {
    auto const& value = at(name);
    EXPECT_TRUE(value.IsBool()) << name;
    return value.IsBool() && value.GetBool();
}

bool Answer::is_null(char const* name) const {
    return at(name).IsNull();
}

Answer Answer::part(char const* name) const {
    return Answer(at(name));
}

std::size_t Answer::size(char const* name) const {
    auto const& value = at(name);
    EXPECT_TRUE(value.IsArray()) << name;
    return value.IsArray() ? value.Size() : 0;
}

Answer Answer::element(char const* name, std::size_t index) const {
    if (index >= size(name)) {
        ADD_FAILURE() << name << " has no element " << index;
        return Answer(rapidjson::Value());
    }
    return Answer(at(name)[static_cast<rapidjson::SizeType>(index)]);
}

std::string Answer::words(char const* name) const {
    std::string words;
    std::size_t const elements = size(name);
    for (std::size_t i = 0; i < elements; ++i) {
        auto const& value = at(name)[static_cast<rapidjson::SizeType>(i)];
        words +=
            (words.empty() ? "" : " ") + std::string(value.IsString() ? value.GetString() : "?");
    }
    return words;
}

std::string Answer::error() const {
    bool const there = document_->IsObject() && document_->HasMember("error");
    return there && (*document_)["error"].IsString() ? (*document_)["error"].GetString() : "";
}

Answer ask(std::string members) {
    std::replace(members.begin(), members.end(), '\'', '"');
    return Answer(shared_core().answer('{' + members + '}'));
}

std::string moves_member(std::string_view moves, char const* name) {
    std::istringstream words{std::string(moves)};
    std::string text;
    for (std::string word; words >> word;) {
        text += (text.empty() ? "'" : ",'") + word + '\'';
    }
    return '\'' + std::string(name) + "':[" + text + ']';
}

}  // namespace orvelin::board::test
