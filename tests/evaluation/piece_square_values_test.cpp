#include <array>
#include <cstddef>
#include <gtest/gtest.h>

#include "evaluation/piece_square_tables.h"

namespace orvelin {
namespace {

// The base tables by their symmetry: files a to d only, rank 8 first, in ten-thousandths.
using half_table_t = std::array<std::array<int, 4>, 8>;

// clang-format off
constexpr std::array<half_table_t, 6> middle_game{{
    {{
        // pawn
        {0, 0, 0, 0},
        {0, 0, 0, 0},
        {40000, -13915, 13915, 13915},
        {20000, 13915, 41746, 69577},
        {10000, 0, 153069, 180900},
        {0, 0, 0, 0},
        {0, 0, 0, -13915},
        {0, 0, 0, 0},
    }},
    {{
        // knight
        {-112156, -77198, -42240, -18935},
        {-77198, -42240, 62632, 85937},
        {-53893, 39327, 144200, 132547},
        {-42240, 50980, 109242, 97590},
        {-42240, 50980, 109242, 97590},
        {-77198, 16022, 97590, 85937},
        {-112156, -88850, -7283, 16022},
        {-135461, -112156, -88850, -65545},
    }},
    {{
        // bishop
        {7432, -4702, -14409, -14409},
        {-7129, 14712, 5005, -4702},
        {-19263, 2578, 24420, 14712},
        {-21689, -9556, 12286, 29273},
        {-19263, -7129, 14712, 31700},
        {-16836, 152, 21993, 12286},
        {-4702, 12286, -2275, -11982},
        {9859, -7129, -21689, -26543},
    }},
    {{
        // rook
        {-217171, -107443, -34290, 112015},
        {-107443, -34290, 38862, 185167},
        {-34290, 38862, 75438, 221743},
        {112015, 185167, 221743, 221743},
        {2286, 75438, 112015, 112015},
        {-144019, -70866, -34290, 112015},
        {-217171, -144019, -70866, 75438},
        {-326900, -217171, -144019, 2286},
    }},
    {{
        // queen
        {-95567, -84722, -84722, 2033},
        {-95567, 45411, 45411, 88789},
        {-106411, 34567, 153856, 197233},
        {-30500, 67100, 186389, 262300},
        {-84722, 12878, 132167, 208078},
        {-160633, -41344, 77944, 121322},
        {-149789, -30500, -52189, -8811},
        {-149789, -160633, -182322, -117256},
    }},
    {{
        // king
        {-54000, -54000, -54000, -54000},
        {-38571, -38571, -38571, -38571},
        {-23143, -23143, -23143, -23143},
        {-7714, -7714, -7714, -7714},
        {7714, 7714, 7714, 7714},
        {23143, 23143, 23143, 23143},
        {38571, 38571, 38571, 38571},
        {54000, 54000, 54000, 54000},
    }},
}};

constexpr std::array<half_table_t, 6> end_game{{
    {{
        // pawn
        {0, 0, 0, 0},
        {277700, 277700, 277700, 277700},
        {166620, 166620, 166620, 166620},
        {55540, 55540, 55540, 55540},
        {-55540, -55540, -55540, -55540},
        {-166620, -166620, -166620, -166620},
        {-277700, -277700, -277700, -277700},
        {0, 0, 0, 0},
    }},
    {{
        // knight
        {-544, -375, -205, -92},
        {-375, -205, 304, 417},
        {-262, 191, 700, 643},
        {-205, 247, 530, 474},
        {-205, 247, 530, 474},
        {-375, 78, 474, 417},
        {-544, -431, -35, 78},
        {-658, -544, -431, -318},
    }},
    {{
        // bishop
        {13223, -8366, -25636, -25636},
        {-12683, 26176, 8905, -8366},
        {-34272, 4588, 43447, 26176},
        {-38589, -17001, 21858, 52082},
        {-34272, -12683, 26176, 56400},
        {-29954, 270, 39129, 21858},
        {-8366, 21858, -4048, -21319},
        {17541, -12683, -38589, -47225},
    }},
    {{
        // rook
        {-81979, -40558, -12944, 42284},
        {-40558, -12944, 14670, 69898},
        {-12944, 14670, 28477, 83705},
        {42284, 69898, 83705, 83705},
        {863, 28477, 42284, 42284},
        {-54365, -26751, -12944, 42284},
        {-81979, -54365, -26751, 28477},
        {-123400, -81979, -54365, 863},
    }},
    {{
        // queen
        {-124714, -110562, -110562, 2653},
        {-124714, 59261, 59261, 115869},
        {-138866, 45109, 200781, 257388},
        {-39802, 87565, 243236, 342300},
        {-110562, 16805, 172477, 271540},
        {-209626, -53954, 101717, 158325},
        {-195474, -39802, -68106, -11498},
        {-195474, -209626, -237929, -153018},
    }},
    {{
        // king
        {-99888, -55860, -47054, -47054},
        {-55860, 14584, 41001, 49806},
        {-47054, 41001, 111445, 164278},
        {-64666, 23390, 137861, 199500},
        {-73471, 5779, 120250, 181889},
        {-91082, -29443, 41001, 93834},
        {-99888, -55860, -29443, -20638},
        {-126304, -99888, -91082, -91082},
    }},
}};
// clang-format on

float base_value(half_table_t const& table, int square) {
    int const file = square % 8;
    int const value = table[static_cast<std::size_t>(7 - square / 8)]
                           [static_cast<std::size_t>(file < 4 ? file : 7 - file)];
    return static_cast<float>(static_cast<double>(value) / 10000.0);
}

TEST(PieceSquareValuesTest, WhiteRowsAreTheBaseTables) {
    PieceSquareTables const tables;
    for (int type = 0; type < 6; ++type) {
        for (int square = 0; square < 64; ++square) {
            auto const index = static_cast<std::size_t>(type);
            EXPECT_EQ(tables.middle_game(type + 1, square), base_value(middle_game[index], square))
                << type << " " << square;
            EXPECT_EQ(tables.end_game(type + 1, square), base_value(end_game[index], square))
                << type << " " << square;
        }
    }
}

TEST(PieceSquareValuesTest, BlackRowsAreTheNegatedVerticalMirror) {
    PieceSquareTables const tables;
    for (int type = 0; type < 6; ++type) {
        for (int square = 0; square < 64; ++square) {
            auto const index = static_cast<std::size_t>(type);
            int const mirrored = square ^ 56;
            EXPECT_EQ(tables.middle_game(type + 9, square),
                      -base_value(middle_game[index], mirrored))
                << type << " " << square;
            EXPECT_EQ(tables.end_game(type + 9, square), -base_value(end_game[index], mirrored))
                << type << " " << square;
        }
    }
}

TEST(PieceSquareValuesTest, RowsOfNoPieceAreZero) {
    PieceSquareTables const tables;
    for (int const id : {0, 7, 8, 15}) {
        for (int square = 0; square < 64; ++square) {
            EXPECT_EQ(tables.middle_game(id, square), 0.0F);
            EXPECT_EQ(tables.end_game(id, square), 0.0F);
        }
    }
}

}  // namespace
}  // namespace orvelin
