#include <iostream>
#include <stdexcept>

#include "protocol/arguments.h"
#include "protocol/engine.h"

namespace orvelin {

namespace {

constexpr char const* test_position = "b4bN1/4p1p1/1Q1p2K1/q1np4/3p1Rnk/6pr/4Rppr/3N4 w - - 0 1";

/// A line in two at its last blank. The blank is looked for down to index 1; without one there
/// the head is empty and the last word is the text from index 1 on.
struct split_line_t {
    std::string head;
    std::string last_word;
};

split_line_t split_at_last_blank(std::string const& line) {
    std::size_t const blank = line.rfind(' ');
    if (blank == std::string::npos) {
        return {"", line.substr(1)};
    }
    return {line.substr(0, blank), line.substr(blank + 1)};
}

/// Six words, whatever they are (oddity 12).
std::string read_fen(std::istringstream& arguments) {
    std::string fen = read_token(arguments);
    for (int field = 1; field < 6; ++field) {
        fen += ' ' + read_token(arguments);
    }
    return fen;
}

}  // namespace

// A running search is not stopped, so the new game begins behind it.
bool Engine::command_ucinewgame(std::istringstream&) {
    gate_.do_between_searches([this] {
        position_.newgame();
        analysis_.clear_hash();
        analysis_.clear_killer();
        analysis_.clear_history();
        position_line_.clear();
        position_line_lags_ = false;
    });
    return true;
}

// In a running game the GUI appends its move to the line that the engine already holds, so
// only that move is made; anything else is parsed in full. After a stopped search the position has
// a move that the line lacks, so that the next line is parsed in full whatever it says.
// The last word is taken for a move also where it is none (oddity 11). A search ends without an
// answer, and the state stays as it was (oddities 13 and 14).
bool Engine::command_position(std::istringstream& arguments) {
    if (gate_.search_runs_or_waits()) {
        set_action(2);
    }
    gate_.catch_up();
    command_.erase(command_.find_last_not_of(' ') + 1);
    split_line_t const split = split_at_last_blank(command_);
    bool const one_move_more = split.head == position_line_ && !position_line_lags_;
    position_line_ = command_;
    position_line_lags_ = false;
    if (one_move_more) {
        make_text_move(split.last_word);
    } else {
        parse_position(arguments);
    }
    analysis_.init(position_);
    analysis_.reset();
    return true;
}

void Engine::parse_position(std::istringstream& arguments) {
    std::string const kind = read_token(arguments);
    if (kind == "startpos") {
        position_.newgame();
    } else if (kind == "testpos") {
        position_.fen(test_position);
    } else if (kind == "fen") {
        position_.fen(read_fen(arguments));
    }
    if (read_token(arguments) != "moves") {
        return;
    }
    for (std::string move = read_token(arguments); !move.empty(); move = read_token(arguments)) {
        make_text_move(move);
    }
}

void Engine::make_text_move(std::string const& text) {
    position_.make_move(position_.convert_to_move(text));
}

bool Engine::command_usermove(std::istringstream& arguments) {
    gate_.require_no_search();
    std::string const text = read_token(arguments);
    Move move;
    try {
        move = position_.convert_to_move(text);
    } catch (std::logic_error const&) {
        std::cerr << position_.fen() << "    move=" << text << std::endl;
        throw std::logic_error("Engine::from_console() error");
    }
    position_.make_move(move);
    analysis_.init(position_);
    analysis_.reset();
    return true;
}

}  // namespace orvelin
