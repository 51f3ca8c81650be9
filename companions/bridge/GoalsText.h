#pragma once

#include <string>
#include <string_view>

namespace tarne {

/// The goals as they are told to others: control characters are blanks, and of more than 2,000
/// UTF-16 units the first are left, whole graphemes. Given in valid UTF-8.
[[nodiscard]] std::string toldGoals(std::string_view goals);

/// Whether there is a letter or a digit in any script, so that a page can be judged by it. Given in
/// valid UTF-8.
[[nodiscard]] bool holdWords(std::string_view goals);

[[nodiscard]] bool isValidUtf8(std::string_view text);

} // namespace tarne
