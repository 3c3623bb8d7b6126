#pragma once

#include <algorithm>
#include <array>
#include <filesystem>

namespace orvelin::test {

/// The places where the engine looks for a book before its working directory, in this order.
inline constexpr std::array<char const*, 2> installed_books = {
    "/usr/local/games/orvelin.files/Orvelin.bin",
    "/usr/games/orvelin.files/Orvelin.bin",
};

/// What a test of books says that cannot run.
inline constexpr char const* book_in_the_way =
    "an opening book is installed, and the system gives no view without it: run the tests as root, "
    "or without the installed book";

/// True when the engine takes another book than that of a test. It happens only where a book is
/// installed and the system lets nobody hide it.
inline bool installed_book_in_sight() {
    return std::any_of(installed_books.begin(), installed_books.end(),
                       [](char const* place) { return std::filesystem::exists(place); });
}

}  // namespace orvelin::test
