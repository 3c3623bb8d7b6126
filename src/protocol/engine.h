#pragma once

#include <cstddef>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>

#include "book/book.h"
#include "generation/tables.h"
#include "position/chess_position.h"
#include "position/hasher.h"
#include "protocol/communicator.h"
#include "protocol/search_gate.h"
#include "search/action.h"
#include "search/analysis.h"
#include "search/multi_pv.h"

namespace orvelin {

/// Owns the whole chess machinery and translates UCI lines into operations on it.
///
/// All members run on the main thread; the analysis thread, which the constructor starts, runs the
/// one `Analysis` of this object and shares with the driver the control words, the counters and,
/// under its mutex, the lines of `Analysis`. Two state words meet here: the status of `Analysis`
/// says what the search does, the engine state says what the GUI waits for. Keeping the two apart
/// is what lets `bestmove` wait while pondering and under `infinite`. The position belongs to the
/// search while one runs: what a command does to it then waits behind the search gate.
class Engine {
 public:
    /// Builds the tables, opens the opening book if one is found, sets the start position and
    /// starts the analysis thread. The communicator and the log are kept by reference and must
    /// outlive the engine.
    Engine(Communicator& communicator, std::ofstream& log);

    /// Joins the analysis thread: the command `quit` must have been handled before.
    ~Engine();

    Engine(Engine const&) = delete;
    Engine& operator=(Engine const&) = delete;

    /// Takes all waiting lines from the communicator and acts on each. Unknown words are dropped.
    /// Throws `std::logic_error` on bad move text, which nothing catches.
    void from_console();

    /// Reports what the search has found since the last call, and sends `bestmove` when the search
    /// has ended and the GUI waits for it.
    void to_console();

    /// Queues one `info` line for each line of the last copy taken from the search. Nothing is
    /// sent in the first millisecond of a search.
    void send_info(Analysis& analysis);

    /// Queues the `info hashfull` line.
    void send_hashfull(Analysis& analysis);

    /// Whether two option names are the same but for the case of their letters.
    static bool equal_options(std::string first, std::string second);

    /// 1 starts the search and spins until it runs; 2 stops it and spins while it runs. Any other
    /// value does nothing.
    void set_action(char action) { gate_.set_action(static_cast<action_t>(action)); }

    // Parts and state, for tests and tools.

    Analysis& analysis() { return analysis_; }
    Tables const& tables() const { return tables_; }
    ChessPosition const& position() const { return position_; }
    /// The last `position` line, with every `bestmove` that was printed since appended.
    std::string const& position_line() const { return position_line_; }
    /// 0 idle, 1 thinking, 2 pondering, 3 infinite.
    int engine_state() const { return engine_state_; }

 private:
    /// Acts on the rest of one command line; false ends the work on the queue for this tick.
    using handler_t = bool (Engine::*)(std::istringstream& arguments);

    /// The handler of a command word, or null for a word that is none.
    static handler_t find_handler(std::string const& word);

    /// What the GUI waits for.
    enum engine_state_t : int {
        idle = 0,
        thinking = 1,   ///< `bestmove` goes out as soon as the search has ended
        pondering = 2,  ///< `bestmove` is held back
        infinite = 3    ///< `bestmove` is held back
    };

    bool command_ucinewgame(std::istringstream& arguments);
    bool command_eval(std::istringstream& arguments);
    bool command_bench(std::istringstream& arguments);
    bool command_usermove(std::istringstream& arguments);
    bool command_position(std::istringstream& arguments);
    bool command_go(std::istringstream& arguments);
    bool command_ponderhit(std::istringstream& arguments);
    bool command_setoption(std::istringstream& arguments);
    bool command_isready(std::istringstream& arguments);
    bool command_stop(std::istringstream& arguments);
    bool command_quit(std::istringstream& arguments);

    /// Reads the value of an option and acts on it.
    using option_t = void (Engine::*)(std::istringstream& value);

    void option_hash(std::istringstream& value);
    void option_threads(std::istringstream& value);
    void option_ponder(std::istringstream& value);
    void option_ownbook(std::istringstream& value);
    void option_limit_strength(std::istringstream& value);
    void option_elo(std::istringstream& value);
    void option_chess960(std::istringstream& value);
    void option_multipv(std::istringstream& value);
    void option_debug(std::istringstream& value);

    void open_book();
    /// Queues a move of the book as `bestmove`; false when there is none.
    bool answer_from_book();
    /// The same for a position with so many records in its history.
    bool answer_from_book(ChessPosition const& position, std::size_t records);

    bool dispatch();
    void parse_position(std::istringstream& arguments);
    void make_text_move(std::string const& text);
    void reset_go_limits();
    bool read_limit(std::string const& token, std::istringstream& arguments);
    void set_movestogo(int moves);
    void read_searchmoves(std::istringstream& arguments);
    void answer_search();
    std::string bestmove_line(Move const& best_move) const;

    void report_lines(status_t status);
    void take_lines();
    void take_last_lines();
    void send(std::string const& line);
    void write_log(std::string const& line);
    std::string info_line(int index, std::string const& head, std::string const& counts) const;
    void prepare_bench(std::string const& fen);

    Communicator& communicator_;
    Tables tables_;
    ChessPosition position_;
    Analysis analysis_;
    std::thread analysis_thread_;
    Hasher<1> hasher_;  ///< finds the keys for the book
    Book book_;
    int id_;
    MultiPV multipv_;
    std::string command_;
    std::string position_line_;
    bool debug_ = false;
    bool ownbook_ = false;
    bool chess960_ = false;
    bool ponder_ = true;  ///< stored for the option; `go ponder` works whatever it is (oddity 6)
    int hash_value_ = 0;
    std::ofstream& log_;
    bool book_available_ = true;
    int engine_state_ = idle;
    /// The position has a move that the position line lacks.
    bool position_line_lags_ = false;
    SearchGate gate_{analysis_, position_, tables_};
};

}  // namespace orvelin
