// What people ask the engine for, beside the protocol of a game.

#include <chrono>
#include <optional>

#include "play/bench.h"
#include "play/board_text.h"
#include "play/eval_text.h"
#include "play/front.h"
#include "play/perft.h"
#include "play/reader_text.h"

namespace orvelin::play {

namespace {

/// The number that the whole text is, if it is one within the limits.
std::optional<int> number_in(std::string_view text, int least, int most) {
    auto const number = read_number(text);
    if (!number || number->had_fraction || number->value < least || number->value > most) {
        return std::nullopt;
    }
    return static_cast<int>(number->value);
}

constexpr std::string_view help =
    "Orvelin speaks the chess protocol UCI: uci, isready, ucinewgame, setoption, position,\n"
    "go, stop, ponderhit, debug, register, quit. Beside it:\n"
    "  d           show the board and the legal moves\n"
    "  eval        show the terms of the evaluation\n"
    "  flip        exchange the colours\n"
    "  perft N     count the positions N half-moves on, by move; also go perft N\n"
    "  bench [N]   search fixed positions to depth N (12)\n"
    "  help, ?     show this\n"
    "  quit        end\n"
    "All commands, options and messages are described in docs/play.md, the options also in\n"
    "the manual page orvelin-play.\n";

}  // namespace

void Front::command_help(std::string_view) {
    output_.text(help);
}

bool Front::nothing_to_show(std::string_view what) {
    if (refused_while_searching(what)) {
        return true;
    }
    if (refusal_.refused()) {
        output_.remark("no position: " + refusal_text());
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
    output_.text(eval_text(searcher_.analysis().static_eval_report()));
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
    std::optional<int> const depth =
        arguments.empty() ? std::optional<int>(bench_depth) : number_in(arguments, 1, 100);
    if (!depth) {
        output_.remark("bench: " + shown(arguments) + ", a depth of 1 to 100 is expected");
        return;
    }
    tell_unless_stopped([&](std::atomic<bool> const& stopped) {
        return bench(searcher_, *depth, options_.hash, stopped);
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
    work_ended_ = std::chrono::steady_clock::now();
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
    if (nothing_to_show("perft")) {
        return;
    }
    std::optional<int> const depth = number_in(arguments, 1, 20);
    if (!depth) {
        output_.remark("perft: " + (arguments.empty() ? "no number" : shown(arguments)) +
                       ", a depth of 1 to 20 is expected");
        return;
    }
    tell_perft(*depth);
}

}  // namespace orvelin::play
