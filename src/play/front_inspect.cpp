// What people ask the engine for, beside the protocol of a game.

#include <algorithm>
#include <charconv>

#include "play/bench.h"
#include "play/board_text.h"
#include "play/front.h"
#include "play/perft.h"

namespace orvelin::play {

namespace {

/// The number that the text begins with, or the usual one; within the limits.
int number_or(std::string_view text, int usual, int least, int most) {
    int number = usual;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return std::clamp(number, least, most);
}

constexpr std::string_view help =
    "Orvelin speaks the chess protocol UCI. Beside it:\n"
    "  d           show the board\n"
    "  eval        show the terms of the evaluation\n"
    "  flip        exchange the colours\n"
    "  go perft N  count the positions N half-moves on, by move\n"
    "  bench [N]   search fixed positions to depth N (12)\n"
    "  quit        end\n";

}  // namespace

void Front::command_help(std::string_view) {
    output_.text(help);
}

bool Front::nothing_to_show(std::string_view what) {
    if (refused_while_searching(what)) {
        return true;
    }
    if (refusal_.refused()) {
        output_.remark("no position: " + refusal_.reason);
        return true;
    }
    return false;
}

void Front::command_display(std::string_view) {
    if (!nothing_to_show("d")) {
        output_.text(board_text(searcher_.position(), searcher_.tables(), options_.chess960));
    }
}

void Front::command_eval(std::string_view) {
    if (nothing_to_show("eval")) {
        return;
    }
    searcher_.analysis().init(searcher_.position());
    output_.text(searcher_.analysis().static_eval_report());
}

void Front::command_flip(std::string_view) {
    if (nothing_to_show("flip")) {
        return;
    }
    std::string const fen = flipped_fen(searcher_.position(), searcher_.tables());
    searcher_.position().fen(fen);
}

void Front::command_bench(std::string_view arguments) {
    if (refused_while_searching("bench")) {
        return;
    }
    int const depth = number_or(arguments, bench_depth, 1, 100);
    tell_unless_stopped([&](std::atomic<bool> const& stopped) {
        return bench(searcher_, depth, options_.hash, stopped);
    });
}

// While the front works it takes no command, so that the input thread has to look for the stop.
void Front::tell_unless_stopped(std::function<std::string(std::atomic<bool> const&)> const& work) {
    std::atomic<bool> stopped = false;
    std::string text;
    queue_.on_stop([&] {
        stopped = true;
        searcher_.analysis().set_action(stop_action);
    });
    try {
        text = work(stopped);
    } catch (...) {
        queue_.on_stop({});
        throw;
    }
    queue_.on_stop({});
    output_.text(text);
    if (stopped) {
        output_.remark("stopped before its end");
    }
}

void Front::tell_perft(int depth) {
    tell_unless_stopped([&](std::atomic<bool> const& stopped) {
        return perft_report(searcher_.position(), searcher_.tables(), depth, options_.chess960,
                            stopped);
    });
}

void Front::command_perft(std::string_view arguments) {
    if (!nothing_to_show("perft")) {
        tell_perft(number_or(arguments, 1, 1, 20));
    }
}

}  // namespace orvelin::play
