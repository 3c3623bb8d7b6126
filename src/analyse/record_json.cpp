#include "analyse/record_json.h"

#include <array>
#include <charconv>
#include <string_view>

#include "platform/language.h"
#include "platform/shortest_number.h"

namespace orvelin::analyse {

namespace {

constexpr std::size_t room = 32;

template <typename Number>
void append_shortest(std::string& out, Number value) {
    std::array<char, room> digits;
    out.append(digits.data(), write_shortest(digits.data(), value));
}

void append_shortest(std::string& out, std::int64_t value) {
    std::array<char, room> digits;
    auto const written = std::to_chars(digits.data(), digits.data() + digits.size(), value);
    out.append(digits.data(), written.ptr);
}

/// The text up to the value must be a literal that needs no escape.
void append_field(std::string& out, std::string_view before, std::string_view text) {
    out += before;
    append_json_text(out, text);
}

void append_field(std::string& out, std::string_view before, std::int64_t value) {
    out += before;
    append_shortest(out, value);
}

void append_flag(std::string& out, std::string_view before, bool value) {
    out += before;
    out += value ? "true" : "false";
}

void append_terms(std::string& out, term_scores_t const& terms) {
    out += ",\"terms\":[";
    char before = 0;
    for (float const value : terms) {
        if (before != 0) {
            out += before;
        }
        before = ',';
        append_number(out, value);
    }
    out += ']';
}

void append_score(std::string& out, Score const& score) {
    append_field(out, ",\"score\":", score.units);
    append_field(out, ",\"centipawns\":", score.centipawns());
    if (auto const mate = score.mate()) {
        append_field(out, ",\"mate\":", *mate);
    } else {
        out += ",\"mate\":null";
    }
    auto const chances = score.chances();
    append_field(out, ",\"win\":", chances.win);
    append_field(out, ",\"draw\":", chances.draw);
    append_field(out, ",\"loss\":", chances.loss);
}

void append_source(std::string& out, Source const& source) {
    append_field(out, ",\"source\":{\"file\":", source.file);
    append_field(out, ",\"line\":", static_cast<std::int64_t>(source.line));
    if (source.game > 0) {
        append_field(out, ",\"game\":", static_cast<std::int64_t>(source.game));
        append_field(out, ",\"ply\":", source.ply);
        append_field(out, ",\"white\":", source.white);
        append_field(out, ",\"black\":", source.black);
        append_field(out, ",\"result\":", source.result);
        append_field(out, ",\"event\":", source.event);
        append_field(out, ",\"date\":", source.date);
    } else if (!source.id.empty()) {
        append_field(out, ",\"id\":", source.id);
    }
    out += '}';
}

void append_line(std::string& out, RecordLine const& line) {
    append_field(out, "{\"depth\":", line.depth);
    append_score(out, line.score);
    append_flag(out, ",\"at_least\":", line.at_least);
    append_field(out, ",\"moves\":", line.moves);
    append_field(out, ",\"san\":", line.san);
    if (!line.leaf) {
        append_field(out, ",\"unexplained\":", line.unexplained);
        out += ",\"leaf\":null}";
        return;
    }
    append_field(out, ",\"unexplained\":null,\"leaf\":{\"moves\":", line.leaf->moves);
    append_field(out, ",\"fen\":", line.leaf->fen);
    append_field(out, ",\"score\":", line.leaf->score);
    out += ",\"fading\":";
    append_number(out, line.leaf->fading);
    append_terms(out, line.leaf->terms);
    out += "}}";
}

void append_optional_line(std::string& out, std::string_view before,
                          std::optional<RecordLine> const& line) {
    out += before;
    if (line) {
        append_line(out, *line);
    } else {
        out += "null";
    }
}

void append_judgement(std::string& out, std::optional<RecordJudgement> const& judgement) {
    if (!judgement) {
        out += ",\"judgement\":null";
        return;
    }
    append_field(out, ",\"judgement\":{\"mark\":", mark_text(judgement->mark));
    out += ",\"lost\":";
    append_number(out, judgement->lost);
    out += ",\"accuracy\":";
    if (judgement->accuracy) {
        append_number(out, *judgement->accuracy);
    } else {
        out += "null";
    }
    append_field(out, ",\"sentence\":", judgement->sentence);
    out += '}';
}

void append_played(std::string& out, std::optional<PlayedMove> const& played) {
    if (!played) {
        out += ",\"played\":null";
        return;
    }
    append_field(out, ",\"played\":{\"move\":", played->move);
    append_field(out, ",\"san\":", played->san);
    if (played->taken.empty()) {
        out += ",\"taken\":null";
    } else {
        append_field(out, ",\"taken\":", played->taken);
    }
    append_optional_line(out, ",\"line\":", played->line);
    append_judgement(out, played->judgement);
    out += '}';
}

void append_receipt(std::string& out, Receipt const& receipt) {
    append_field(out, ",\"receipt\":{\"limit\":", receipt.limit);
    append_field(out, ",\"lines\":", receipt.lines);
    append_flag(out, ",\"leaves\":", receipt.leaves);
    append_flag(out, ",\"played\":", receipt.played);
    append_flag(out, ",\"rest\":", receipt.rest);
    append_field(out, ",\"version\":", receipt.version);
    append_field(out, ",\"signature\":", receipt.signature);
    out += '}';
}

bool is_plain(char letter) {
    return static_cast<unsigned char>(letter) >= 0x20 && letter != '"' && letter != '\\';
}

void append_escaped(std::string& out, char letter) {
    constexpr std::string_view digits = "0123456789abcdef";
    if (letter == '"' || letter == '\\') {
        out += '\\';
        out += letter;
        return;
    }
    auto const code = static_cast<unsigned char>(letter);
    out += "\\u00";
    out += digits[code >> 4];
    out += digits[code & 0xF];
}

}  // namespace

void append_json_text(std::string& out, std::string_view text) {
    out += '"';
    std::size_t begin = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (!is_plain(text[at])) {
            out += text.substr(begin, at - begin);
            append_escaped(out, text[at]);
            begin = at + 1;
        }
    }
    out += text.substr(begin);
    out += '"';
}

void append_number(std::string& out, float value) {
    // Most terms of a position are this, and the conversion takes its time.
    if (bit_cast<std::uint32_t>(value) == 0) {
        out += '0';
        return;
    }
    append_shortest(out, value);
}

void append_number(std::string& out, double value) {
    append_shortest(out, value);
}

void append_number(std::string& out, std::int64_t value) {
    append_shortest(out, value);
}

void append_json(std::string& out, Record const& record) {
    append_field(out, "{\"schema\":", record_schema);
    append_field(out, ",\"number\":", static_cast<std::int64_t>(record.number));
    append_source(out, record.source);
    append_field(out, ",\"fen\":", record.fen);
    append_flag(out, ",\"chess960\":", record.chess960);
    append_field(out, ",\"nodes\":", static_cast<std::int64_t>(record.nodes));
    append_field(out, ",\"depth\":", record.depth);
    append_score(out, record.score);
    append_field(out, ",\"static\":", record.static_score);
    append_terms(out, record.terms);
    out += ",\"lines\":[";
    for (std::size_t i = 0; i < record.lines.size(); ++i) {
        if (i > 0) {
            out += ',';
        }
        append_line(out, record.lines[i]);
    }
    out += ']';
    append_optional_line(out, ",\"rest\":", record.rest);
    append_played(out, record.played);
    append_receipt(out, record.receipt);
    out += "}\n";
}

}  // namespace orvelin::analyse
