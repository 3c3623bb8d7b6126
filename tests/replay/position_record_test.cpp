#include "support/position_record.h"

#include <array>
#include <cinttypes>
#include <cstdio>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "generation/move_generator.h"
#include "generation/tables.h"
#include "position/chess_position.h"
#include "position/move.h"
#include "position/move_list.h"
#include "search/analysis.h"
#include "support/shared_tables.h"

namespace orvelin::test {

namespace {

std::string hex16(std::uint64_t word) {
    std::array<char, 20> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%016" PRIX64, word);
    return buffer.data();
}

std::string hex4(unsigned int word) {
    std::array<char, 12> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%04X", word);
    return buffer.data();
}

std::string squares_of(Move const& move) {
    return move.from().name() + move.to().name();
}

/// A blank-separated list, one entry for each move.
template <typename Text>
std::string list_text(MoveList const& list, Text text_of) {
    std::string text;
    for (Move const& move : list) {
        const std::string entry = text_of(move);
        if (entry.empty()) {
            continue;
        }
        if (!text.empty()) {
            text += ' ';
        }
        text += entry;
    }
    return text;
}

std::string fields_of(Move const& move) {
    return squares_of(move) + ':' + std::to_string(move.code()) + ':' + (move.check() ? '1' : '0') +
           ':' + std::to_string(move.piece_id()) + ':' + std::to_string(move.capture_id());
}

std::string state_text(ChessPosition const& position) {
    const Square ep = position.ep();
    return "key=" + hex16(position.get_hash()) + " pawnkey=" + hex16(position.get_pawnhash()) +
           " material=" + hex16(position.materialindex().index()) +
           " str=" + position.materialindex().str() +
           " value=" + std::to_string(position.materialindex().value()) +
           " check=" + (position.check() ? "1" : "0") +
           " dfz=" + std::to_string(position.get_dfz()) +
           " rights=" + hex4(position.castlingrights()) +
           " ep=" + (ep == Square() ? "-" : ep.name()) +
           " pinned=" + hex16(to_ull(position.pinned_pieces())) +
           " discovering=" + hex16(to_ull(position.discovering_pieces()));
}

class PositionRecords : public testing::TestWithParam<char const*> {
 protected:
    /// Sets up each position of the file in turn and compares one line of its record.
    template <typename Text>
    void compare(std::string const& line, Text text_of) {
        for (PositionRecord const& record : read_position_records(GetParam())) {
            position_.fen(record.fen());
            EXPECT_EQ(text_of(), record.value(line)) << record.fen();
        }
    }

    MoveList all_moves() {
        MoveList list;
        generator_.generate_moves(position_, list);
        return list;
    }

    Tables& tables_ = shared_tables();
    ChessPosition position_{tables_};
    MoveGenerator generator_{tables_};
};

TEST_P(PositionRecords, WrittenFen) {
    compare("written", [this] { return position_.fen(); });
}

TEST_P(PositionRecords, Epd) {
    compare("epd", [this] { return position_.epd(); });
}

TEST_P(PositionRecords, Flip) {
    compare("flip", [this] {
        position_.flip();
        return position_.fen();
    });
}

TEST_P(PositionRecords, Flop) {
    compare("flop", [this] {
        position_.flop();
        return position_.fen();
    });
}

TEST_P(PositionRecords, State) {
    compare("state", [this] { return state_text(position_); });
}

TEST_P(PositionRecords, AllMovesInOrder) {
    compare("moves", [this] { return list_text(all_moves(), fields_of); });
}

TEST_P(PositionRecords, CapturesInOrder) {
    compare("captures", [this] {
        movetable_t table;
        MoveList list;
        generator_.create_movetable(position_, table);
        generator_.serialize_captures(position_, table, list);
        return list_text(list, fields_of);
    });
}

TEST_P(PositionRecords, ExchangeValues) {
    Analysis analysis(position_, tables_);
    compare("exchange", [this, &analysis] {
        return list_text(all_moves(), [&analysis](Move const& move) {
            if (move.code() == castling) {
                return std::string();
            }
            return move.algebraic(true) + ':' + std::to_string(analysis.see(move));
        });
    });
}

INSTANTIATE_TEST_SUITE_P(replay, PositionRecords, testing::Values("positions.txt", "endings.txt"),
                         [](testing::TestParamInfo<char const*> const& file) {
                             return std::string(file.param, std::string(file.param).find('.'));
                         });

}  // namespace

}  // namespace orvelin::test
