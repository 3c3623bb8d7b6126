#include "analyse/record_csv.h"

#include "analyse/record_json.h"

namespace orvelin::analyse {

namespace {

constexpr std::string_view columns =
    "number,file,line,game,ply,white,black,result,event,date,id,fen,chess960,nodes,depth,score,"
    "centipawns,mate,win,draw,loss,static,best,best_san,line_moves,line_san,leaf_fen,leaf_score,"
    "unexplained,rest,rest_san,rest_score,played,played_san,taken,played_score,mark,lost,accuracy,"
    "sentence,"
    "limit,lines,leaves,played_asked,rest_asked,version,signature";

/// One row that is put together field by field.
class Row {
 public:
    explicit Row(std::string& out) : out_(out) {}

    Row& text(std::string_view field) {
        begin();
        if (field.find_first_of(",\"\r\n") == std::string_view::npos) {
            out_ += field;
            return *this;
        }
        out_ += '"';
        for (char const letter : field) {
            out_.append(letter == '"' ? 2 : 1, letter);
        }
        out_ += '"';
        return *this;
    }
    Row& number(std::int64_t value) {
        begin();
        append_number(out_, value);
        return *this;
    }
    Row& number(std::optional<int> value) {
        return value ? number(std::int64_t{*value}) : text("");
    }
    Row& number(double value) {
        begin();
        append_number(out_, value);
        return *this;
    }
    Row& number(std::optional<double> value) { return value ? number(*value) : text(""); }
    Row& term(float value) {
        begin();
        append_number(out_, value);
        return *this;
    }
    void end() { out_ += "\r\n"; }

 private:
    void begin() {
        if (!first_) {
            out_ += ',';
        }
        first_ = false;
    }

    std::string& out_;
    bool first_ = true;
};

std::string_view first_word(std::string_view words) {
    return words.substr(0, words.find(' '));
}

void add_source(Row& row, Source const& source) {
    row.text(source.file).number(static_cast<std::int64_t>(source.line));
    if (source.game == 0) {
        row.text("").text("");
    } else {
        row.number(static_cast<std::int64_t>(source.game)).number(std::int64_t{source.ply});
    }
    row.text(source.white).text(source.black).text(source.result).text(source.event);
    row.text(source.date).text(source.id);
}

void add_score(Row& row, Record const& record) {
    auto const chances = record.score.chances();
    row.number(std::int64_t{record.score.units}).number(std::int64_t{record.score.centipawns()});
    row.number(record.score.mate());
    row.number(std::int64_t{chances.win}).number(std::int64_t{chances.draw});
    row.number(std::int64_t{chances.loss}).number(std::int64_t{record.static_score});
}

void add_best_line(Row& row, Record const& record) {
    if (record.lines.empty()) {
        for (int i = 0; i < 7; ++i) {
            row.text("");
        }
        return;
    }
    RecordLine const& line = record.lines.front();
    row.text(first_word(line.moves)).text(first_word(line.san)).text(line.moves).text(line.san);
    if (line.leaf) {
        row.text(line.leaf->fen).number(std::int64_t{line.leaf->score});
    } else {
        row.text("").text("");
    }
    row.text(line.unexplained);
}

void add_rest(Row& row, std::optional<RecordLine> const& rest) {
    if (!rest) {
        row.text("").text("").text("");
        return;
    }
    row.text(first_word(rest->moves)).text(first_word(rest->san));
    row.number(std::int64_t{rest->score.units});
}

void add_played(Row& row, std::optional<PlayedMove> const& played) {
    if (!played) {
        for (int i = 0; i < 8; ++i) {
            row.text("");
        }
        return;
    }
    row.text(played->move).text(played->san).text(played->taken);
    if (played->line) {
        row.number(std::int64_t{played->line->score.units});
    } else {
        row.text("");
    }
    if (auto const& judgement = played->judgement) {
        row.text(mark_text(judgement->mark)).number(judgement->lost);
        row.number(judgement->accuracy).text(judgement->sentence);
    } else {
        row.text("").text("").text("").text("");
    }
}

std::string_view yes_or_no(bool value) {
    return value ? "1" : "0";
}

}  // namespace

void append_csv_header(std::string& out) {
    out += columns;
    for (std::string const& name : Weight().names) {
        out += ',';
        out += first_word(name);
    }
    out += "\r\n";
}

void append_csv(std::string& out, Record const& record) {
    Row row(out);
    row.number(static_cast<std::int64_t>(record.number));
    add_source(row, record.source);
    row.text(record.fen).text(yes_or_no(record.chess960));
    row.number(static_cast<std::int64_t>(record.nodes)).number(std::int64_t{record.depth});
    add_score(row, record);
    add_best_line(row, record);
    add_rest(row, record.rest);
    add_played(row, record.played);
    row.text(record.receipt.limit).number(std::int64_t{record.receipt.lines});
    row.text(yes_or_no(record.receipt.leaves)).text(yes_or_no(record.receipt.played));
    row.text(yes_or_no(record.receipt.rest));
    row.text(record.receipt.version).text(record.receipt.signature);
    for (float const value : record.terms) {
        row.term(value);
    }
    row.end();
}

}  // namespace orvelin::analyse
