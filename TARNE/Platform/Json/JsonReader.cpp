#include "JsonReader.h"

#include "JsonPadding.h"
#include "Utf8.h"

#include <array>
#include <charconv>
#include <cmath>

namespace tarne::json {

namespace {

using simdjson::ondemand::json_type;

/// Deeper nesting than this is no document of ours, and each level costs stack.
constexpr int deepestNesting = 512;

/// The text between the quotes as it stands in the document, escapes and all. `token` reaches up to
/// the next token.
std::string_view contentOf(std::string_view token) {
    const std::size_t closingQuote = token.find_last_of('"');
    return token.substr(1, closingQuote - 1);
}

/// Whether `text` means itself: ASCII without an escape. No early exit: compilers turn this form
/// into vector instructions, and nearly every text passes.
bool isPlainAscii(std::string_view text) {
    unsigned char foreign = 0;
    for (const char c : text)
        foreign |= static_cast<unsigned char>((c & 0x80) | (c == '\\' ? 0x80 : 0));
    return foreign == 0;
}

/// Reads a text that means itself, as nearly every text does, without copying it; false, with the
/// value still to be read, for any other.
bool readPlain(Value &value, std::string_view &result) {
    const std::string_view token = value.raw_json_token();
    if (!token.starts_with('"'))
        return false;
    result = contentOf(token);
    simdjson::ondemand::raw_json_string passed;
    return isPlainAscii(result) && !value.get_raw_json_string().get(passed);
}

/// Reads a text that is known to begin with a JSON number.
bool readLongNumber(std::string_view text, double &result) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), result);
    if (error == std::errc())
        return true;
    // Too near to zero for a double is zero, too large is infinite.
    result = QByteArrayView(text.data(), end - text.data()).toDouble();
    return std::isfinite(result);
}

/// -1 for what is no hexadecimal digit.
constexpr std::array<qint8, 256> hexDigitValues = [] {
    std::array<qint8, 256> values{};
    values.fill(-1);
    for (std::size_t digit = 0; digit < 10; ++digit)
        values['0' + digit] = static_cast<qint8>(digit);
    for (std::size_t digit = 10; digit < 16; ++digit) {
        values['a' + digit - 10] = static_cast<qint8>(digit);
        values['A' + digit - 10] = static_cast<qint8>(digit);
    }
    return values;
}();

std::optional<QUuid> parseUuid(std::string_view text) {
    constexpr std::array<std::size_t, 16> digitPairs{0,  2,  4,  6,  9,  11, 14, 16,
                                                     19, 21, 24, 26, 28, 30, 32, 34};
    if (text.size() != 36 || text[8] != '-' || text[13] != '-' || text[18] != '-' ||
        text[23] != '-')
        return std::nullopt;
    const auto digitAt = [text](std::size_t at) -> int {
        return hexDigitValues[static_cast<unsigned char>(text[at])];
    };
    std::array<char, 16> bytes{};
    int allDigits = 0; // Negative as soon as one of them is.
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const int byte = digitAt(digitPairs[i]) * 16 | digitAt(digitPairs[i] + 1);
        allDigits |= byte;
        bytes[i] = static_cast<char>(byte);
    }
    if (allDigits < 0)
        return std::nullopt;
    return QUuid::fromRfc4122(QByteArrayView(bytes));
}

bool skipArray(simdjson::ondemand::array array, int depth) {
    for (auto item : array) {
        Value value;
        if (item.get(value) || !skip(value, depth))
            return false;
    }
    return true;
}

bool skipObject(simdjson::ondemand::object object, int depth) {
    for (auto item : object) {
        simdjson::ondemand::field field;
        if (std::move(item).get(field) || !Key(field).text() || !skip(field.value(), depth))
            return false;
    }
    return true;
}

} // namespace

bool read(Value value, bool &result) {
    return !value.get_bool().get(result);
}

bool read(Value value, double &result) {
    const std::string_view number = value.raw_json_token();
    if (value.get_double().get(result))
        return false;
    // Of numbers with more digits than 64 bits hold, the parser's reading can be far off (seen with
    // simdjson 3.0.1: 0.10000000000000000555 read as 4e-16).
    constexpr std::size_t lengthOfShortNumbers = 19;
    return number.size() <= lengthOfShortNumbers || readLongNumber(number, result);
}

bool read(Value value, Date &result) {
    double seconds = 0.0;
    if (!read(value, seconds))
        return false;
    result = Date::fromReferenceSeconds(seconds);
    return true;
}

bool read(Value value, std::string_view &result) {
    return readPlain(value, result) || !value.get_string().get(result);
}

bool read(Value value, QString &result) {
    std::string_view text;
    if (readPlain(value, text)) {
        result = QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
        return true;
    }
    if (value.get_string().get(text))
        return false;
    result = textOfUtf8(text);
    return true;
}

bool passText(Value value) {
    const std::string_view token = value.raw_json_token();
    // The document was found to be UTF-8 without bare control characters as a whole, so that only
    // an escape can be wrong.
    if (token.starts_with('"') && token.find('\\') == std::string_view::npos) {
        simdjson::ondemand::raw_json_string passed;
        return !value.get_raw_json_string().get(passed);
    }
    std::string_view text;
    return !value.get_string().get(text);
}

bool read(Value value, QUuid &result) {
    std::string_view text;
    if (!read(value, text))
        return false;
    const std::optional<QUuid> uuid = parseUuid(text);
    if (!uuid)
        return false;
    result = *uuid;
    return true;
}

bool skip(Value value, int depth) {
    json_type type{};
    if (depth >= deepestNesting || value.type().get(type))
        return false;
    switch (type) {
    case json_type::array: {
        simdjson::ondemand::array array;
        return !value.get_array().get(array) && skipArray(array, depth + 1);
    }
    case json_type::object: {
        simdjson::ondemand::object object;
        return !value.get_object().get(object) && skipObject(object, depth + 1);
    }
    case json_type::string: {
        std::string_view text;
        return !value.get_string().get(text);
    }
    case json_type::number: {
        double number = 0.0;
        return read(value, number);
    }
    case json_type::boolean: {
        bool flag = false;
        return read(value, flag);
    }
    case json_type::null:
        return isNull(value);
    }
    return false;
}

bool isNull(Value value) {
    bool null = false;
    return !value.is_null().get(null) && null;
}

bool readDocument(QByteArray text, const std::function<bool(Value)> &read) {
    static_assert(paddingOfDocuments >= simdjson::SIMDJSON_PADDING);
    const auto &allocation = text.data_ptr();
    if (allocation.freeSpaceAtEnd() < paddingOfDocuments)
        text.reserve(text.size() + paddingOfDocuments);
    const auto size = static_cast<std::size_t>(text.size());
    const auto room = static_cast<std::size_t>(allocation.freeSpaceAtEnd());
    const simdjson::padded_string_view padded(text.constData(), size, size + room);
    simdjson::ondemand::parser parser;
    simdjson::ondemand::document document;
    Value value;
    if (parser.iterate(padded).get(document) || document.get_value().get(value) || !read(value))
        return false;
    // Where all was read there is no location left to be at.
    return document.current_location().error() == simdjson::OUT_OF_BOUNDS;
}

} // namespace tarne::json
