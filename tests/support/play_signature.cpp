#include "support/play_signature.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

#include "play/go_reader.h"
#include "play/output.h"
#include "play/position_reader.h"
#include "play/report.h"
#include "play/searcher.h"
#include "search/score.h"
#include "support/data_file.h"

namespace orvelin::test {

namespace {

using words_t = std::vector<std::string>;

constexpr play::ReportStyle engine_style{.engine_units = true};

/// The word behind the name, at the latest place; empty when there is none.
std::string word_behind(std::string const& name, words_t const& words) {
    auto const found = std::find(words.rbegin(), words.rend(), name);
    return found == words.rend() || found == words.rbegin() ? "" : *(found - 1);
}

int number_behind(std::string const& name, words_t const& words) {
    return std::stoi(word_behind(name, words));
}

/// Whether the front leaves the search out.
bool ends_session(session_command_t const& command) {
    return command.text == "go depth 0";
}

/// The iteration that a limit of nodes ends is told by either in its own way.
bool is_cut(std::string const& nodes, session_command_t const& command) {
    std::string const limit = word_behind("nodes", split_words(command.text));
    return !limit.empty() && std::stoull(nodes) >= std::stoull(limit);
}

std::string iteration_text(std::string const& depth, std::string const& score,
                           std::string const& nodes, std::string const& move) {
    return "it " + depth + ' ' + score + " nodes " + nodes + ' ' + move;
}

/// Told again with another window, where one line is searched.
bool out_of_window(words_t const& words, bool one_line) {
    int const score = number_behind("score", words);
    int const alpha = number_behind("alpha", words);
    int const beta = number_behind("beta", words);
    return one_line && ((score <= alpha && alpha != -infinite_score) ||
                        (score >= beta && beta != infinite_score));
}

std::string recorded_score(words_t const& words) {
    return play::score_text(number_behind("score", words), engine_style);
}

std::vector<std::string> recorded_answer(session_command_t const& command) {
    words_t const best = split_words(command.answer.back());
    if (word_behind("best", best) == "0000") {
        return {"best 0000"};
    }
    bool const one_line =
        std::find(command.answer.begin(), command.answer.end(), "lines 1") != command.answer.end();
    std::vector<std::string> rows;
    for (std::string const& line : command.answer) {
        words_t const words = split_words(line);
        if (words[0] == "it" && !out_of_window(words, one_line) &&
            !is_cut(word_behind("nodes", words), command)) {
            rows.push_back(iteration_text(words[1], recorded_score(words),
                                          word_behind("nodes", words), word_behind("pv", words)));
        } else if (words[0] == "line") {
            rows.push_back("line " + recorded_score(words) + ' ' + words.at(5));
        }
    }
    rows.push_back("best " + best[1] + " nodes " + word_behind("nodes", best));
    return rows;
}

/// What the searcher has written, line by line.
class Report {
 public:
    Report() : descriptor_(memfd_create("report", MFD_CLOEXEC)), output_(descriptor_) {
        if (descriptor_ < 0) {
            throw std::runtime_error("no file in memory");
        }
    }
    ~Report() { close(descriptor_); }
    Report(Report const&) = delete;
    Report& operator=(Report const&) = delete;

    play::Output& output() { return output_; }

    /// The lines since the last call.
    std::vector<words_t> take() {
        std::string text;
        std::array<char, 4096> buffer;
        for (ssize_t count = 0;
             (count = pread(descriptor_, buffer.data(), buffer.size(), read_)) > 0;
             read_ += count) {
            text.append(buffer.data(), static_cast<std::size_t>(count));
        }
        std::vector<words_t> lines;
        std::istringstream stream(text);
        for (std::string line; std::getline(stream, line);) {
            lines.push_back(split_words(line));
        }
        return lines;
    }

 private:
    int descriptor_;
    play::Output output_;
    off_t read_ = 0;
};

std::string told_score(words_t const& words) {
    std::string const kind = word_behind("score", words);
    return "score " + kind + ' ' + word_behind(kind, words);
}

std::vector<std::string> told_answer(std::vector<words_t> const& report,
                                     session_command_t const& command) {
    std::string const best = word_behind("bestmove", report.back());
    if (best == "0000") {
        return {"best 0000"};
    }
    std::vector<std::string> rows;
    std::vector<std::string> lines;
    std::string nodes;
    for (words_t const& words : report) {
        std::string const move = word_behind("pv", words);
        nodes = word_behind("nodes", words).empty() ? nodes : word_behind("nodes", words);
        if (move.empty()) {
            continue;
        }
        std::string const rank = word_behind("multipv", words);
        if (rank.empty() || rank == "1") {
            lines.clear();
            if (!is_cut(nodes, command)) {
                rows.push_back(
                    iteration_text(word_behind("depth", words), told_score(words), nodes, move));
            }
        }
        lines.push_back("line " + told_score(words) + ' ' + move);
    }
    rows.insert(rows.end(), lines.begin(), lines.end());
    rows.push_back("best " + best + " nodes " + nodes);
    return rows;
}

/// The searcher of orvelin-play, set up by the commands of a session.
class Player {
 public:
    std::vector<std::string> play(session_command_t const& command) {
        words_t const words = split_words(command.text);
        std::string const& name = words.at(0);
        if (name == "new") {
            searcher_.reset();
            options_ = {};
            options_.engine_units = true;
        } else if (name == "ucinewgame") {
            searcher().forget();
        } else if (name == "hash") {
            searcher().set_hash(std::stoi(words.at(1)));
        } else if (name == "option" && words.at(1) == "MultiPV") {
            options_.multipv = std::stoi(words.at(2));
        } else if (name == "option" && words.at(1) == "UCI_Chess960") {
            options_.chess960 = words.at(2) == "true";
        } else if (name == "pos") {
            set_position("fen " + join_words(words, 1));
        } else if (name == "go") {
            return go(join_words(words, 1), command);
        } else {
            throw std::runtime_error("unknown session command: " + command.text);
        }
        return {};
    }

 private:
    play::Searcher& searcher() {
        if (!searcher_) {
            searcher_ = std::make_unique<play::Searcher>(report_.output());
        }
        return *searcher_;
    }

    void set_position(std::string const& text) {
        auto const read = play::read_position(text, searcher().tables(), searcher().position());
        if (read.refusal.refused()) {
            throw std::runtime_error(read.refusal.reason);
        }
    }

    std::vector<std::string> go(std::string const& text, session_command_t const& command) {
        play::GoText const read = play::read_go(text, searcher().position(), searcher().tables());
        play::SearchOrder order;
        order.limits = read.limits;
        order.options = options_;
        order.start = std::chrono::steady_clock::now();
        searcher().begin(std::move(order));
        searcher().wait_for_answer(std::chrono::hours(24));
        return told_answer(report_.take(), command);
    }

    Report report_;
    play::Options options_;
    std::unique_ptr<play::Searcher> searcher_;
};

}  // namespace

session_t recorded_outcomes(session_t const& session) {
    session_t outcomes;
    for (session_command_t const& command : session.commands) {
        if (ends_session(command)) {
            break;
        }
        bool const searched = !command.answer.empty();
        outcomes.commands.push_back(
            {command.text, searched ? recorded_answer(command) : words_t()});
    }
    return outcomes;
}

session_t played_outcomes(session_t const& session) {
    Player player;
    session_t outcomes;
    for (session_command_t const& command : session.commands) {
        if (ends_session(command)) {
            break;
        }
        outcomes.commands.push_back({command.text, player.play(command)});
    }
    return outcomes;
}

}  // namespace orvelin::test
