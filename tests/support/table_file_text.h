#pragma once

#include <fstream>
#include <string>

namespace orvelin::test {

/// Number of keys of an endgame table.
inline constexpr unsigned int table_keys = 0x500000;

/// The text of a file with a made-up table, whole but not right: no build is needed for it.
/// `byte_of` gives the byte of a key.
template <typename ByteOf>
std::string table_file_text(std::string const& name, ByteOf byte_of) {
    std::string text = "begin{" + name + '}';
    text.reserve(4 * table_keys);
    for (unsigned int key = 0; key < table_keys; ++key) {
        if (key % 16 == 0) {
            text += '\n';
        }
        text += std::to_string(byte_of(key));
        text += ' ';
    }
    return text + "\nend{" + name + '}';
}

inline void write_text(std::string const& path, std::string const& text) {
    std::ofstream(path, std::ios::binary) << text;
}

}  // namespace orvelin::test
