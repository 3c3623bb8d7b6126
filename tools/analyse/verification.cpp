#include "analyse/verification.h"

#include <algorithm>
#include <memory>
#include <rapidjson/document.h>
#include <vector>

#include "analyse/record_json.h"
#include "analyse/record_reader.h"
#include "play/position_reader.h"
#include "play/reader_text.h"
#include "support/counted.h"

namespace orvelin::tools {

namespace {

constexpr unsigned int flags =
    rapidjson::kParseNumbersAsStringsFlag | rapidjson::kParseIterativeFlag;

using value_t = rapidjson::Value;

std::string text_of(value_t const& value) {
    switch (value.GetType()) {
        case rapidjson::kNullType:
            return "null";
        case rapidjson::kFalseType:
            return "false";
        case rapidjson::kTrueType:
            return "true";
        case rapidjson::kObjectType:
            return "an object";
        case rapidjson::kArrayType:
            return counted(value.Size(), "element", "elements");
        default:
            return {value.GetString(), value.GetStringLength()};
    }
}

std::string both(std::string const& path, value_t const& there, value_t const& again) {
    return path + " is " + text_of(there) + ", computed again it is " + text_of(again);
}

/// A pair of values that is still to be compared; without recursion no nesting is too deep.
struct pair_t {
    std::string path;
    value_t const* there;
    value_t const* again;
};

/// The pairs within two objects or arrays, or why they differ as such.
std::string open_pair(pair_t const& pair, std::vector<pair_t>& pairs) {
    value_t const& there = *pair.there;
    value_t const& again = *pair.again;
    if (there.GetType() != again.GetType()) {
        return both(pair.path, there, again);
    }
    if (there.IsArray()) {
        if (there.Size() != again.Size()) {
            return both(pair.path, there, again);
        }
        for (rapidjson::SizeType i = 0; i < there.Size(); ++i) {
            pairs.push_back({pair.path + '[' + std::to_string(i) + ']', &there[i], &again[i]});
        }
        return "";
    }
    if (!there.IsObject()) {
        return there == again ? "" : both(pair.path, there, again);
    }
    std::string const before = pair.path.empty() ? "" : pair.path + '.';
    for (auto const& member : again.GetObject()) {
        auto const found = there.FindMember(member.name);
        std::string path = before + member.name.GetString();
        if (found == there.MemberEnd()) {
            return path + " is missing";
        }
        pairs.push_back({std::move(path), &found->value, &member.value});
    }
    for (auto const& member : there.GetObject()) {
        if (!again.HasMember(member.name)) {
            return before + member.name.GetString() + " is not known";
        }
    }
    return "";
}

void refuse_other_program(analyse::Receipt const& there, analyse::Receipt const& here) {
    if (there.version != here.version) {
        throw RecordError("written by version " + there.version + "; this is version " +
                          here.version);
    }
    if (there.signature != here.signature) {
        throw RecordError("written with the search signature " + there.signature +
                          "; the one of this program is " + here.signature);
    }
}

Request request_of(analyse::Record const& record) {
    auto const limit = analyse::parse_limit(record.receipt.limit);
    if (!limit) {
        throw RecordError("field receipt.limit: unknown limit " +
                          play::shown(record.receipt.limit));
    }
    if (record.receipt.lines < 1 || record.receipt.lines > analyse::most_lines) {
        throw RecordError("field receipt.lines: not from 1 to " +
                          std::to_string(analyse::most_lines));
    }
    return {*limit, record.receipt.lines, record.receipt.leaves, record.receipt.played,
            record.receipt.rest};
}

Asked asked_of(analyse::Record const& record, analyse::LineText& text) {
    std::vector<std::string> remarks;
    std::string fen;
    play::Refusal const refusal = play::check_fen(record.fen, remarks, fen);
    if (refusal.refused() || fen != record.fen) {
        throw RecordError("field fen: " +
                          (refusal.refused() ? refusal.reason : "not as it is written"));
    }
    Asked asked{record.number, record.source, record.fen, record.chess960, Move(), {}, {}};
    if (record.played) {
        asked.played = text.legal_move(fen, record.played->move);
        if (asked.played.word() == 0) {
            throw RecordError("field played.move: " + play::shown(record.played->move) +
                              " is not legal");
        }
        asked.taken = analyse::parse_taken(record.played->taken);
        if (!asked.taken && !record.played->taken.empty()) {
            throw RecordError("field played.taken: not a piece and a square: " +
                              play::shown(record.played->taken));
        }
    }
    return asked;
}

}  // namespace

std::string first_difference(std::string_view there, std::string_view again) {
    rapidjson::Document first;
    rapidjson::Document second;
    first.Parse<flags>(there.data(), there.size());
    second.Parse<flags>(again.data(), again.size());
    if (first.HasParseError() || second.HasParseError()) {
        return "no JSON";
    }
    std::vector<pair_t> pairs{{"", &first, &second}};
    while (!pairs.empty()) {
        pair_t const pair = std::move(pairs.back());
        pairs.pop_back();
        std::size_t const below = pairs.size();
        std::string difference = open_pair(pair, pairs);
        if (!difference.empty()) {
            return difference;
        }
        // The last one is taken first.
        std::reverse(pairs.begin() + static_cast<std::ptrdiff_t>(below), pairs.end());
    }
    return there == again ? "" : "the fields are equal, but not written alike";
}

std::optional<std::string> Verification::difference(std::string_view line) {
    analyse::Record const record = read_record(line);
    Request const request = request_of(record);
    refuse_other_program(record.receipt, request.receipt());
    std::string again;
    analyse::append_json(again, answerer_->answer(asked_of(record, text_), request));
    again.pop_back();
    if (again == line) {
        return std::nullopt;
    }
    return first_difference(line, again);
}

bool in_sample(std::uint64_t number, double share) {
    // The numbers are mixed, so that the share is that of every shard and every game too.
    std::uint64_t mixed = number + 0x9E3779B97F4A7C15U;
    mixed = (mixed ^ mixed >> 30) * 0xBF58476D1CE4E5B9U;
    mixed = (mixed ^ mixed >> 27) * 0x94D049BB133111EBU;
    mixed ^= mixed >> 31;
    constexpr double range = 9007199254740992.0;
    return static_cast<double>(mixed >> 11) < share * range;
}

}  // namespace orvelin::tools
