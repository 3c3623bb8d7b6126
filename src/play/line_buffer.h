#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "play/command_queue.h"

namespace orvelin::play {

/// Turns bytes, as they come, into lines for the queue: without their ends, without NUL characters,
/// the first without the byte order mark of an editor, and none longer than is taken. Lines without
/// anything in them are left out.
class LineBuffer {
 public:
    /// The longest line that is taken; of a longer one only a remark is left.
    static constexpr std::size_t longest_line = std::size_t{1} << 20;

    explicit LineBuffer(CommandQueue& queue, std::size_t longest = longest_line)
        : queue_(queue), longest_(longest) {}

    void take(std::string_view bytes);
    /// No more bytes come. A last line may lack its end.
    void end();

 private:
    void finish_line();

    CommandQueue& queue_;
    std::size_t longest_;
    std::string line_;
    bool first_ = true;
    bool too_long_ = false;
    bool had_nul_ = false;
};

}  // namespace orvelin::play
