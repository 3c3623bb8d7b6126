#pragma once

#include <functional>

#include "search/score.h"

namespace orvelin {

/// Bounds within which the root is searched.
struct SearchWindow {
    int alpha = -infinite_score;
    int beta = infinite_score;
};

/// Told of every return of the root search: the window that was searched and the score.
/// Called on the searching thread, before the window is moved.
using RootObserver = std::function<void(int alpha, int beta, int score)>;

}  // namespace orvelin
