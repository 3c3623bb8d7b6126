#include "analyse/position_files.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "analyse/input_kind.h"
#include "analyse/input_text.h"
#include "analyse/pgn_reader.h"
#include "analyse/position_lines.h"
#include "analyse/shared_tables.h"
#include "analyse/utf8.h"
#include "platform/descriptor_input.h"
#include "position/chess_position.h"

namespace orvelin::tools {

namespace {

/// Looks no further ahead than to the end of the first word: behind that a pipe may have nothing
/// yet.
analyse::input_kind kind_of_begin(analyse::InputText& text) {
    constexpr std::string_view blanks = " \t\r\n";
    std::string_view ahead;
    for (std::size_t wanted = 1; wanted <= analyse::InputText::most_ahead;
         wanted = ahead.size() + 1) {
        ahead = text.ahead(wanted);
        std::size_t const word = ahead.find_first_not_of(blanks);
        bool const whole = word != std::string_view::npos &&
                           ahead.find_first_of(blanks, word) != std::string_view::npos;
        if (whole || ahead.size() < wanted) {
            break;
        }
    }
    analyse::InputText begin(analyse::fill_from(ahead.substr(0, analyse::InputText::most_ahead)));
    return analyse::find_kind(begin);
}

}  // namespace

/// One file, and where the reading of it stands.
class PositionFiles::File {
 public:
    File(Settings const& settings, std::string const& name, WakeUp const* stop,
         PositionFiles& files)
        : settings_(settings),
          name_(name),
          shown_name_(analyse::valid_utf8(name)),
          files_(files),
          input_(name, stop),
          text_([this](char* place, std::size_t room) { return input_.read(place, room); }) {}

    bool next(Asked& asked) {
        if (!begun_) {
            begun_ = true;
            begin();
        }
        return games_ ? next_of_games(asked) : next_of_lines(asked);
    }
    bool ready() const { return in_game() || input_.ready(); }
    /// How many bytes are gone over, those of the game that is open too.
    std::uint64_t bytes_passed() const { return input_.bytes_read() - text_.unread(); }
    /// So many positions of the open game are still to be given.
    std::uint64_t rest_of_game() const {
        std::size_t const to =
            in_game() ? std::min(game_->moves.size(), static_cast<std::size_t>(settings_.plies.to))
                      : 0;
        std::size_t const from = std::max(ply_, static_cast<std::size_t>(settings_.plies.from));
        return in_game() && from <= to ? to - from + 1 : 0;
    }

 private:
    void begin();
    bool next_of_games(Asked& asked);
    bool next_of_lines(Asked& asked);
    bool next_game();
    void take_position(Asked& asked);
    void tell(std::string const& remark) { files_.tell_(shown_name_ + ": " + remark); }
    void tell_remarks(std::vector<std::string> const& remarks) {
        for (std::string const& remark : remarks) {
            tell(remark);
        }
    }
    bool in_game() const { return games_ && game_open_; }

    Settings const& settings_;
    std::string name_;
    std::string shown_name_;
    PositionFiles& files_;
    DescriptorInput input_;
    analyse::InputText text_;
    bool begun_ = false;

    std::unique_ptr<analyse::PositionLines> lines_;
    analyse::PositionLine line_;
    std::unique_ptr<analyse::PgnReader> games_;
    std::shared_ptr<analyse::Game const> game_;
    analyse::Source source_;
    ChessPosition position_{shared_tables()};
    bool game_open_ = false;
    /// Moves made on the position.
    std::size_t ply_ = 0;
};

void PositionFiles::File::begin() {
    if (kind_of_begin(text_) == analyse::input_kind::positions) {
        lines_ = std::make_unique<analyse::PositionLines>(text_, shared_tables());
    } else {
        games_ = std::make_unique<analyse::PgnReader>(text_, shared_tables());
    }
}

bool PositionFiles::File::next_game() {
    while (true) {
        auto game = std::make_shared<analyse::Game>();
        auto const outcome = games_->next(*game);
        if (outcome == analyse::PgnReader::outcome::end) {
            return false;
        }
        tell_remarks(games_->remarks());
        if (outcome == analyse::PgnReader::outcome::broken) {
            ++files_.broken_;
            tell(games_->reason());
            continue;
        }
        ++files_.games_;
        source_.file = shown_name_;
        source_.line = game->line;
        source_.game = game->number;
        source_.white = analyse::valid_utf8(game->tag("White"));
        source_.black = analyse::valid_utf8(game->tag("Black"));
        source_.result = game->result;
        source_.event = analyse::valid_utf8(game->tag("Event"));
        source_.date = analyse::valid_utf8(game->tag("Date"));
        game_ = std::move(game);
        position_.fen(game_->start_fen);
        ply_ = 0;
        return true;
    }
}

void PositionFiles::File::take_position(Asked& asked) {
    asked.source = source_;
    asked.source.ply = static_cast<int>(ply_);
    asked.fen = position_.fen();
    asked.chess960 = game_->chess960;
    asked.played = ply_ < game_->moves.size() ? game_->moves[ply_] : Move();
    asked.game = game_;
    asked.taken = analyse::taken_by(ply_ == 0 ? Move() : game_->moves[ply_ - 1]);
}

bool PositionFiles::File::next_of_games(Asked& asked) {
    while (true) {
        if (!game_open_) {
            game_open_ = next_game();
            if (!game_open_) {
                return false;
            }
        }
        bool const wanted = static_cast<int>(ply_) >= settings_.plies.from;
        if (wanted) {
            take_position(asked);
        }
        if (ply_ < game_->moves.size() && static_cast<int>(ply_) < settings_.plies.to) {
            position_.make_move(game_->moves[ply_]);
            ++ply_;
        } else {
            game_open_ = false;
        }
        if (wanted) {
            return true;
        }
    }
}

bool PositionFiles::File::next_of_lines(Asked& asked) {
    while (true) {
        auto const outcome = lines_->next(line_);
        if (outcome == analyse::PositionLines::outcome::end) {
            return false;
        }
        tell_remarks(lines_->remarks());
        if (outcome == analyse::PositionLines::outcome::broken) {
            ++files_.broken_;
            tell(lines_->reason());
            continue;
        }
        asked.source = analyse::Source();
        asked.source.file = shown_name_;
        asked.source.line = line_.line;
        asked.source.id = analyse::valid_utf8(line_.operation("id"));
        asked.fen = line_.fen;
        asked.chess960 = line_.chess960 || settings_.chess960;
        asked.played = Move();
        asked.taken.reset();
        asked.game.reset();
        return true;
    }
}

PositionFiles::PositionFiles(Settings settings, WakeUp const* stop, tell_t tell)
    : settings_(std::move(settings)), stop_(stop), tell_(std::move(tell)) {
    for (std::string const& name : settings_.names) {
        std::uint64_t const size = size_of_file(name);
        if (size == 0) {
            total_bytes_ = 0;
            break;
        }
        total_bytes_ += size;
    }
}

PositionFiles::~PositionFiles() = default;

bool PositionFiles::open_next() {
    if (next_file_ == settings_.names.size()) {
        return false;
    }
    file_ = std::make_unique<File>(settings_, settings_.names[next_file_++], stop_, *this);
    return true;
}

bool PositionFiles::next(Asked& asked) {
    while (file_ || open_next()) {
        if (file_->next(asked)) {
            ++given_;
            estimate_positions();
            return true;
        }
        bytes_passed_ += file_->bytes_passed();
        file_.reset();
    }
    return false;
}

bool PositionFiles::ready() {
    return !file_ || file_->ready();
}

void PositionFiles::estimate_positions() {
    if (total_bytes_ > 0) {
        // A file may have grown meanwhile.
        auto const passed = static_cast<double>(bytes_passed_ + file_->bytes_passed());
        auto const all = std::max(static_cast<double>(total_bytes_), passed);
        estimated_positions_ = static_cast<double>(given_ + file_->rest_of_game()) * all / passed;
    }
}

}  // namespace orvelin::tools
