#include "protocol/engine.h"
#include "search/score.h"

namespace orvelin {

namespace {

std::string score_text(int score) {
    if (score > max_ordinary_score) {
        return " score mate " + std::to_string((mate_score - score) / 2 + 1);
    }
    if (score < -max_ordinary_score) {
        return " score mate " + std::to_string((-mate_score - score) / 2);
    }
    return " score cp " + std::to_string(score);
}

}  // namespace

void Engine::report_lines(status_t status) {
    if (multipv_.version() >= analysis_.mpv_version()) {
        return;
    }
    if (status == searching_status) {
        take_lines();
    } else {
        take_last_lines();
    }
    send_info(analysis_);
}

// The assignment moves the reported version on by one only, so while a search runs the newest
// lines go out again until the reports have caught up with the search (oddity 27).
void Engine::take_lines() {
    multipv_ = analysis_.mpv();
}

void Engine::take_last_lines() {
    take_lines();
    multipv_.set_version(analysis_.mpv_version());
}

void Engine::send_info(Analysis& analysis) {
    int const iteration = analysis.get_iteration();
    std::uint64_t const nodes = analysis.get_node_count();
    std::uint64_t const time = analysis.get_running_time();
    if (time == 0) {
        return;
    }
    // In whole thousands (oddity 28).
    std::uint64_t const nps = nodes / time * 1000;
    std::string const head = "info depth " + std::to_string(iteration) + " seldepth " +
                             std::to_string(analysis.get_seldepth());
    std::string const counts = " time " + std::to_string(time) + " nodes " + std::to_string(nodes) +
                               " nps " + std::to_string(nps);
    int const lines = static_cast<int>(multipv_.size());
    for (int index = 0; index < lines; ++index) {
        send(info_line(index, head, counts));
    }
}

std::string Engine::info_line(int index, std::string const& head, std::string const& counts) const {
    PrincipalVariation const& line = multipv_[index];
    std::string text = head;
    if (multipv_.number() > 1) {
        text += " multipv " + std::to_string(index + 1);
    }
    text += score_text(line.score()) + counts + " pv ";
    for (Move const& move : line) {
        text += move.algebraic(chess960_) + " ";
    }
    return text;
}

void Engine::send_hashfull(Analysis& analysis) {
    send("info hashfull " + std::to_string(analysis.get_hashfull()));
}

}  // namespace orvelin
