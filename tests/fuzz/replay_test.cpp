#include <algorithm>
#include <array>
#include <cctype>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "bodies/fuzz_bodies.h"
#include "support/test_config.h"

namespace orvelin::test {
namespace {

namespace files = std::filesystem;

struct target_t {
    char const* name;
    void (*body)(std::string_view);
};

constexpr std::array<target_t, 13> targets{{{"fen", &fuzz::fuzz_fen},
                                            {"move_text", &fuzz::fuzz_move_text},
                                            {"setoption", &fuzz::fuzz_setoption},
                                            {"book", &fuzz::fuzz_book},
                                            {"table", &fuzz::fuzz_table},
                                            {"session", &fuzz::fuzz_session},
                                            {"pgn", &fuzz::fuzz_pgn},
                                            {"san", &fuzz::fuzz_san},
                                            {"play_position", &fuzz::fuzz_play_position},
                                            {"play_go", &fuzz::fuzz_play_go},
                                            {"play_options", &fuzz::fuzz_play_options},
                                            {"play_lines", &fuzz::fuzz_play_lines},
                                            {"board", &fuzz::fuzz_board}}};

/// One kept input and the target that it is for.
struct kept_input_t {
    target_t target;
    files::path path;
};

/// The inputs of all targets, by target and name.
std::vector<kept_input_t> kept_inputs() {
    std::vector<kept_input_t> inputs;
    for (target_t const& target : targets) {
        files::path const folder = files::path(data_folder) / "fuzz" / target.name;
        if (!files::is_directory(folder)) {
            continue;
        }
        for (auto const& entry : files::directory_iterator(folder)) {
            inputs.push_back({target, entry.path()});
        }
    }
    std::sort(inputs.begin(), inputs.end(),
              [](kept_input_t const& a, kept_input_t const& b) { return a.path < b.path; });
    return inputs;
}

std::string bytes_of(files::path const& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error("cannot read " + path.string());
    }
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

std::string test_name(testing::TestParamInfo<kept_input_t> const& info) {
    std::string name = info.param.target.name + ("_" + info.param.path.filename().string());
    std::replace_if(
        name.begin(), name.end(), [](unsigned char letter) { return std::isalnum(letter) == 0; },
        '_');
    return name;
}

class FuzzReplay : public testing::TestWithParam<kept_input_t> {};

// A fault ends the process, under the sanitizers at least.
TEST_P(FuzzReplay, EndsWithoutAFault) {
    kept_input_t const& input = GetParam();
    EXPECT_NO_THROW(input.target.body(bytes_of(input.path)));
}

INSTANTIATE_TEST_SUITE_P(Kept, FuzzReplay, testing::ValuesIn(kept_inputs()), test_name);

TEST(FuzzReplayData, EveryTargetHasInputs) {
    std::vector<kept_input_t> const inputs = kept_inputs();
    for (target_t const& target : targets) {
        EXPECT_TRUE(std::any_of(inputs.begin(), inputs.end(), [&](kept_input_t const& input) {
            return std::string_view(input.target.name) == target.name;
        })) << target.name;
    }
}

TEST(FuzzReplayData, IsSmallAndFew) {
    std::vector<kept_input_t> const inputs = kept_inputs();
    EXPECT_LE(inputs.size(), 220U);
    std::uintmax_t bytes = 0;
    for (kept_input_t const& input : inputs) {
        bytes += files::file_size(input.path);
    }
    EXPECT_LE(bytes, std::uintmax_t{1} << 20);
}

}  // namespace
}  // namespace orvelin::test
