#include "play/go_reader.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "play/reader_text.h"

namespace orvelin::play {

namespace {

constexpr std::int64_t longest_time = 1'000'000'000;  // ms, eleven days
constexpr std::int64_t most_nodes = (std::int64_t{1} << 62) - 1;

int to_int(std::int64_t number) {
    return static_cast<int>(number);
}

/// A word that a number follows.
struct number_word_t {
    std::string_view word;
    /// Numbers outside are put into range with a remark.
    std::int64_t low;
    std::int64_t high;
    void (*store)(GoLimits& limits, std::int64_t number);
    /// Below 0 it is a clock that has run out, which GUIs that let the game go on send with every
    /// move: nothing to remark on.
    bool clock = false;
};

constexpr std::array<number_word_t, 10> number_words{{
    {"wtime", 1, longest_time, [](GoLimits& go, std::int64_t n) { go.wtime = milliseconds(n); },
     true},
    {"btime", 1, longest_time, [](GoLimits& go, std::int64_t n) { go.btime = milliseconds(n); },
     true},
    {"winc", 0, longest_time, [](GoLimits& go, std::int64_t n) { go.winc = milliseconds(n); }},
    {"binc", 0, longest_time, [](GoLimits& go, std::int64_t n) { go.binc = milliseconds(n); }},
    {"movetime", 1, longest_time,
     [](GoLimits& go, std::int64_t n) { go.movetime = milliseconds(n); }},
    // 0 is what some GUIs send when there is no control to come. Taken for one move to go it would
    // cost the whole clock.
    {"movestogo", 0, 1000,
     [](GoLimits& go, std::int64_t n) {
         go.movestogo = n > 0 ? std::optional<int>(to_int(n)) : std::nullopt;
     }},
    {"depth", 1, 100, [](GoLimits& go, std::int64_t n) { go.depth = to_int(n); }},
    {"mate", 1, 100, [](GoLimits& go, std::int64_t n) { go.mate = to_int(n); }},
    {"nodes", 1, most_nodes,
     [](GoLimits& go, std::int64_t n) { go.nodes = static_cast<std::uint64_t>(n); }},
    {"perft", 1, 20, [](GoLimits& go, std::int64_t n) { go.perft = to_int(n); }},
}};

number_word_t const* find_number_word(std::string_view word) {
    auto const found =
        std::find_if(number_words.begin(), number_words.end(),
                     [word](number_word_t const& entry) { return entry.word == word; });
    return found == number_words.end() ? nullptr : &*found;
}

bool is_keyword(std::string_view word) {
    return word == "searchmoves" || word == "ponder" || word == "infinite" ||
           find_number_word(word) != nullptr;
}

/// One reading of one line, word by word.
class GoLine {
 public:
    GoLine(std::string_view arguments, std::vector<Move> legal)
        : words_(words_of(arguments)), legal_(std::move(legal)) {}

    GoText read();

 private:
    bool at_keyword_or_end() const { return at_ == words_.size() || is_keyword(words_[at_]); }
    void read_number_for(number_word_t const& entry);
    void read_searchmoves();
    /// What is wrong with a word, which is left out.
    void leave_out(std::string const& fault);
    void refuse_without_end();

    std::vector<std::string_view> words_;
    std::vector<Move> legal_;
    std::size_t at_ = 0;
    GoText text_;
    Remarks remarks_;
    std::string first_fault_;
};

GoText GoLine::read() {
    while (at_ < words_.size()) {
        std::string_view const word = words_[at_++];
        number_word_t const* const entry = find_number_word(word);
        text_.counts = text_.counts || word == "perft";
        if (entry != nullptr) {
            read_number_for(*entry);
        } else if (word == "searchmoves") {
            read_searchmoves();
        } else if (word == "infinite") {
            text_.limits.infinite = true;
        } else if (word == "ponder") {
            text_.limits.ponder = true;
        } else {
            leave_out("go: " + shown(word) + " is unknown");
        }
    }
    text_.remarks = remarks_.take();
    refuse_without_end();
    return std::move(text_);
}

void GoLine::leave_out(std::string const& fault) {
    remarks_.add(fault + ", left out");
    if (first_fault_.empty()) {
        first_fault_ = fault;
    }
}

// A count that cannot be read is no search either, whatever else was given.
void GoLine::refuse_without_end() {
    bool const endless = !text_.limits.says_when_to_end();
    bool const no_count = text_.counts && !text_.limits.perft;
    if (text_.refusal.refused() || first_fault_.empty() || (!endless && !no_count)) {
        return;
    }
    text_.remarks.clear();
    text_.refusal.reason =
        first_fault_ + (no_count ? ", nothing is counted"
                                 : ", and nothing else says when to end: nothing is searched");
}

void GoLine::read_number_for(number_word_t const& entry) {
    std::string const name = "go " + std::string(entry.word) + ": ";
    if (at_keyword_or_end()) {
        leave_out(name + "without a number");
        return;
    }
    std::string_view const value = words_[at_++];
    auto const number = read_number(value);
    if (!number) {
        leave_out(name + shown(value) + " is no number");
        return;
    }
    std::int64_t const used = std::clamp(number->value, entry.low, entry.high);
    entry.store(text_.limits, used);
    if (used != number->value) {
        if (entry.clock && number->value < 0) {
            return;
        }
        remarks_.add(name + shown(value) + " is not in " + std::to_string(entry.low) + " to " +
                     std::to_string(entry.high) + ", " + std::to_string(used) + " is taken");
    } else if (number->had_fraction) {
        remarks_.add(name + shown(value) + " is no whole number, " + std::to_string(used) +
                     " is taken");
    }
}

void GoLine::read_searchmoves() {
    if (at_keyword_or_end()) {
        leave_out("go searchmoves: without a move");
        return;
    }
    std::vector<Move>& chosen = text_.limits.searchmoves;
    while (!at_keyword_or_end()) {
        std::string_view const word = words_[at_++];
        Move const move = find_move(legal_, word);
        if (move.word() == 0) {
            remarks_.add("go searchmoves: " + shown(word) + " is not legal and left out" +
                         promotion_hint(legal_, word));
        } else if (std::find(chosen.begin(), chosen.end(), move) == chosen.end()) {
            chosen.push_back(move);
        }
    }
    text_.refusal.reason = chosen.empty() ? "go searchmoves: none of the moves is legal" : "";
}

}  // namespace

GoText read_go(std::string_view arguments, ChessPosition const& position, Tables const& tables) {
    return GoLine(arguments, legal_moves(position, tables)).read();
}

}  // namespace orvelin::play
