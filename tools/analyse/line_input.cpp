#include "analyse/line_input.h"

#include <stdexcept>

namespace orvelin::tools {

bool LineInput::next(std::string& line) {
    constexpr std::size_t block_size = 1 << 16;
    line.clear();
    while (true) {
        std::size_t const end = block_.find('\n', at_);
        if (end != std::string::npos) {
            line.append(block_, at_, end - at_);
            at_ = end + 1;
            ++number_;
            return true;
        }
        line.append(block_, at_);
        if (line.size() > longest) {
            throw std::runtime_error(name_ + ": line " + std::to_string(number_ + 1) +
                                     " is too long for a record");
        }
        at_ = 0;
        block_.resize(block_size);
        block_.resize(input_.read(block_.data(), block_size));
        if (block_.empty()) {
            break;
        }
    }
    if (!line.empty()) {
        throw std::runtime_error(name_ +
                                 ": the last line has no end; a run that was killed is "
                                 "to be resumed first");
    }
    return false;
}

}  // namespace orvelin::tools
