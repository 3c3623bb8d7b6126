#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/data_file.h"
#include "support/engine_process.h"
#include "support/test_config.h"

namespace orvelin::play::test {

using orvelin::test::milliseconds;

/// The program for players behind pipes. At the end it is left to end by itself, as it does after a
/// GUI is gone, so that what it went through is counted.
class PlayProcess : public orvelin::test::EngineProcess {
 public:
    PlayProcess() : EngineProcess(orvelin::test::play_binary) {}
    /// In this directory, where a book may lie.
    explicit PlayProcess(std::filesystem::path const& directory)
        : EngineProcess(orvelin::test::play_binary, directory) {}
    ~PlayProcess() {
        close_input();
        wait(milliseconds(2000));
    }
    PlayProcess(PlayProcess const&) = delete;
    PlayProcess& operator=(PlayProcess const&) = delete;

    void set_option(std::string const& name, std::string const& value) {
        send("setoption name " + name + " value " + value);
    }

    /// Waits until all that was sent is acted on; false when no answer comes.
    bool ready() {
        send("isready");
        return !find("readyok").empty();
    }

    /// Sends the commands and gives all that comes before the answer of a last `isready`.
    std::vector<std::string> told(std::vector<std::string> commands) {
        commands.emplace_back("isready");
        send_all(commands);
        std::vector<std::string> texts;
        for (timed_line_t const& line : read_until("readyok")) {
            texts.push_back(line.text);
        }
        if (!texts.empty()) {
            texts.pop_back();
        }
        return texts;
    }

    /// The lines of an answer up to and with the best move.
    std::vector<std::string> answer() {
        std::vector<std::string> texts;
        for (timed_line_t const& line : read_until("bestmove ")) {
            texts.push_back(line.text);
        }
        return texts;
    }

    /// Sends the command and reads its answer.
    std::vector<std::string> ask(std::string const& command) {
        send(command);
        return answer();
    }
};

/// What an `info` line tells, as far as tests look at it.
struct info_t {
    int depth = 0;
    int rank = 1;
    std::optional<int> cp;
    std::optional<int> mate;
    /// Only a bound of the score was told.
    bool bounded = false;
    std::uint64_t nodes = 0;
    std::vector<std::string> moves;

    bool has_score() const { return cp || mate; }
};

/// Nothing for other lines, and for texts to be shown.
inline std::optional<info_t> read_info(std::string const& line) {
    std::vector<std::string> const words = orvelin::test::split_words(line);
    if (words.size() < 2 || words[0] != "info" || words[1] == "string") {
        return std::nullopt;
    }
    info_t info;
    for (std::size_t i = 1; i < words.size(); ++i) {
        bool const more = i + 1 < words.size();
        if (words[i] == "pv") {
            info.moves.assign(words.begin() + static_cast<std::ptrdiff_t>(i) + 1, words.end());
            break;
        }
        if (words[i] == "lowerbound" || words[i] == "upperbound") {
            info.bounded = true;
        } else if (more && words[i] == "depth") {
            info.depth = std::stoi(words[++i]);
        } else if (more && words[i] == "multipv") {
            info.rank = std::stoi(words[++i]);
        } else if (more && words[i] == "cp") {
            info.cp = std::stoi(words[++i]);
        } else if (more && words[i] == "mate") {
            info.mate = std::stoi(words[++i]);
        } else if (more && words[i] == "nodes") {
            info.nodes = std::stoull(words[++i]);
        }
    }
    return info;
}

/// All that can be read of the lines.
inline std::vector<info_t> read_infos(std::vector<std::string> const& lines) {
    std::vector<info_t> infos;
    for (std::string const& line : lines) {
        if (std::optional<info_t> info = read_info(line)) {
            infos.push_back(std::move(*info));
        }
    }
    return infos;
}

/// The move of the `bestmove` line that ends an answer; empty when there is none.
inline std::string best_move(std::vector<std::string> const& answer) {
    if (answer.empty() || !answer.back().starts_with("bestmove ")) {
        return "";
    }
    return orvelin::test::split_words(answer.back()).at(1);
}

/// The latest line of the first rank that has moves; nothing when none was told.
inline std::optional<info_t> latest_first_line(std::vector<std::string> const& answer) {
    std::optional<info_t> latest;
    for (info_t const& info : read_infos(answer)) {
        if (info.rank == 1 && !info.moves.empty()) {
            latest = info;
        }
    }
    return latest;
}

}  // namespace orvelin::play::test
