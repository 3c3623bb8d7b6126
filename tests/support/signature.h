#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "support/session_reader.h"

namespace orvelin::test {

/// The file of the searches that every build must search alike.
inline const std::string signature_file = "signature.txt";

/// What sessions come down to: equal as long as every node count, score and line is.
struct signature_t {
    std::uint64_t nodes = 0;
    /// FNV-1a over all lines, commands as well as answers.
    std::uint64_t hash = 0;

    bool operator==(signature_t const&) const = default;
    /// As "nodes hash", the hash in 16 hexadecimal digits.
    friend std::ostream& operator<<(std::ostream& out, signature_t const& signature);
};

/// The same commands with the answers that this build gives to them.
session_t play_again(session_t const& session);

/// The lines of the sessions as they stand in a data file, an empty line behind each session.
std::string session_text(std::vector<session_t> const& sessions);

signature_t signature_of(std::vector<session_t> const& sessions);

}  // namespace orvelin::test
