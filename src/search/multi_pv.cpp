#include "search/multi_pv.h"

#include <algorithm>
#include <iterator>
#include <random>
#include <utility>

namespace orvelin {

MultiPV& MultiPV::operator=(MultiPV const& other) {
    number_ = other.number_;
    lines_ = other.lines_;
    ++version_;
    return *this;
}

void MultiPV::add(PrincipalVariation line) {
    if (line.size() == 0) {
        return;
    }
    auto const same_first_move = [&line](PrincipalVariation const& stored) {
        return *stored.cbegin() == *line.cbegin();
    };
    auto const stored = std::find_if(lines_.begin(), lines_.end(), same_first_move);
    if (stored != lines_.end()) {
        *stored = lines_.back();
        lines_.pop_back();
    }
    lines_.push_back(line);
    rank();
    if (size() > number_) {
        lines_.erase(std::next(lines_.begin(), std::max(number_, 0)), lines_.end());
    }
    ++version_;
}

void MultiPV::rank() {
    for (int i = 0; i < size(); ++i) {
        // Each candidate is compared with line i and not with the best so far, so the order is
        // a rough one, on which the line numbers of the reports depend (oddity 61).
        int best = i;
        for (int j = i + 1; j < size(); ++j) {
            if ((*this)[j] > (*this)[i]) {
                best = j;
            }
        }
        if (best != i) {
            std::swap((*this)[i], (*this)[best]);
        }
    }
}

void MultiPV::sort_by_score() {
    for (int i = 0; i < size(); ++i) {
        int best = i;
        for (int j = i + 1; j < size(); ++j) {
            if ((*this)[j].score() > (*this)[best].score()) {
                best = j;
            }
        }
        if (best != i) {
            std::swap((*this)[i], (*this)[best]);
        }
    }
}

void MultiPV::randomize(int margin) {
    if (lines_.empty()) {
        return;
    }
    std::random_device device("default");
    randomize(margin, device());
}

void MultiPV::randomize(int margin, std::uint32_t random_word) {
    if (lines_.empty()) {
        return;
    }
    sort_by_score();
    std::int64_t const limit = std::int64_t{lines_[0].score()} - margin;
    std::uint32_t candidates = 1;
    for (std::uint32_t i = 1; i < lines_.size(); ++i) {
        if (lines_[i].score() >= limit) {
            candidates = i + 1;
        }
    }
    // The absolute value of the word taken as a signed number.
    std::uint32_t const magnitude = random_word > 0x7fffffffU ? 0U - random_word : random_word;
    std::uint32_t const choice = magnitude % candidates;
    if (choice != 0) {
        std::swap(lines_[0], lines_[choice]);
    }
}

}  // namespace orvelin
