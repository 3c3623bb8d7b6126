#include <string>
#include <string_view>
#include <vector>

#include "bodies/fuzz_bodies.h"
#include "bodies/position_queries.h"
#include "bodies/require.h"
#include "generation/tables.h"
#include "play/board_text.h"
#include "play/position_reader.h"
#include "position/chess_position.h"
#include "position/move.h"

namespace orvelin::fuzz {

namespace {

using play::Refusal;

/// One line of printable text, and not without end.
void require_message(std::string const& text) {
    constexpr std::size_t longest = 400;
    require(text.size() <= longest, "a message is short");
    for (char const letter : text) {
        require(letter >= ' ' && letter <= '~', "a message is one line of printable letters");
    }
}

void require_messages(std::vector<std::string> const& texts) {
    constexpr std::size_t most = 40;
    require(texts.size() <= most, "a line makes few remarks");
    for (std::string const& text : texts) {
        require_message(text);
    }
}

/// The text in its repaired form; empty when it is refused.
std::string accepted(std::string_view fen) {
    std::vector<std::string> remarks;
    std::string repaired = "untouched";
    Refusal const refusal = play::check_fen(fen, remarks, repaired);
    require_messages(remarks);
    require_message(refusal.reason);
    if (refusal.refused()) {
        require(repaired == "untouched", "a refused text is not repaired");
        return "";
    }
    return repaired;
}

/// A game can go on from the position.
void play_on(ChessPosition& position) {
    bool const king_hangs = position.white_to_move()
                                ? position.white_attacks(position.black_king())
                                : position.black_attacks(position.white_king());
    require(!king_hangs, "the side that has moved is not in check");
    for (Move const& move : play::legal_moves(position, small_tables())) {
        require(play::find_legal_move(position, small_tables(), move.algebraic(true)) == move,
                "a move is found by its text");
        position.make_move(move);
        require(!accepted(position.fen()).empty(), "a legal move leads to a position");
        position.unmake_move();
    }
    require(!accepted(play::flipped_fen(position, small_tables())).empty(),
            "a position with the colours exchanged is one");
    play::board_text(position, small_tables(), true);
    search_a_little(position);
    query(position);
}

void check_text(std::string_view fen) {
    std::string const repaired = accepted(fen);
    if (repaired.empty()) {
        return;
    }
    std::vector<std::string> remarks;
    std::string again;
    require(!play::check_fen(repaired, remarks, again).refused(), "a repaired text is accepted");
    require(again == repaired && remarks.empty(), "a repaired text needs no repair");
    ChessPosition position(small_tables());
    require(!play::read_position("fen " + repaired, small_tables(), position).refusal.refused(),
            "a repaired text is a position");
    play_on(position);
}

}  // namespace

void fuzz_play_position(std::string_view input) {
    check_text(input);
    ChessPosition position(small_tables());
    play::PositionText const text = play::read_position(input, small_tables(), position);
    require_messages(text.remarks);
    // The reason of an illegal move has the whole position in it.
    require_message(text.refusal.reason);
    if (text.refusal.refused()) {
        return;
    }
    require(text.game_ply >= 0 && text.moves_made >= 0, "a game does not begin before its start");
    require(!accepted(position.fen()).empty(), "what is accepted can be told");
    play_on(position);
}

}  // namespace orvelin::fuzz
