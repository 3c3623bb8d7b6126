#include "analyse/sentence_check.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <optional>

#include "analyse/explanation.h"
#include "analyse/material_balance.h"
#include "analyse/move_deed.h"
#include "analyse/move_reason.h"
#include "analyse/san.h"
#include "analyse/score.h"
#include "analyse/sentence.h"
#include "analyse/sentence_pieces.h"
#include "analyse/sentence_words.h"
#include "analyse/term_names.h"
#include "generation/tables.h"
#include "play/position_reader.h"
#include "play/reader_text.h"
#include "position/chess_position.h"

namespace orvelin::analyse {

namespace {

using std::string_view;

bool has_digit(string_view word) {
    return std::any_of(word.begin(), word.end(),
                       [](char letter) { return letter >= '0' && letter <= '9'; });
}

/// Reads one sentence.
class Reader {
 public:
    Reader(string_view sentence, MoveInGame const& move, Tables const& tables)
        : words_(play::words_of(sentence)), sentence_(sentence), move_(move), tables_(tables) {
        // The difference that is told: a best move is better than the best of the rest.
        better_ = move.is_best() ? move.line() : move.best();
        worse_ = move.is_best() ? move.rest() : move.line();
    }

    std::vector<std::string> faults();

 private:
    void read_word();
    void read_move(string_view word, std::size_t dots);
    void read_change(string_view word);
    void read_score(string_view word);
    void read_mate(string_view word);
    void read_pieces(string_view verb, MaterialBalance const& known, string_view end = "");
    void look_at_pieces();
    bool is_of_a_line(std::vector<Move> const& moves) const;
    void fault(string_view word, char const* why) {
        faults_.push_back(std::string(word) + ' ' + why);
    }

    std::vector<string_view> words_;
    string_view sentence_;
    MoveInGame const& move_;
    Tables const& tables_;
    Line const* better_ = nullptr;
    Line const* worse_ = nullptr;
    std::size_t at_ = 0;
    /// The moves named one after another, from the position on, and whether more may follow.
    std::vector<Move> run_;
    bool run_is_open_ = false;
    std::vector<std::string> faults_;
};

std::vector<std::string> Reader::faults() {
    if (move_.best() == nullptr || move_.line() == nullptr) {
        return sentence_.empty() ? faults_ : std::vector<std::string>{"nothing can be said"};
    }
    if (sentence_.empty() || sentence_.size() > longest_sentence || sentence_.back() != '.') {
        fault(sentence_, "is no sentence of the right length");
    }
    for (; at_ < words_.size(); ++at_) {
        read_word();
    }
    look_at_pieces();
    return faults_;
}

void Reader::read_word() {
    string_view const word = without_stops(words_[at_]);
    std::size_t const digits = std::min(word.find_first_not_of("0123456789"), word.size());
    std::size_t const dots = std::min(word.find_first_not_of('.', digits), word.size()) - digits;
    bool const numbered = digits > 0 && digits + dots < word.size() && (dots == 1 || dots == 3);
    if (numbered && std::isdigit(static_cast<unsigned char>(word[digits + dots])) == 0) {
        read_move(word, dots);
    } else if (word.starts_with('+') || (word.starts_with('-') && word.size() == 4)) {
        read_change(word);
    } else if (at_ >= 2 && words_[at_ - 1] == "in" && words_[at_ - 2] == "mate") {
        read_mate(word);
    } else if (at_ >= 1 && (words_[at_ - 1] == "from" || words_[at_ - 1] == "to") &&
               has_digit(word)) {
        read_score(word);
    } else if (word.starts_with("O-O") || has_digit(word)) {
        read_move(word, 0);
    } else {
        run_is_open_ = false;
    }
}

/// A move right behind another one goes on with its line.
void Reader::read_move(string_view word, std::size_t dots) {
    string_view const text = word.substr(dots == 0 ? 0 : word.find_last_of('.') + 1);
    ChessPosition position(tables_);
    position.fen(move_.fen);
    if (!run_is_open_) {
        bool const is_reply =
            at_ > 0 && (words_[at_ - 1] == "after" || words_[at_ - 1].ends_with(':'));
        run_.clear();
        if (is_reply && word.substr(0, word.size() - text.size()) != move_number_text(position)) {
            run_.push_back(move_.is_best() && sentence_.find("only good") != string_view::npos
                               ? worse_->moves[0]
                               : move_.played);
        }
    }
    for (Move const& made : run_) {
        position.make_move(legal_form(position, tables_, made));
    }
    std::string const number = move_number_text(position);
    if (dots != 0 && word.substr(0, word.size() - text.size()) != number) {
        fault(word, "has not the number of its place");
    }
    FoundMove const found = find_san(play::legal_moves(position, tables_), text);
    if (found.result != san_result::found || san(position, tables_, found.move) != text) {
        fault(word, "is no legal move at its place");
        return;
    }
    run_.push_back(found.move);
    run_is_open_ = without_stops(words_[at_]).size() == words_[at_].size();
    if (!is_of_a_line(run_)) {
        fault(word, "is not of the lines");
    }
}

bool Reader::is_of_a_line(std::vector<Move> const& moves) const {
    std::array<Line const*, 4> const lines{move_.best(), move_.line(), better_, worse_};
    return std::any_of(lines.begin(), lines.end(), [&moves](Line const* line) {
        return line != nullptr && known_moves(*line).size() >= moves.size() &&
               std::equal(moves.begin(), moves.end(), known_moves(*line).begin(), is_same_move);
    });
}

void Reader::read_change(string_view word) {
    if (better_ == nullptr || worse_ == nullptr || better_->why_not != unexplained::none ||
        worse_->why_not != unexplained::none) {
        fault(word, "is of leaves that are not there");
        return;
    }
    string_view const before =
        sentence_.substr(0, static_cast<std::size_t>(words_[at_].data() - sentence_.data()) - 1);
    Explanation const explanation = explain(move_.fen, better_->leaf, worse_->leaf);
    bool named = false;
    auto const compare = [&](string_view name, double change) {
        std::size_t const begin = before.size() - std::min(name.size(), before.size());
        bool const whole = begin == 0 || before[begin - 1] == ' ';
        named |= whole && before.substr(begin) == name &&
                 std::abs(std::strtod(std::string(word).c_str(), nullptr) - change) < 0.0501;
    };
    for (GroupChange const& group : explanation.groups) {
        compare(group_name(group.group), group.change);
        for (TermChange const& one : group.terms) {
            compare(term_names()[one.index].full, one.change);
        }
    }
    if (!named) {
        fault(word, "is the change of no term before it");
    }
}

void Reader::read_score(string_view word) {
    Line const* const line = words_[at_ - 1] == "from" ? better_ : worse_;
    ChessPosition position(tables_);
    position.fen(move_.fen);
    if (line == nullptr || word != eval_text(line->score, position.white_to_move())) {
        fault(word, "is not the score of its line");
    }
}

void Reader::read_mate(string_view word) {
    string_view const verb = without_stops(words_[at_ - 3]);
    bool const of_side = verb == "misses" || verb == "forces";
    Line const* line = verb == "misses" ? move_.best() : move_.line();
    if (verb == "allows" && sentence_.find("only good") != string_view::npos) {
        line = worse_;
    }
    int const mate = line == nullptr ? 0 : Score{line->score}.mate().value_or(0);
    if (mate == 0 || word != std::to_string(of_side ? mate : -mate)) {
        fault(word, "is not the distance of the mate");
    }
}

/// Looks at the text behind the verb, where it has this end.
void Reader::read_pieces(string_view verb, MaterialBalance const& known, string_view end) {
    std::size_t const begin = sentence_.find(verb);
    if (begin == string_view::npos) {
        return;
    }
    string_view text = sentence_.substr(begin + verb.size());
    text = text.substr(
        0, std::min({text.find(", after"), text.find(" and loses "), text.find_first_of(":;.")}));
    if (!text.ends_with(end)) {
        return;
    }
    text.remove_suffix(end.size());
    auto const pieces = pieces_of(text);
    if (!pieces || pieces_of(known) != *pieces) {
        fault(text, "is not what the leaves have more or less");
    }
}

void Reader::look_at_pieces() {
    auto const of_leaf = [this](Line const* line, auto const& count) {
        bool const has_leaf = line != nullptr && line->why_not == unexplained::none;
        return has_leaf ? count(move_, *line) : MaterialBalance();
    };
    MaterialBalance const better = of_leaf(better_, material_change);
    MaterialBalance const worse = of_leaf(worse_, material_change);
    read_pieces(" loses ", -worse);
    read_pieces(" misses winning ", better);
    read_pieces(" ends ", better - worse, " worse");
    bool const back = sentence_.find(" wins back ") != string_view::npos;
    read_pieces(back ? " wins back " : " wins ", of_leaf(better_, material_won));
    if (back && of_leaf(better_, material_after).value() > 0) {
        fault("wins back", "is said of more than was lost");
    }
    bool const is_omitted = better_ != nullptr && recaptures(move_, *better_) &&
                            (worse_ == nullptr || !recaptures(move_, *worse_));
    if (sentence_.find("does not recapture") != string_view::npos && !is_omitted) {
        fault("does not recapture", "is not so");
    }
}

}  // namespace

std::vector<std::string> faults_of_sentence(string_view sentence, MoveInGame const& move,
                                            Tables const& tables) {
    return Reader(sentence, move, tables).faults();
}

}  // namespace orvelin::analyse
