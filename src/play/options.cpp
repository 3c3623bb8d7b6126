#include "play/options.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "play/reader_text.h"
#include "play/strength.h"
#include "play/version.h"

namespace orvelin::play {

namespace {

/// A path of this length is longer than any system takes.
constexpr std::size_t longest_string = 4096;

enum class kind_t { spin, check, button, string, units, about };

std::string about_text() {
    return "Orvelin " + std::string(version) + " by Kalvoorst";
}

/// An option, with the member that holds its value for its kind.
struct entry_t {
    std::string_view name;
    kind_t kind;
    option_t changed = option_t::other;
    int Options::*number = nullptr;
    int low = 0;
    int high = 0;
    bool Options::*flag = nullptr;
    std::string Options::*text = nullptr;
};

constexpr entry_t spin(std::string_view name, int Options::*number, int low, int high,
                       option_t changed = option_t::other) {
    return {name, kind_t::spin, changed, number, low, high};
}

constexpr entry_t check(std::string_view name, bool Options::*flag,
                        option_t changed = option_t::other) {
    return {name, kind_t::check, changed, nullptr, 0, 0, flag};
}

constexpr entry_t string(std::string_view name, std::string Options::*text, option_t changed) {
    return {name, kind_t::string, changed, nullptr, 0, 0, nullptr, text};
}

constexpr std::array<entry_t, 16> entries{
    spin("Hash", &Options::hash, 1, 65536, option_t::hash),
    entry_t{"Clear Hash", kind_t::button, option_t::clear_hash},
    spin("Threads", &Options::threads, 1, 1),
    check("Ponder", &Options::ponder),
    spin("MultiPV", &Options::multipv, 1, 256),
    check("OwnBook", &Options::own_book, option_t::book),
    string("Book File", &Options::book_file, option_t::book),
    spin("Move Overhead", &Options::move_overhead, 0, 5000),
    check("UCI_Chess960", &Options::chess960),
    check("UCI_LimitStrength", &Options::limit_strength),
    spin("UCI_Elo", &Options::elo, min_elo, max_elo),
    check("UCI_ShowWDL", &Options::show_wdl),
    check("UCI_AnalyseMode", &Options::analyse_mode),
    entry_t{"UCI_EngineAbout", kind_t::about},
    string("Log File", &Options::log_file, option_t::log_file),
    entry_t{"Score Unit", kind_t::units},
};

std::string truth(bool value) {
    return value ? "true" : "false";
}

std::string range_of(entry_t const& entry) {
    return std::to_string(entry.low) + " to " + std::to_string(entry.high);
}

/// What stands behind the name in the handshake.
std::string type_text(entry_t const& entry, Options const& defaults) {
    switch (entry.kind) {
        case kind_t::spin:
            return "spin default " + std::to_string(defaults.*entry.number) + " min " +
                   std::to_string(entry.low) + " max " + std::to_string(entry.high);
        case kind_t::check:
            return "check default " + truth(defaults.*entry.flag);
        case kind_t::button:
            return "button";
        case kind_t::string:
            return "string default <empty>";
        case kind_t::units:
            return "combo default centipawn var centipawn var engine";
        case kind_t::about:
            return "string default " + about_text();
    }
    return "";
}

std::string refuse(entry_t const& entry, std::string_view value, std::string const& expected) {
    return "option " + std::string(entry.name) + ": " +
           (value.empty() ? "no value" : "the value " + shown(value)) + ", " + expected +
           " is expected";
}

std::string set_spin(entry_t const& entry, std::string_view value, Options& options) {
    auto const number = read_number(value);
    if (!number || number->had_fraction || number->value < entry.low ||
        number->value > entry.high) {
        return refuse(entry, value, range_of(entry));
    }
    options.*entry.number = static_cast<int>(number->value);
    return "";
}

std::string set_check(entry_t const& entry, std::string_view value, Options& options) {
    std::string const word = lower_case(value.substr(0, longest_string));
    if (word == "true" || word == "on" || word == "1") {
        options.*entry.flag = true;
    } else if (word == "false" || word == "off" || word == "0") {
        options.*entry.flag = false;
    } else {
        return refuse(entry, value, "true or false");
    }
    return "";
}

bool is_control(char letter) {
    return (letter >= 0 && letter < ' ') || letter == '\x7f';
}

std::string set_string(entry_t const& entry, std::string_view value, Options& options) {
    if (value.size() > longest_string || std::any_of(value.begin(), value.end(), is_control)) {
        return refuse(entry, value,
                      "a text of at most " + std::to_string(longest_string) +
                          " bytes without control characters");
    }
    options.*entry.text = value == "<empty>" ? std::string_view() : value;
    return "";
}

std::string set_units(entry_t const& entry, std::string_view value, Options& options) {
    std::string const word = lower_case(value.substr(0, longest_string));
    if (word != "centipawn" && word != "engine") {
        return refuse(entry, value, "centipawn or engine");
    }
    options.engine_units = word == "engine";
    return "";
}

std::string set_value(entry_t const& entry, std::string_view value, Options& options) {
    switch (entry.kind) {
        case kind_t::spin:
            return set_spin(entry, value, options);
        case kind_t::check:
            return set_check(entry, value, options);
        case kind_t::button:
            return "";
        case kind_t::string:
            return set_string(entry, value, options);
        case kind_t::units:
            return set_units(entry, value, options);
        case kind_t::about:
            return "option " + std::string(entry.name) +
                   ": tells who the engine is and cannot be set";
    }
    return "";
}

/// A line in its two parts.
struct setting_t {
    bool named = false;
    /// As it was sent, of one blank or more between its words.
    std::string_view sent_name;
    /// In small letters, with single blanks.
    std::string name;
    /// As it was sent, blanks inside included.
    std::string_view value;
};

setting_t split(std::string_view arguments) {
    setting_t setting;
    auto const words = words_of(arguments);
    if (words.empty() || lower_case(words[0]) != "name") {
        return setting;
    }
    setting.named = words.size() > 1;
    for (std::size_t i = 1; i < words.size(); ++i) {
        if (lower_case(words[i]) == "value") {
            auto const behind = words[i].data() + words[i].size() - arguments.data();
            setting.value = trimmed(arguments.substr(static_cast<std::size_t>(behind)));
            break;
        }
        if (i > 1) {
            setting.name += ' ';
        }
        setting.name += lower_case(words[i]);
        auto const end = words[i].data() + words[i].size();
        setting.sent_name = {words[1].data(), static_cast<std::size_t>(end - words[1].data())};
    }
    return setting;
}

}  // namespace

std::vector<std::string> option_lines() {
    std::vector<std::string> lines;
    lines.reserve(entries.size());
    Options const defaults;
    for (entry_t const& entry : entries) {
        lines.push_back("option name " + std::string(entry.name) + " type " +
                        type_text(entry, defaults));
    }
    return lines;
}

OptionText set_option(std::string_view arguments, Options& options) {
    setting_t const setting = split(arguments);
    if (!setting.named) {
        return {option_t::none, "setoption: " + shown(trimmed(arguments)) +
                                    ", name and the name of an option are expected"};
    }
    auto const entry = std::find_if(
        entries.begin(), entries.end(),
        [&setting](entry_t const& known) { return lower_case(known.name) == setting.name; });
    if (entry == entries.end()) {
        return {option_t::none, "setoption: there is no option " + shown(setting.sent_name)};
    }
    std::string const refusal = set_value(*entry, setting.value, options);
    return {refusal.empty() ? entry->changed : option_t::none, refusal};
}

}  // namespace orvelin::play
