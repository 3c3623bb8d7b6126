#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "analyse/plies.h"
#include "analyse/position_source.h"
#include "platform/wake_up.h"

namespace orvelin::tools {

/// The positions of several files, one after another, each of games in PGN or of lines in EPD or
/// FEN. Holds no more than a game and a block of a file.
class PositionFiles : public PositionSource {
 public:
    struct Settings {
        /// "-" is standard input.
        std::vector<std::string> names;
        Plies plies;
        /// Lines without a sign of it are positions of Chess960.
        bool chess960 = false;
    };
    /// Told what is read past, and why.
    using tell_t = std::function<void(std::string const& remark)>;

    /// The input ends early when the flag `stop` is set.
    PositionFiles(Settings settings, WakeUp const* stop, tell_t tell);
    ~PositionFiles() override;

    /// @throws std::runtime_error when a file cannot be read.
    bool next(Asked& asked) override;
    bool ready() override;

    /// How many positions the input has in all, as the part that is gone over tells; negative when
    /// the size of the input is not known. From any thread.
    double estimated_positions() const { return estimated_positions_; }
    /// Games and lines that could not be read.
    std::uint64_t broken() const { return broken_; }
    /// Games that could be read, with positions that were asked for or without.
    std::uint64_t games() const { return games_; }

 private:
    class File;

    bool open_next();
    void estimate_positions();

    Settings settings_;
    WakeUp const* stop_;
    tell_t tell_;
    std::size_t next_file_ = 0;
    std::unique_ptr<File> file_;
    std::uint64_t total_bytes_ = 0;
    /// Of the files that are read to their end.
    std::uint64_t bytes_passed_ = 0;
    std::uint64_t given_ = 0;
    std::atomic<double> estimated_positions_ = -1;
    std::uint64_t broken_ = 0;
    std::uint64_t games_ = 0;
};

}  // namespace orvelin::tools
