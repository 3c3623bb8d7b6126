#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "search/principal_variation.h"

namespace orvelin {

/// The ranked lines of the current search: the single channel from search to reporting.
///
/// Owns its lines; the vector never holds more than number() lines after an add(). The
/// object locks nothing: the instance shared by the analysis thread and the main thread is
/// guarded by the analysis mutex.
class MultiPV {
 public:
    using iterator = std::vector<PrincipalVariation>::iterator;
    using const_iterator = std::vector<PrincipalVariation>::const_iterator;

    MultiPV() = default;
    /// Takes number, version and lines.
    MultiPV(MultiPV const&) = default;
    /// Takes number and lines, and adds 1 to the own version.
    MultiPV& operator=(MultiPV const& other);
    ~MultiPV() = default;

    /// Wanted number of lines.
    int number() const { return number_; }
    void set_number(int number) { number_ = number; }

    /// Counts the changes made by add().
    int version() const { return version_; }
    void set_version(int version) { version_ = version; }

    /// Number of lines held.
    int size() const { return static_cast<int>(lines_.size()); }
    /// Empties the lines; the version stays.
    void clear() { lines_.clear(); }

    /// The line of that rank, 0 to size() - 1; not checked.
    PrincipalVariation& operator[](int index) { return lines_[static_cast<std::size_t>(index)]; }
    PrincipalVariation const& operator[](int index) const {
        return lines_[static_cast<std::size_t>(index)];
    }

    iterator begin() { return lines_.begin(); }
    iterator end() { return lines_.end(); }
    const_iterator begin() const { return lines_.begin(); }
    const_iterator end() const { return lines_.end(); }
    const_iterator cbegin() const { return lines_.cbegin(); }
    const_iterator cend() const { return lines_.cend(); }

    /// Adds a line, in place of a stored one with the same first move, ranks the lines and
    /// cuts them to number(). A line without moves changes nothing, the version included.
    void add(PrincipalVariation line);

    /// Picks the move of weakened play: every line whose score is within `margin` of the
    /// best is equally likely to come first. Nothing happens when there is no line.
    void randomize(int margin);
    /// The same for a given random word.
    void randomize(int margin, std::uint32_t random_word);

 private:
    void rank();
    void sort_by_score();

    int number_ = 1;
    int version_ = 0;
    std::vector<PrincipalVariation> lines_;
};

}  // namespace orvelin
