#include <iomanip>
#include <sstream>

#include "evaluation/evaluation.h"

namespace orvelin {

// The running total is cut to an integer after every term, so it can differ a little from the
// score of static_eval(); it also shows neither the endgame functions nor the side to move's sign
// (oddity 29).
std::string Evaluation::report() {
    constexpr std::size_t name_width = 30;
    std::ostringstream text;
    int total = 0;
    for (std::size_t i = 0; i < term::count; ++i) {
        std::string& name = weight_.names[i];
        if (name.size() < name_width) {
            name.resize(name_width, ' ');
        }
        float const middle_game = terms_.value(i) * weight_.mg[i];
        float const end_game = terms_.value(i) * weight_.eg[i];
        text << name << std::setw(20) << middle_game << "     " << std::setw(20) << end_game
             << "\n";
        total = static_cast<int>(static_cast<float>(total) + middle_game * mg_phase_ +
                                 end_game * eg_phase_);
    }
    double const divisor = static_cast<double>(terms_.value(term::opposite_colored_bishops)) + 1.0;
    text << "\n\nTotal score: " << static_cast<int>(static_cast<double>(total) / divisor)
         << "     (white's point of view)\n";
    return text.str();
}

std::string Evaluation::stats() const {
    std::ostringstream text;
    text << "Evaluation::stats)  missed pht reads: " << missed_pht_reads_
         << "   total evals: " << total_evals_ << "\n";
    return text.str();
}

}  // namespace orvelin
