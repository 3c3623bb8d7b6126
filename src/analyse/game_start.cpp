#include "analyse/game_start.h"

#include <algorithm>
#include <array>

#include "play/position_reader.h"
#include "play/reader_text.h"
#include "position/history.h"

namespace orvelin::analyse {

namespace {

/// Names without blanks, dashes and capital letters.
constexpr std::array<std::string_view, 9> chess_names{
    "",         "chess",     "standard",    "standardchess", "normal", "normalchess",
    "orthodox", "classical", "fromposition"};
constexpr std::array<std::string_view, 7> chess960_names{
    "chess960",          "960",       "fischerandom",  "fischerrandom",
    "fischerandomchess", "freestyle", "freestylechess"};

/// A king that may castle and stands elsewhere than in chess.
bool castles_from_other_file(ChessPosition const& position) {
    constexpr unsigned white = 0x00FF;
    constexpr int file_of_king = 4;
    unsigned const rights = position.castlingrights();
    return ((rights & white) != 0 && position.white_kingsfield().file_number() != file_of_king) ||
           ((rights & ~white) != 0 && position.black_kingsfield().file_number() != file_of_king);
}

}  // namespace

std::string const& standard_start() {
    static std::string const fen = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
    return fen;
}

bool read_variant(std::string_view name, bool& chess960) {
    std::string plain = play::lower_case(name);
    std::erase_if(plain, [](char letter) {
        return play::is_blank(letter) || letter == '-' || letter == '_';
    });
    chess960 =
        std::find(chess960_names.begin(), chess960_names.end(), plain) != chess960_names.end();
    return chess960 ||
           std::find(chess_names.begin(), chess_names.end(), plain) != chess_names.end();
}

GameStart set_up_start(std::string_view fen, bool chess960, ChessPosition& position) {
    GameStart start;
    start.reason = play::check_fen(fen, start.remarks, start.fen).reason;
    if (start.reason.empty()) {
        position.fen(start.fen);
        start.chess960 = chess960 || (position.castlingrights() & chess960_rights) != 0 ||
                         castles_from_other_file(position);
    }
    return start;
}

}  // namespace orvelin::analyse
