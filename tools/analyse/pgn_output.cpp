#include "analyse/pgn_output.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "analyse/shared_tables.h"

namespace orvelin::tools {

PgnOutput::PgnOutput(std::string const& name, open_mode mode, Plies const& plies)
    : file_(name, mode, "["), plies_(plies) {}

void PgnOutput::write(std::vector<Answered> const& answered, std::string const&) {
    for (auto const& [record, game] : answered) {
        if (!game) {
            throw std::runtime_error("--pgn is for games: line " +
                                     std::to_string(record.source.line) + " of " +
                                     record.source.file +
                                     " is a position without one, for which there are --jsonl, "
                                     "--csv and --sqlite");
        }
        if (game != game_) {
            begin(game);
        }
        auto const ply = static_cast<std::size_t>(record.source.ply);
        annotation_->add(ply, record);
        if (ply == std::min(game->moves.size(), static_cast<std::size_t>(plies_.to))) {
            write_game(record.receipt);
        }
    }
}

void PgnOutput::begin(std::shared_ptr<analyse::Game const> game) {
    game_ = std::move(game);
    annotation_ = std::make_unique<analyse::GameAnnotation>(shared_tables(), *game_);
}

void PgnOutput::write_game(analyse::Receipt const& receipt) {
    std::ostringstream text;
    write_pgn(text, annotation_->annotated("Orvelin " + receipt.version + ", " + receipt.limit),
              shared_tables());
    file_.add(text.str());
}

}  // namespace orvelin::tools
