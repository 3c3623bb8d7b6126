#include "analyse/pgn_reader.h"

#include <algorithm>
#include <utility>

#include "analyse/game_start.h"
#include "analyse/pgn_words.h"
#include "analyse/san.h"
#include "generation/tables.h"
#include "play/reader_text.h"

namespace orvelin::analyse {

namespace {

using std::string_view;
using part = PgnText::part;

constexpr char const* not_a_tag = "\"[\" begins no tag";

std::string tag_of(Game const& game, string_view small_name) {
    for (Tag const& tag : game.tags) {
        if (tag.name.size() == small_name.size() && play::lower_case(tag.name) == small_name) {
            return tag.value;
        }
    }
    return "";
}

}  // namespace

PgnReader::PgnReader(InputText& input, Tables const& tables, std::uint64_t games_before)
    : text_(input), finder_(tables), position_(tables), number_(games_before) {}

PgnReader::outcome PgnReader::next(Game& game) {
    game.tags.clear();
    game.moves.clear();
    game.result.assign(1, '*');
    reason_.clear();
    remarks_.clear();
    if (!find_game()) {
        return outcome::end;
    }
    game.number = ++number_;
    game.line = text_.line();
    read_tags(game);
    set_up(game);
    read_moves(game);
    return reason_.empty() ? outcome::game : outcome::broken;
}

/// Goes to the next tag or word. Behind a result some writers leave a comment.
bool PgnReader::find_game() {
    while (true) {
        switch (text_.look()) {
            case part::end:
                return false;
            case part::word:
            case part::tag:
            case part::bracket:
            case part::variation_begin:
                return true;
            case part::comment:
                text_.take_comment();
                break;
            case part::variation_end:
                text_.take_letter();
        }
    }
}

/// Whether a tag belongs to another game than those before it: a game without moves has only an
/// empty line or nothing between.
bool PgnReader::begins_next_game(Game const& game) {
    string_view const name = text_.tag_name();
    auto const same = [name](Tag const& tag) { return tag.name == name; };
    return !game.tags.empty() &&
           (name == "Event" ||
            (text_.behind_empty_line() && std::any_of(game.tags.begin(), game.tags.end(), same)));
}

void PgnReader::read_tags(Game& game) {
    std::size_t bytes = 0;
    for (part next = text_.look(); next == part::bracket || next == part::tag;
         next = text_.look()) {
        std::uint64_t const line = text_.line();
        if (next == part::bracket) {
            break_game(game, line, not_a_tag);
            text_.take_line();
            continue;
        }
        if (begins_next_game(game)) {
            return;
        }
        bool const good = text_.take_tag(tag_);
        bytes += sizeof(Tag) + tag_.name.size() + tag_.value.size();
        if (!good) {
            break_game(game, line,
                       "the tag " + tag_.name + " is longer than " +
                           std::to_string(PgnText::longest_value) + " bytes");
        } else if (bytes > most_tag_bytes) {
            break_game(game, line,
                       "the tags are larger than " + std::to_string(most_tag_bytes) + " bytes");
        } else {
            game.tags.push_back(tag_);
        }
    }
}

void PgnReader::set_up(Game& game) {
    std::string const variant = tag_of(game, "variant");
    std::string const fen = tag_of(game, "fen");
    bool const known = read_variant(variant, game.chess960);
    if (!known) {
        break_game(game, game.line, "the variant " + play::shown(variant) + " is not chess");
    }
    std::string const& wanted = fen.empty() ? standard_start() : fen;
    if (known && wanted == position_start_ && wanted == standard_start()) {
        for (; moves_made_ > 0; --moves_made_) {
            position_.unmake_move();
        }
        game.start_fen = wanted;
        return;
    }
    moves_made_ = 0;
    GameStart start = set_up_start(wanted, game.chess960, position_);
    if (!start.reason.empty()) {
        break_game(game, game.line, "the tag FEN: " + start.reason);
        start = set_up_start(standard_start(), false, position_);
    }
    position_start_ = start.fen;
    game.start_fen = start.fen;
    game.chess960 = start.chess960;
    remarks_ = std::move(start.remarks);
}

void PgnReader::read_moves(Game& game) {
    depth_ = 0;
    while (true) {
        switch (text_.look()) {
            case part::end:
            case part::tag:
                end_variations(game);
                if (string_view const result = result_of(game.tag("Result")); !result.empty()) {
                    game.result = result;
                }
                return;
            case part::word:
                if (!read_word(game, text_.take_word())) {
                    return;
                }
                break;
            case part::comment: {
                std::uint64_t const line = text_.line();
                if (!text_.take_comment()) {
                    break_game(game, line, "the comment that begins here is not closed");
                }
                break;
            }
            case part::bracket:
                break_game(game, text_.line(), not_a_tag);
                text_.take_letter();
                break;
            case part::variation_begin:
                variation_line_ = depth_ == 0 ? text_.line() : variation_line_;
                ++depth_;
                text_.take_letter();
                break;
            case part::variation_end:
                depth_ -= depth_ == 0 ? 0 : 1;
                text_.take_letter();
        }
    }
}

void PgnReader::end_variations(Game const& game) {
    if (depth_ > 0) {
        break_game(game, variation_line_, "the variation that begins here is not closed");
    }
}

bool PgnReader::read_word(Game& game, string_view word) {
    if (depth_ > 0) {
        return true;
    }
    if (string_view const result = result_of(word); !result.empty()) {
        // Where the two differ, databases and players look at the tag.
        string_view const tag = result_of(game.tag("Result"));
        game.result = tag.empty() || tag == "*" ? result : tag;
        return false;
    }
    word = without_number(word);
    if (reason_.empty() && !word.empty() && !is_glyph(word)) {
        read_move(game, word, text_.line());
    }
    return true;
}

void PgnReader::read_move(Game& game, string_view word, std::uint64_t line) {
    if (game.moves.size() == most_moves) {
        break_game(game, line, "more than " + std::to_string(most_moves) + " moves");
        return;
    }
    auto const [move, result] = finder_.find(position_, word);
    if (result != san_result::found) {
        break_game(game, line,
                   "move " + move_number_text(position_) + ' ' + play::shown(word) + ' ' +
                       why_not_found(result, position_.fen()) + letters_hint(result, word));
        return;
    }
    game.moves.push_back(move);
    position_.make_move(move);
    ++moves_made_;
}

/// Of several faults the first is told.
void PgnReader::break_game(Game const& game, std::uint64_t line, std::string const& why) {
    if (!reason_.empty()) {
        return;
    }
    reason_ = "game " + std::to_string(game.number);
    std::string const white = game.tag("White");
    std::string const black = game.tag("Black");
    if (!white.empty() && !black.empty()) {
        reason_ += " (" + play::shown(white) + " - " + play::shown(black) + ')';
    }
    reason_ += ", line " + std::to_string(line) + ": " + why;
}

}  // namespace orvelin::analyse
