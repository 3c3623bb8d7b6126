// Whether a book is sorted and whole.

#include <CLI/CLI.hpp>
#include <cstdint>
#include <iostream>
#include <memory>
#include <string>

#include "book/book_check.h"
#include "book/book_reader.h"
#include "book/book_record.h"
#include "book/commands.h"
#include "book/entry_text.h"
#include "support/counted.h"
#include "support/tool_main.h"

namespace orvelin::tools {

namespace {

/// Rubbish has a fault in every entry; the first ones are enough to see that.
constexpr std::uint64_t max_lines = 50;

int verify(std::string const& name) {
    BookReader book(name);
    std::uint64_t faults = 0;
    auto const report = [&faults](std::string const& fault) {
        if (++faults <= max_lines) {
            std::cout << fault << '\n';
        }
    };
    BookCheck check(report);
    for_each_entry(
        book, [&](std::uint64_t number, Book_record const& entry) { check.add(number, entry); });
    check.finish();
    if (book.stray_bytes() > 0) {
        report(counted(book.stray_bytes(), "stray byte", "stray bytes") + " behind the last of " +
               counted(book.size(), "entry", "entries"));
    }
    if (faults > max_lines) {
        std::cout << "... and " << faults - max_lines << " more\n";
    }
    if (faults == 0) {
        std::cout << size_text(book.size(), check.positions()) << '\n';
        return exit_success;
    }
    std::cout << counted(book.size(), "entry", "entries") << ", "
              << counted(faults, "fault", "faults") << '\n';
    return exit_failure;
}

}  // namespace

void add_verify_command(CLI::App& app, command_t& command) {
    CLI::App* const verify_app =
        app.add_subcommand("verify", "Tells whether a book is sorted and whole");
    verify_app->footer(
        "Asked for are: no stray bytes at the end, keys in order, no move twice for a key, a "
        "weight\nabove 0 for each key, known promotions. What is wrong is printed with the number "
        "of the entry,\nfrom 1. Exit code 1 on any fault.");
    auto const book = std::make_shared<std::string>();
    verify_app->add_option("BOOK", *book, "The book")->required();
    verify_app->callback([book, &command] { command = [book] { return verify(*book); }; });
}

}  // namespace orvelin::tools
