#pragma once

#include <iostream>

#include "protocol/communicator.h"

namespace orvelin {

/// The body of the console thread: reads lines and hands them to a `Communicator`.
///
/// Blocks in the read and holds no lock meanwhile. Ends after the line "quit", which is the last
/// one it forwards. Only the console thread may touch the input stream while it runs.
class ConsoleInput {
 public:
    /// Reads after which the reader says "quit" by itself.
    static constexpr int default_limit = 2000000000;

    /// Reads from `input` into `communicator`, both of which must outlive this object.
    /// The limit is the count of reads, 0 to 2000000000.
    explicit ConsoleInput(Communicator& communicator, std::istream& input = std::cin,
                          int limit = default_limit)
        : communicator_(communicator), input_(input), limit_(limit) {}

    /// Forwards every line that is not empty, until "quit" has been forwarded.
    void operator()();

 private:
    int line_counter_ = 0;
    Communicator& communicator_;
    std::istream& input_;
    int limit_;
};

}  // namespace orvelin
