#include "GoalsText.h"

#include "ProtocolLimits.h"

#include <cstdint>

#include <unictype.h>
#include <unigbrk.h>
#include <unistr.h>

namespace tarne {

namespace {

constexpr ucs4_t firstOfTwoUnits = 0x10000;

/// The text's bytes as the library takes them.
const std::uint8_t *bytesOf(std::string_view text) {
    return reinterpret_cast<const std::uint8_t *>(text.data());
}

/// Calls `take(character, size in bytes)` for each character until that returns false.
template <class Take>
void forEachCharacter(std::string_view text, Take take) {
    while (!text.empty()) {
        ucs4_t character = 0;
        const int size = u8_mbtouc(&character, bytesOf(text), text.size());
        if (!take(character, static_cast<std::size_t>(size)))
            return;
        text.remove_prefix(static_cast<std::size_t>(size));
    }
}

/// The longest beginning that has no more units than goals may have, whatever it cuts in two.
std::string_view shortened(std::string_view text) {
    std::size_t units = 0;
    std::size_t kept = 0;
    forEachCharacter(text, [&](ucs4_t character, std::size_t size) {
        units += character < firstOfTwoUnits ? 1 : 2;
        if (units > limits::goals)
            return false;
        kept += size;
        return true;
    });
    return text.substr(0, kept);
}

/// The longest beginning with whole graphemes that fits.
std::string_view shortenedBetweenGraphemes(std::string_view text) {
    std::size_t kept = shortened(text).size();
    if (kept == text.size())
        return text;
    ucs4_t next = 0;
    const int nextSize = u8_mbtouc(&next, bytesOf(text.substr(kept)), text.size() - kept);
    std::string begins(kept + static_cast<std::size_t>(nextSize), '\0');
    u8_grapheme_breaks(bytesOf(text), begins.size(), begins.data());
    while (kept > 0 && begins[kept] == '\0')
        --kept;
    return text.substr(0, kept);
}

bool isControl(ucs4_t character) {
    constexpr ucs4_t lineSeparator = 0x2028;
    constexpr ucs4_t paragraphSeparator = 0x2029;
    return uc_is_general_category(character, UC_CONTROL) || character == lineSeparator ||
           character == paragraphSeparator;
}

} // namespace

std::string toldGoals(std::string_view goals) {
    const std::string_view kept = shortenedBetweenGraphemes(goals);
    std::string told;
    std::size_t at = 0;
    forEachCharacter(kept, [&](ucs4_t character, std::size_t size) {
        told.append(isControl(character) ? std::string_view(" ") : kept.substr(at, size));
        at += size;
        return true;
    });
    return told;
}

bool holdWords(std::string_view goals) {
    bool found = false;
    forEachCharacter(goals, [&found](ucs4_t character, std::size_t) {
        found = uc_is_general_category(character, UC_LETTER) ||
                uc_is_general_category(character, UC_NUMBER);
        return !found;
    });
    return found;
}

bool isValidUtf8(std::string_view text) {
    return u8_check(bytesOf(text), text.size()) == nullptr;
}

} // namespace tarne
