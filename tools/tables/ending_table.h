#pragma once

#include <cstdint>
#include <string>

#include "endgame/egt4_pieces.h"
#include "generation/attacks.h"
#include "tables/ending.h"
#include "tables/fen_argument.h"

namespace orvelin::tools {

class Progress;

/// A finished table of an ending, newly built or read from a file, and the pieces to ask it with.
///
/// Two objects of the engine's class stand behind it. One holds the bytes; having loaded a file it
/// may have other piece ids than it was built with, and then knows no legal position. The other has
/// no bytes and always the right pieces: it turns positions into keys and keys into positions.
class EndingTable {
 public:
    /// No values yet.
    explicit EndingTable(ending_t const& ending);
    EndingTable(EndingTable const&) = delete;
    EndingTable& operator=(EndingTable const&) = delete;

    /// Builds the table, telling each pass.
    void build(Progress& progress);
    /// Reads the values from a file that names this ending; see load_table().
    void load(std::string const& path);
    /// Writes the table to a file; see save_table().
    void save(std::string const& path) const;
    /// Holds each value of a table that was built against those of the successors. The first fault
    /// is told on standard error.
    bool is_consistent() { return values_.is_consistent(); }

    ending_t const& ending() const { return ending_; }
    /// Number of keys.
    std::uint32_t size() const { return values_.size(); }
    /// The byte of a key.
    unsigned char operator[](unsigned int key) const { return values_[key]; }
    /// The number of `Egt4Pieces::eval`, from the point of view of the real White.
    int eval(ending_position_t const& position);
    /// FEN text of a key.
    std::string fen(unsigned int key);
    /// The squares of a key in words.
    std::string key_text(unsigned int key) const { return pieces_.get_key_str(key); }

 private:
    ending_t const& ending_;
    Attacks attacks_;
    Egt4Pieces values_;
    Egt4Pieces pieces_;
};

}  // namespace orvelin::tools
