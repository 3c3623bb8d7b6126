// The files that options name: the opening book and the log.

#include <array>
#include <exception>
#include <filesystem>
#include <system_error>

#include "book/bk_move.h"
#include "platform/path.h"
#include "play/book_check.h"
#include "play/front.h"

namespace orvelin::play {

namespace {

/// The name of a file in quotation marks, of a long one its end.
std::string in_quotes(std::string const& name) {
    constexpr std::size_t most = 200;
    return '"' + (name.size() > most ? "..." + name.substr(name.size() - most) : name) + '"';
}

}  // namespace

void Front::apply_log() {
    if (!output_.set_log(options_.log_file)) {
        output_.remark("the log file cannot be opened: " + in_quotes(options_.log_file));
        options_.log_file.clear();
    }
}

// A book that is not where it is expected is no fault until a search asks for it.
void Front::apply_book() {
    static constexpr std::array<char const*, 3> places{
        "/usr/local/games/orvelin.files/Orvelin.bin",
        "/usr/games/orvelin.files/Orvelin.bin",
        "Orvelin.bin",
    };
    book_.close();
    missing_book_told_ = false;
    if (!options_.book_file.empty()) {
        // What is wrong with it has been told by then.
        missing_book_told_ = !open_book(options_.book_file);
        return;
    }
    for (char const* const place : places) {
        std::error_code error;
        if (std::filesystem::is_regular_file(place, error) && open_book(place)) {
            return;
        }
    }
}

// To open a pipe waits until somebody writes into it.
bool Front::open_book(std::string const& name) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path_of(name), error)) {
        output_.remark("the book file cannot be opened: " + in_quotes(name));
        return false;
    }
    BookFaults const faults = check_book(name);
    if (!faults.fatal.empty()) {
        output_.remark("the book file is not used, " + faults.fatal + ": " + in_quotes(name));
        return false;
    }
    if (!faults.remark.empty()) {
        output_.remark("the book file " + faults.remark + ": " + in_quotes(name));
    }
    try {
        book_.set_name(name);
        book_.open();
        return true;
    } catch (std::exception const&) {
        output_.remark("the book file cannot be opened: " + in_quotes(name));
        return false;
    }
}

bool Front::wants_book(GoLimits const& limits) {
    bool const wanted = options_.own_book && !options_.analyse_mode && !limits.infinite &&
                        !limits.ponder && limits.searchmoves.empty();
    if (wanted && !book_.is_open() && !missing_book_told_) {
        missing_book_told_ = true;
        output_.remark("no book is installed, moves are searched");
    }
    return wanted && book_.is_open();
}

bool Front::answer_from_book(GoLimits const& limits) {
    if (!wants_book(limits)) {
        return false;
    }
    ChessPosition& position = searcher_.position();
    hasher_.init(&position);
    BKmove const found(book_.get_move(hasher_.hash()));
    if (found.nomove()) {
        return false;
    }
    std::string const text = found(position).algebraic(true);
    Move const move = find_legal_move(position, searcher_.tables(), text);
    if (move == Move()) {
        output_.remark("the book gives a move that is not legal here, it is searched instead");
        return false;
    }
    output_.remark("book move");
    output_.line("bestmove " + move.algebraic(options_.chess960));
    return true;
}

}  // namespace orvelin::play
