#pragma once

namespace tarne {

/// What the user has asked the whole desktop for. Where nothing is asked for, the program looks and
/// moves as its own style tells.
struct DesktopWishes {
    static constexpr double largestTextScale = 1.5;

    bool reducedMotion = false; ///< Nothing is to move by itself.
    bool contrastMore = false;  ///< Texts are to stand out from their ground.
    double textScale = 1.0;     ///< How much larger texts are to be, from 1.0 to the largest.

    bool operator==(const DesktopWishes &) const = default;
};

} // namespace tarne
