#include "analyse/pgn_writer.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <utility>

#include "analyse/game_start.h"
#include "analyse/pgn_lines.h"
#include "analyse/san.h"
#include "generation/tables.h"
#include "position/chess_position.h"

namespace orvelin::analyse {

namespace {

using std::string_view;

/// The tags that every game has, in this order, and what they say when nothing is known.
constexpr std::array<std::pair<string_view, string_view>, 7> roster{{{"Event", "?"},
                                                                     {"Site", "?"},
                                                                     {"Date", "????.??.??"},
                                                                     {"Round", "?"},
                                                                     {"White", "?"},
                                                                     {"Black", "?"},
                                                                     {"Result", "*"}}};

bool in_roster(string_view name) {
    return std::any_of(roster.begin(), roster.end(),
                       [name](auto const& tag) { return tag.first == name; });
}

bool of_start(string_view name) {
    return name == "FEN" || name == "SetUp" || name == "Setup" || name == "Variant";
}

bool is_name(string_view name) {
    return !name.empty() && std::all_of(name.begin(), name.end(), [](char letter) {
        return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') ||
               (letter >= '0' && letter <= '9') || letter == '_';
    });
}

void write_tag(std::ostream& out, string_view name, string_view value) {
    std::string text = "[" + std::string(name) + " \"";
    for (char const letter : value) {
        if (letter == '"' || letter == '\\') {
            text += '\\';
        }
        text += static_cast<unsigned char>(letter) < ' ' ? ' ' : letter;
    }
    out << text << "\"]\n";
}

void write_tags(std::ostream& out, AnnotatedGame const& game) {
    for (auto const& [name, unknown] : roster) {
        string_view value = name == "Result" ? string_view(game.result) : unknown;
        auto const tag = std::find_if(game.tags.begin(), game.tags.end(),
                                      [name = name](Tag const& t) { return t.name == name; });
        // The result stands in two places, which must say the same.
        if (name != "Result" && tag != game.tags.end()) {
            value = tag->value;
        }
        write_tag(out, name, value);
    }
    for (Tag const& tag : game.tags) {
        if (is_name(tag.name) && !in_roster(tag.name) && !of_start(tag.name)) {
            write_tag(out, tag.name, tag.value);
        }
    }
    if (game.chess960) {
        write_tag(out, "Variant", "Chess960");
    }
    if (game.chess960 || game.start_fen != standard_start()) {
        write_tag(out, "SetUp", "1");
        write_tag(out, "FEN", game.start_fen);
    }
}

/// Writes the moves of one game.
class MoveText {
 public:
    MoveText(ChessPosition& position, Tables const& tables)
        : position_(position), tables_(tables) {}

    /// Moves from the position, which is then as before.
    void add_moves(std::vector<AnnotatedMove> const& moves);
    void add_comment(string_view comment) {
        lines_.add_comment(comment);
        number_due_ = number_due_ || !comment.empty();
    }
    PgnLines& lines() { return lines_; }

 private:
    void add_variation(Variation const& variation);

    ChessPosition& position_;
    Tables const& tables_;
    PgnLines lines_;
    /// Whether a move of Black needs its number: something stood between it and White's.
    bool number_due_ = true;
};

void MoveText::add_moves(std::vector<AnnotatedMove> const& moves) {
    std::size_t made = 0;
    for (AnnotatedMove const& annotated : moves) {
        Move const move = legal_form(position_, tables_, annotated.move);
        if (move.word() == 0) {
            break;
        }
        if (position_.white_to_move() || number_due_) {
            lines_.add(move_number_text(position_));
        }
        lines_.add(san(position_, tables_, move));
        number_due_ = false;
        for (int const glyph : annotated.glyphs) {
            lines_.add('$' + std::to_string(glyph));
        }
        add_comment(annotated.comment);
        for (Variation const& variation : annotated.variations) {
            add_variation(variation);
        }
        position_.make_move(move);
        ++made;
    }
    for (; made > 0; --made) {
        position_.unmake_move();
    }
}

/// A variation begins where the move before it was made.
void MoveText::add_variation(Variation const& variation) {
    Move const first = variation.moves.empty() ? Move() : variation.moves.front().move;
    if (legal_form(position_, tables_, first).word() == 0) {
        return;
    }
    lines_.open('(');
    number_due_ = true;
    add_comment(variation.comment);
    add_moves(variation.moves);
    lines_.close(')');
    number_due_ = true;
}

}  // namespace

void write_pgn(std::ostream& out, AnnotatedGame const& game, Tables const& tables) {
    ChessPosition position(tables);
    position.fen(game.start_fen);
    MoveText text(position, tables);
    text.add_comment(game.comment);
    text.add_moves(game.moves);
    text.lines().add(game.result);
    write_tags(out, game);
    out << '\n' << text.lines().text() << '\n';
}

}  // namespace orvelin::analyse
