#pragma once

#include <memory>
#include <string>

#include "analyse/annotation.h"
#include "analyse/line_file.h"
#include "analyse/plies.h"
#include "analyse/record_output.h"

namespace orvelin::tools {

/// Games as PGN, with what the records say of their moves.
///
/// A game is written when the last of its positions is there, and as a whole: one that was cut
/// short is left out. Such a file is not gone on with.
class PgnOutput : public RecordOutput {
 public:
    /// The positions of games are those of these plies.
    /// @throws std::runtime_error when the file cannot be opened so.
    PgnOutput(std::string const& name, open_mode mode, Plies const& plies);

    LastRecord const& last() const override { return last_; }
    void render(analyse::Record const&, std::string&) const override {}
    /// @throws std::runtime_error for a position without a game, too.
    void write(std::vector<Answered> const& answered, std::string const& text) override;

 private:
    void begin(std::shared_ptr<analyse::Game const> game);
    void write_game(analyse::Receipt const& receipt);

    LineFile file_;
    Plies plies_;
    LastRecord last_;
    std::shared_ptr<analyse::Game const> game_;
    std::unique_ptr<analyse::GameAnnotation> annotation_;
};

}  // namespace orvelin::tools
