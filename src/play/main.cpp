#include <array>
#include <charconv>
#include <cstdlib>
#include <iostream>
#include <string>
#include <string_view>
#include <thread>

#include "platform/input_watch.h"
#include "platform/process.h"
#include "play/bench.h"
#include "play/command_queue.h"
#include "play/front.h"
#include "play/line_reader.h"
#include "play/output.h"
#include "play/perft.h"
#include "play/searcher.h"
#include "play/version.h"
#include "search/bench_positions.h"

namespace orvelin::play {

namespace {

constexpr std::string_view usage =
    "usage: orvelin-play              play chess by the protocol UCI, for GUIs\n"
    "       orvelin-play bench [N]    search fixed positions to depth N (12), for testers\n"
    "       orvelin-play perft N      count the positions N half-moves after the start\n"
    "       orvelin-play --version\n"
    "       orvelin-play --help\n";

int fail(std::string const& text) {
    std::cerr << "orvelin-play: " << text << '\n' << usage;
    return 2;
}

/// The status behind a text that was asked for.
int tell(std::string_view text) {
    Output output(standard_output);
    output.text(text);
    return output.lost() ? 1 : 0;
}

/// Whether the whole word is a number within the limits.
bool read_number(std::string_view word, int least, int most, int& number) {
    auto const [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
    return error == std::errc() && end == word.data() + word.size() && number >= least &&
           number <= most;
}

int run_bench(int depth) {
    Output output(standard_output);
    Searcher searcher(output);
    output.text(bench(searcher, depth, bench_hash_megabytes, false));
    return output.lost() ? 1 : 0;
}

int run_perft(int depth) {
    Output output(standard_output);
    Searcher searcher(output);
    output.text(perft_report(searcher.position(), searcher.tables(), depth, false, false));
    return output.lost() ? 1 : 0;
}

int run_command(int number, char** words) {
    std::string_view const word = words[1];
    int value = bench_depth;
    if (word == "--help" || word == "-h") {
        return tell(usage);
    }
    if (word == "--version") {
        return tell("Orvelin " + std::string(version) + '\n');
    }
    if (word == "bench") {
        if (number > 3 || (number == 3 && !read_number(words[2], 1, 100, value))) {
            return fail("bench takes a depth from 1 to 100");
        }
        return run_bench(value);
    }
    if (word == "perft") {
        if (number != 3 || !read_number(words[2], 1, 20, value)) {
            return fail("perft takes a depth from 1 to 20");
        }
        return run_perft(value);
    }
    return fail("unknown argument " + std::string(word));
}

/// The reader may wait for input that never comes, so it is left alone at the end.
[[noreturn]] void run_protocol() {
    // Whatever is opened next would take their numbers.
    if (!is_open(standard_output)) {
        std::exit(1);
    }
    if (!is_open(standard_input)) {
        std::exit(0);
    }
    InputWatch::block_signals();
    CommandQueue queue;
    Output output(standard_output);
    LineReader reader(standard_input, output, queue);
    std::thread([&reader] { reader(); }).detach();
    {
        Front front(queue, output);
        front.run();
    }
    std::exit(output.lost() ? 1 : 0);
}

}  // namespace

}  // namespace orvelin::play

int main(int number, char** words) {
    orvelin::prepare_process();
    if (number > 1) {
        return orvelin::play::run_command(number, words);
    }
    orvelin::play::run_protocol();
}
