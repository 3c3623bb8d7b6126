#include "play/eval_text.h"

#include <iomanip>
#include <sstream>

namespace orvelin::play {

namespace {

constexpr int name_width = 30;
constexpr int number_width = 13;

}  // namespace

std::string eval_text(std::string const& report) {
    std::istringstream lines(report);
    std::ostringstream table;
    table << std::left << std::setw(name_width) << "Term" << std::right << std::setw(number_width)
          << "Middle game" << std::setw(number_width) << "End game" << '\n'
          << std::fixed << std::setprecision(1);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string name;
        double middle_game = 0.0;
        double end_game = 0.0;
        if (words >> name >> middle_game >> end_game) {
            // A part that is rounded away has no sign.
            auto const shown = [](double part) { return part > -0.05 && part < 0.05 ? 0.0 : part; };
            table << std::left << std::setw(name_width) << name << std::right
                  << std::setw(number_width) << shown(middle_game) << std::setw(number_width)
                  << shown(end_game) << '\n';
        } else {
            table << line << '\n';
        }
    }
    table << "All in the engine's unit, a pawn is about 230. The phase of the game blends the two\n"
             "columns; the total is before any search and without knowledge of special endings.\n";
    return table.str();
}

}  // namespace orvelin::play
