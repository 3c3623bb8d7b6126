#include "analyse/record_reader.h"

#include <charconv>
#include <limits>
#include <rapidjson/document.h>
#include <rapidjson/error/en.h>
#include <string>

namespace orvelin::tools {

namespace {

/// Numbers are kept as texts: as a double a float would be rounded twice. Without recursion no
/// nesting is too deep.
constexpr unsigned int flags = rapidjson::kParseNumbersAsStringsFlag |
                               rapidjson::kParseIterativeFlag |
                               rapidjson::kParseValidateEncodingFlag;

/// A value and where it stands, for messages.
class Field {
 public:
    Field(rapidjson::Value const& value, std::string path)
        : value_(value), path_(std::move(path)) {}

    Field operator[](char const* name) const {
        if (!value_.IsObject()) {
            fail("an object is expected");
        }
        auto const member = value_.FindMember(name);
        std::string const path = path_.empty() ? name : path_ + '.' + name;
        if (member == value_.MemberEnd()) {
            throw RecordError("no field " + path);
        }
        return {member->value, path};
    }
    bool has(char const* name) const { return value_.IsObject() && value_.HasMember(name); }
    bool is_null() const { return value_.IsNull(); }

    std::size_t size() const {
        if (!value_.IsArray()) {
            fail("an array is expected");
        }
        return value_.Size();
    }
    Field operator[](std::size_t index) const {
        return {value_[static_cast<rapidjson::SizeType>(index)],
                path_ + '[' + std::to_string(index) + ']'};
    }

    std::string text() const {
        if (!value_.IsString()) {
            fail("a text is expected");
        }
        return {value_.GetString(), value_.GetStringLength()};
    }
    bool flag() const {
        if (!value_.IsBool()) {
            fail("true or false is expected");
        }
        return value_.GetBool();
    }
    template <typename Number>
    Number number() const {
        Number number{};
        if (!value_.IsString()) {
            fail("a number is expected");
        }
        char const* const end = value_.GetString() + value_.GetStringLength();
        auto const read = std::from_chars(value_.GetString(), end, number);
        if (read.ec == std::errc::result_out_of_range) {
            fail("the number is too large");
        }
        if (read.ec != std::errc() || read.ptr != end) {
            fail("a number is expected");
        }
        return number;
    }
    /// A number of the engine, far inside what its arithmetic takes.
    int score() const {
        constexpr int most = 1000000;
        int const units = number<int>();
        if (units < -most || units > most) {
            fail("the number is too large");
        }
        return units;
    }

 private:
    [[noreturn]] void fail(std::string const& what) const {
        throw RecordError((path_.empty() ? "the line" : "field " + path_) + ": " + what);
    }

    rapidjson::Value const& value_;
    std::string path_;
};

analyse::term_scores_t read_terms(Field const& field) {
    analyse::term_scores_t terms{};
    if (field.size() != terms.size()) {
        throw RecordError("not " + std::to_string(terms.size()) + " terms but " +
                          std::to_string(field.size()));
    }
    for (std::size_t i = 0; i < terms.size(); ++i) {
        terms[i] = field[i].number<float>();
    }
    return terms;
}

analyse::Source read_source(Field const& field) {
    analyse::Source source;
    source.file = field["file"].text();
    source.line = field["line"].number<std::uint64_t>();
    if (field.has("game")) {
        source.game = field["game"].number<std::uint64_t>();
        source.ply = field["ply"].number<int>();
        source.white = field["white"].text();
        source.black = field["black"].text();
        source.result = field["result"].text();
        source.event = field["event"].text();
        source.date = field["date"].text();
    }
    if (field.has("id")) {
        source.id = field["id"].text();
    }
    return source;
}

/// The chances follow from the score, but where the game is drawn.
analyse::Score read_score(Field const& field) {
    constexpr int certain = 1000;
    return {field["score"].score(), field["draw"].number<int>() == certain};
}

analyse::RecordLine read_line(Field const& field) {
    analyse::RecordLine line;
    line.depth = field["depth"].number<int>();
    line.score = read_score(field);
    line.at_least = field["at_least"].flag();
    line.moves = field["moves"].text();
    line.san = field["san"].text();
    Field const leaf = field["leaf"];
    if (leaf.is_null()) {
        line.unexplained = field["unexplained"].text();
    } else {
        line.leaf = {leaf["moves"].text(), leaf["fen"].text(), leaf["score"].score(),
                     leaf["fading"].number<float>(), read_terms(leaf["terms"])};
    }
    return line;
}

analyse::RecordJudgement read_judgement(Field const& field) {
    analyse::RecordJudgement judgement;
    auto const mark = analyse::parse_mark(field["mark"].text());
    if (!mark) {
        throw RecordError("field played.judgement.mark: unknown mark");
    }
    judgement.mark = *mark;
    judgement.lost = field["lost"].number<double>();
    if (!field["accuracy"].is_null()) {
        judgement.accuracy = field["accuracy"].number<double>();
    }
    judgement.sentence = field["sentence"].text();
    return judgement;
}

std::optional<analyse::PlayedMove> read_played(Field const& field) {
    if (field.is_null()) {
        return std::nullopt;
    }
    analyse::PlayedMove played;
    played.move = field["move"].text();
    played.san = field["san"].text();
    if (!field["taken"].is_null()) {
        played.taken = field["taken"].text();
    }
    if (!field["line"].is_null()) {
        played.line = read_line(field["line"]);
    }
    if (!field["judgement"].is_null()) {
        played.judgement = read_judgement(field["judgement"]);
    }
    return played;
}

analyse::Receipt read_receipt(Field const& field) {
    return {field["limit"].text(),    field["lines"].number<int>(), field["leaves"].flag(),
            field["played"].flag(),   field["rest"].flag(),         field["version"].text(),
            field["signature"].text()};
}

void refuse_other_schema(Field const& root) {
    int const schema = root["schema"].number<int>();
    if (schema != analyse::record_schema) {
        throw RecordError("schema " + std::to_string(schema) + "; this program knows " +
                          std::to_string(analyse::record_schema));
    }
}

}  // namespace

analyse::Record read_record(std::string_view line) {
    rapidjson::Document document;
    document.Parse<flags>(line.data(), line.size());
    if (document.HasParseError()) {
        throw RecordError("no JSON at byte " + std::to_string(document.GetErrorOffset() + 1) +
                          ": " + rapidjson::GetParseError_En(document.GetParseError()));
    }
    Field const root(document, "");
    refuse_other_schema(root);
    analyse::Record record;
    record.number = root["number"].number<std::uint64_t>();
    record.source = read_source(root["source"]);
    record.fen = root["fen"].text();
    record.chess960 = root["chess960"].flag();
    record.nodes = root["nodes"].number<std::uint64_t>();
    record.depth = root["depth"].number<int>();
    record.score = read_score(root);
    record.static_score = root["static"].score();
    record.terms = read_terms(root["terms"]);
    Field const lines = root["lines"];
    for (std::size_t i = 0; i < lines.size(); ++i) {
        record.lines.push_back(read_line(lines[i]));
    }
    if (!root["rest"].is_null()) {
        record.rest = read_line(root["rest"]);
    }
    record.played = read_played(root["played"]);
    record.receipt = read_receipt(root["receipt"]);
    return record;
}

std::uint64_t record_number(std::string_view line) {
    static std::string const begin =
        "{\"schema\":" + std::to_string(analyse::record_schema) + ",\"number\":";
    std::uint64_t number = 0;
    if (!line.starts_with(begin)) {
        return 0;
    }
    char const* const end = line.data() + line.size();
    auto const read = std::from_chars(line.data() + begin.size(), end, number);
    return read.ec == std::errc() && read.ptr != end && *read.ptr == ',' ? number : 0;
}

}  // namespace orvelin::tools
