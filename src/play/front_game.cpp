// The commands of a game: handshake, options, position, go and what ends it.

#include <algorithm>
#include <bit>
#include <new>
#include <utility>

#include "play/clock.h"
#include "play/front.h"
#include "play/go_reader.h"
#include "play/version.h"

namespace orvelin::play {

void Front::command_uci(std::string_view) {
    output_.line("id name Orvelin " + std::string(version));
    output_.line("id author Kalvoorst");
    for (std::string const& line : option_lines()) {
        output_.line(line);
    }
    output_.line("uciok");
}

void Front::command_isready(std::string_view) {
    output_.line("readyok");
}

void Front::command_debug(std::string_view) {}

void Front::command_register(std::string_view) {}

void Front::command_ucinewgame(std::string_view) {
    if (refused_while_searching("ucinewgame")) {
        return;
    }
    searcher_.forget();
    refusal_ = {};
    game_ply_ = 0;
}

void Front::command_setoption(std::string_view arguments) {
    Options wanted = options_;
    OptionText const text = set_option(arguments, wanted);
    if (!text.refusal.empty()) {
        output_.remark(text.refusal);
        return;
    }
    bool const memory = text.changed == option_t::hash || text.changed == option_t::clear_hash;
    if (memory && refused_while_searching(text.changed == option_t::hash ? "option Hash"
                                                                         : "option Clear Hash")) {
        return;
    }
    std::swap(options_, wanted);
    switch (text.changed) {
        case option_t::hash:
            if (!searcher_.set_hash(options_.hash)) {
                output_.remark("no memory for a hash table of " + std::to_string(options_.hash) +
                               " MiB, it stays at " + std::to_string(wanted.hash));
                options_.hash = wanted.hash;
            } else {
                tell_hash_size(options_.hash);
            }
            break;
        case option_t::clear_hash:
            searcher_.clear_hash();
            break;
        case option_t::book:
            apply_book();
            break;
        case option_t::log_file:
            apply_log();
            break;
        default:
            break;
    }
}

// The table has a power of two of entries.
void Front::tell_hash_size(int wanted) {
    constexpr int least = 4;
    int const taken =
        std::max(static_cast<int>(std::bit_floor(static_cast<unsigned int>(wanted))), least);
    if (taken != wanted) {
        output_.remark("option Hash: " + std::to_string(taken) + " MiB are taken for " +
                       std::to_string(wanted) + ", a power of two from " + std::to_string(least) +
                       " on");
    }
}

std::string Front::refusal_text() const {
    constexpr std::string_view prefix = "position: ";
    std::string const& reason = refusal_.reason;
    return reason.starts_with(prefix) ? reason.substr(prefix.size()) : reason;
}

void Front::command_position(std::string_view arguments) {
    if (refused_while_searching("position")) {
        return;
    }
    PositionText const text = read_position(arguments, searcher_.tables(), searcher_.position());
    refusal_ = text.refusal;
    game_ply_ = text.game_ply;
    remark(text.remarks);
    if (refusal_.refused()) {
        output_.remark(refusal_.reason);
        // Whatever is asked of the board meanwhile finds a whole one.
        searcher_.position().newgame();
    }
}

void Front::command_go(std::string_view arguments) {
    if (refused_while_searching("go")) {
        return;
    }
    if (refusal_.refused()) {
        output_.remark("no position to search: " + refusal_text());
        output_.line("bestmove 0000");
        return;
    }
    GoText const text = read_go(arguments, searcher_.position(), searcher_.tables());
    remark(text.remarks);
    if (text.refusal.refused()) {
        output_.remark(text.refusal.reason);
        if (!text.counts) {
            output_.line("bestmove 0000");
        }
        return;
    }
    limits_ = text.limits;
    white_moves_ = searcher_.position().white_to_move();
    if (limits_.perft) {
        tell_perft(*limits_.perft);
        return;
    }
    if (answer_from_book(limits_)) {
        return;
    }
    SearchOrder order;
    order.limits = limits_;
    order.options = options_;
    order.start = std::max(arrival_, work_ended_);
    order.game_ply = game_ply_;
    order.plan = plan_time(limits_, white_moves_, game_ply_, milliseconds(options_.move_overhead));
    plan_looks(order.plan, order.start);
    try {
        searcher_.begin(std::move(order));
    } catch (std::bad_alloc const&) {
        output_.remark("no memory to search with");
        output_.line("bestmove 0000");
    }
}

void Front::command_stop(std::string_view) {
    if (!searcher_.busy()) {
        return;
    }
    stop_at_.reset();
    searcher_.stop();
    if (!force_at_) {
        force_at_ = std::chrono::steady_clock::now() + patience;
    }
}

void Front::command_ponderhit(std::string_view) {
    if (!searcher_.busy() || searcher_.stopping() || !limits_.ponder) {
        output_.remark("ponderhit is ignored, nothing is pondered");
        return;
    }
    limits_.ponder = false;
    TimePlan const plan =
        plan_time(limits_, white_moves_, game_ply_, milliseconds(options_.move_overhead));
    plan_looks(plan, arrival_);
    searcher_.ponderhit(plan, arrival_);
}

}  // namespace orvelin::play
