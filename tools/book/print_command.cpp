// All entries of a book.

#include <CLI/CLI.hpp>
#include <charconv>
#include <cstdint>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>

#include "book/book_reader.h"
#include "book/book_record.h"
#include "book/commands.h"
#include "book/entry_text.h"
#include "support/tool_main.h"

namespace orvelin::tools {

namespace {

struct print_arguments_t {
    std::string book;
    std::optional<std::string> key;
};

std::uint64_t read_key(std::string const& text) {
    std::string const digits = text.starts_with("0x") ? text.substr(2) : text;
    std::uint64_t key = 0;
    char const* const end = digits.data() + digits.size();
    auto const [rest, error] = std::from_chars(digits.data(), end, key, 16);
    if (error != std::errc() || rest != end) {
        throw UsageError("the key is not a hexadecimal number of 64 bits: " + text);
    }
    return key;
}

int print(print_arguments_t const& arguments) {
    std::optional<std::uint64_t> wanted;
    if (arguments.key) {
        wanted = read_key(*arguments.key);
    }
    BookReader book(arguments.book);
    warn_of_stray_bytes(book);
    bool found = false;
    // Without standard output there is no reason to read on.
    for (Book_record entry; std::cout && book.read(entry);) {
        if (wanted && entry.get_key() != *wanted) {
            continue;
        }
        found = true;
        std::cout << key_text(entry.get_key()) << ' ' << move_text(entry) << ' '
                  << entry.get_weight() << ' ' << entry.get_learn() << '\n';
    }
    if (wanted && !found) {
        throw std::runtime_error(book.name() + " has no entry of the key " + key_text(*wanted));
    }
    return exit_success;
}

}  // namespace

void add_print_command(CLI::App& app, command_t& command) {
    CLI::App* const print_app = app.add_subcommand("print", "Prints all entries");
    print_app->footer(
        "Each entry is a line, in the order of the file: key, move, weight and learn "
        "value.\nCastling is the king taking his own rook; '?' stands for a promotion that the "
        "format "
        "does not know.");
    auto const arguments = std::make_shared<print_arguments_t>();
    print_app->add_option("BOOK", arguments->book, "The book")->required();
    print_app->add_option("--key", arguments->key,
                          "Only the entries of this key, in hexadecimal; exit code 1 when there "
                          "is none");
    print_app->callback(
        [arguments, &command] { command = [arguments] { return print(*arguments); }; });
}

}  // namespace orvelin::tools
