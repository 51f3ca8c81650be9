#pragma once

#include <cstddef>

/// Sizes that docs/companions-protocol.md sets.
namespace tarne::limits {

/// The longest line between bridge and server, its line feed included, in bytes.
inline constexpr std::size_t line = 16 * 1024;
/// Of the goals, in UTF-16 units.
inline constexpr std::size_t goals = 2000;
inline constexpr std::size_t origin = 300;
inline constexpr std::size_t path = 1024;
inline constexpr std::size_t title = 200;
inline constexpr std::size_t description = 300;
inline constexpr std::size_t reason = 120;

/// The largest whole number that every JSON writer keeps.
inline constexpr double id = 9007199254740991.0;

} // namespace tarne::limits
