// One book of several.

#include <CLI/CLI.hpp>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "book/book_contents.h"
#include "book/book_reader.h"
#include "book/book_record.h"
#include "book/commands.h"
#include "book/entry_text.h"
#include "support/counted.h"
#include "support/tool_main.h"

namespace orvelin::tools {

namespace {

struct merge_arguments_t {
    std::vector<std::string> books;
    std::string output;
};

void add_book(BookContents& contents, std::string const& name) {
    BookReader book(name);
    if (book.stray_bytes() > 0) {
        throw std::runtime_error(
            name + " is damaged: " + counted(book.stray_bytes(), "stray byte", "stray bytes") +
            " at the end");
    }
    for_each_entry(book, [&](std::uint64_t number, Book_record const& entry) {
        if (!has_known_promotion(entry)) {
            throw std::runtime_error(name + " is damaged: unknown promotion in entry " +
                                     std::to_string(number));
        }
        contents.add(entry.get_key(), entry.get_move(), entry.get_weight(), entry.get_learn());
    });
}

int merge(merge_arguments_t const& arguments) {
    BookContents contents;
    for (std::string const& name : arguments.books) {
        add_book(contents, name);
    }
    write_book(arguments.output, contents);
    return exit_success;
}

}  // namespace

void add_merge_command(CLI::App& app, command_t& command) {
    CLI::App* const merge_app =
        app.add_subcommand("merge", "Writes the entries of several books into one");
    merge_app->footer(
        "The new book is sorted by key, for each key the heaviest move first. The weights of the "
        "same move\nin the same position are added up; where the sum is too large, all weights of "
        "the position are\nscaled down. The learn value is that of the first book. The books need "
        "not "
        "be sorted; a damaged\none is refused.");
    auto const arguments = std::make_shared<merge_arguments_t>();
    constexpr int at_least_two = -2;
    merge_app->add_option("BOOKS", arguments->books, "The books, two or more")
        ->required()
        ->expected(at_least_two);
    merge_app->add_option("-o,--output", arguments->output, "The book to write")->required();
    merge_app->callback(
        [arguments, &command] { command = [arguments] { return merge(*arguments); }; });
}

}  // namespace orvelin::tools
