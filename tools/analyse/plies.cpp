#include "analyse/plies.h"

#include <charconv>
#include <string_view>

namespace orvelin::tools {

namespace {

bool read_ply(std::string_view text, int& ply) {
    auto const read = std::from_chars(text.data(), text.data() + text.size(), ply);
    return read.ec == std::errc() && read.ptr == text.data() + text.size() && ply >= 0;
}

}  // namespace

std::optional<Plies> parse_plies(std::string const& text) {
    Plies plies;
    std::size_t const dash = text.find('-');
    std::string const from = text.substr(0, dash);
    std::string const to = dash == std::string::npos ? from : text.substr(dash + 1);
    if (text == "-" || (!from.empty() && !read_ply(from, plies.from)) ||
        (!to.empty() && !read_ply(to, plies.to)) || text.empty() || plies.from > plies.to) {
        return std::nullopt;
    }
    return plies;
}

}  // namespace orvelin::tools
