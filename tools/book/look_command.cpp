// The moves of a position.

#include <CLI/CLI.hpp>
#include <cstdint>
#include <iomanip>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "book/bk_move.h"
#include "book/book_lookup.h"
#include "book/book_reader.h"
#include "book/book_record.h"
#include "book/commands.h"
#include "book/legal_moves.h"
#include "generation/move_generator.h"
#include "generation/tables.h"
#include "position/chess_position.h"
#include "position/move.h"
#include "support/position_argument.h"
#include "support/tool_main.h"

namespace orvelin::tools {

namespace {

struct look_arguments_t {
    std::string book;
    std::string fen = start_fen;
    bool chess960 = false;
};

std::uint64_t sum_of_weights(std::vector<Book_record> const& entries) {
    std::uint64_t sum = 0;
    for (Book_record const& entry : entries) {
        sum += entry.get_weight();
    }
    return sum;
}

void print_move(std::string const& move, std::uint16_t weight, double percentage, bool legal) {
    std::cout << std::left << std::setw(5) << move << std::right << std::setw(6) << weight
              << std::fixed << std::setprecision(1) << std::setw(6) << percentage << '%'
              << (legal ? "" : "  illegal") << '\n';
}

int look(look_arguments_t const& arguments) {
    BookReader book(arguments.book);
    auto const tables = std::make_unique<Tables>();
    ChessPosition position(*tables);
    position.set_chess960(arguments.chess960);
    set_position(position, arguments.fen);
    std::vector<Book_record> const entries = entries_of_key(book, position.get_hash());
    warn_of_stray_bytes(book);
    if (entries.empty()) {
        throw std::runtime_error(book.name() + " has no move for the position");
    }

    std::uint64_t const sum = sum_of_weights(entries);
    MoveGenerator generator(*tables);
    for (Book_record const& entry : entries) {
        Move const move = entry.get_move()(position);
        double const percentage =
            sum == 0 ? 0.0 : 100.0 * entry.get_weight() / static_cast<double>(sum);
        print_move(move.algebraic(arguments.chess960), entry.get_weight(), percentage,
                   is_legal(generator, position, move));
    }
    if (sum == 0) {
        std::cerr << "warning: all weights are 0, the engine plays none of these moves"
                  << std::endl;
    }
    return exit_success;
}

}  // namespace

void add_look_command(CLI::App& app, command_t& command) {
    CLI::App* const look_app = app.add_subcommand("look", "Prints the moves of a position");
    look_app->footer(
        "The moves come in the order of the file, each with its weight and its share of "
        "all weights.\nA move that is not legal in the position is marked. Exit code 1 when there "
        "is no move.");
    auto const arguments = std::make_shared<look_arguments_t>();
    look_app->add_option("BOOK", arguments->book, "The book")->required();
    look_app->add_option("--fen", arguments->fen,
                         "The position; the start position when not given");
    look_app->add_flag("--chess960", arguments->chess960,
                       "Write castling as the king taking his own rook");
    look_app->callback(
        [arguments, &command] { command = [arguments] { return look(*arguments); }; });
}

}  // namespace orvelin::tools
