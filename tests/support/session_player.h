#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace orvelin {
class Analysis;
}

namespace orvelin::test {

/// Plays the commands of a session on the real classes, without threads or pipes, and
/// writes down what they give.
///
/// Owns one engine at a time: tables, position and analysis, built at the first command.
/// Each command does what the driver does for the interface's command of the same meaning,
/// so that the state which one search leaves to the next is the engine's own.
class SessionPlayer {
 public:
    SessionPlayer();
    SessionPlayer(SessionPlayer const&) = delete;
    SessionPlayer& operator=(SessionPlayer const&) = delete;
    ~SessionPlayer();

    /// The lines that the command gives; throws std::runtime_error on an unknown command.
    std::vector<std::string> play(std::string const& command);

 private:
    struct Engine;
    using words_t = std::vector<std::string>;

    Engine& engine();
    Analysis& analysis();

    void ucinewgame();
    void set_option(words_t const& words);
    void set_position(words_t const& words);
    std::vector<std::string> go(words_t const& words);
    std::vector<std::string> search();
    std::vector<std::string> bench();
    void set_bench_position(std::string const& fen);

    std::string root_return_text(int alpha, int beta, int score);
    std::vector<std::string> result_text();

    std::unique_ptr<Engine> engine_;
    bool chess960_ = false;
};

}  // namespace orvelin::test
