#pragma once

#include <string>

namespace orvelin::play {

/// What a look at a file shows; texts that are empty mean that nothing is wrong.
struct BookFaults {
    /// Why it can be no opening book in the Polyglot format.
    std::string fatal;
    /// What is odd about a file that is one.
    std::string remark;
};

/// Looks at the size and at the first few hundred entries, which must be sorted and hold no
/// promotion that there is none of. A file that cannot be read is told as no book. The file must be
/// a plain one.
BookFaults check_book(std::string const& name);

}  // namespace orvelin::play
