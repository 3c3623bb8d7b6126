#pragma once

#include <cstdint>
#include <cstdio>
#include <map>
#include <string>
#include <sys/types.h>

namespace orvelin::test {

/// A chess engine of other people in a process of its own, asked over pipes for its leaf
/// counts. The process lives as long as the object.
class PerftWitness {
 public:
    /// Starts the program; throws std::runtime_error when it is not installed.
    PerftWitness();
    PerftWitness(PerftWitness const&) = delete;
    PerftWitness& operator=(PerftWitness const&) = delete;
    ~PerftWitness();

    /// The leaf count behind each legal move, by the move's text.
    std::map<std::string, std::uint64_t> divide(std::string const& fen, int depth, bool chess960);

 private:
    void send(std::string const& line);
    std::string receive();

    pid_t process_ = -1;
    std::FILE* to_engine_ = nullptr;
    std::FILE* from_engine_ = nullptr;
};

}  // namespace orvelin::test
