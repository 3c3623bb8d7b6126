// A book from lines of moves.

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>

#include "book/book_contents.h"
#include "book/book_line.h"
#include "book/book_maker.h"
#include "book/commands.h"
#include "generation/tables.h"
#include "platform/path.h"
#include "support/position_argument.h"
#include "support/progress.h"
#include "support/tool_main.h"

namespace orvelin::tools {

namespace {

struct make_arguments_t {
    std::string lines;
    std::string output;
    std::uint64_t max_ply = max_games;
    std::uint64_t min_count = 1;
    std::string fen = start_fen;
};

/// Adds all lines of a text; `name` is what messages call it.
void add_lines(BookMaker& maker, std::istream& text, std::string const& name) {
    Progress progress;
    std::uint64_t number = 0;
    for (std::string line; std::getline(text, line);) {
        progress.show("line " + std::to_string(++number));
        try {
            maker.add(read_book_line(line));
        } catch (std::exception const& error) {
            throw std::runtime_error(name + ":" + std::to_string(number) + ": " + error.what());
        }
    }
    if (text.bad()) {
        throw std::runtime_error("cannot read " + name);
    }
}

void add_file(BookMaker& maker, std::string const& name) {
    if (name == "-") {
        return add_lines(maker, std::cin, "standard input");
    }
    // A folder opens as a file.
    if (std::filesystem::is_directory(path_of(name))) {
        throw std::runtime_error("cannot read " + name + ": a folder");
    }
    std::ifstream file(path_of(name));
    if (!file) {
        throw std::runtime_error("cannot read " + name + ": " + std::strerror(errno));
    }
    add_lines(maker, file, name);
}

int make(make_arguments_t const& arguments) {
    auto const tables = std::make_unique<Tables>();
    BookMaker maker(*tables, arguments.fen, arguments.max_ply);
    add_file(maker, arguments.lines);
    BookContents& contents = maker.contents();
    contents.remove_below(arguments.min_count);
    if (contents.size() == 0) {
        throw std::runtime_error("there are no moves to write");
    }
    write_book(arguments.output, contents);
    return exit_success;
}

}  // namespace

void add_make_command(CLI::App& app, command_t& command) {
    CLI::App* const make_app = app.add_subcommand("make", "Writes a book from lines of moves");
    make_app->footer(
        "Each line of the text holds the UCI moves of a game or a variation; '#' begins a comment. "
        "The\nweight of a move is the number of lines that have it. A line such as \"3: e2e4 "
        "e7e5\" "
        "counts as\nthree; a move such as e2e4=20 has the weight 20 whatever is counted. Where a "
        "weight "
        "is too large\nfor the format, all weights of the position are scaled down. Nothing is "
        "written "
        "when a move is\nillegal.");
    auto const arguments = std::make_shared<make_arguments_t>();
    make_app->add_option("LINES", arguments->lines, "The text; - for standard input")->required();
    make_app->add_option("-o,--output", arguments->output, "The book to write")->required();
    make_app
        ->add_option("--max-ply", arguments->max_ply, "Take this many moves of each line, from 1")
        ->check(CLI::Range(std::uint64_t{1}, max_games));
    make_app
        ->add_option(
            "--min-count", arguments->min_count,
            "Leave out the moves of fewer lines, those with a weight of their own excepted")
        ->check(CLI::Range(std::uint64_t{1}, max_games));
    make_app->add_option("--fen", arguments->fen,
                         "Where all lines begin; the start position when not given");
    make_app->callback(
        [arguments, &command] { command = [arguments] { return make(*arguments); }; });
}

}  // namespace orvelin::tools
