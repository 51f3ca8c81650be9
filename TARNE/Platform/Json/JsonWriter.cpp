#include "JsonWriter.h"

#include <QList>

#include <array>
#include <charconv>
#include <cmath>
#include <cstring>

namespace tarne::json {

namespace {

constexpr std::string_view hexDigits = "0123456789ABCDEF";

/// Whether the character stands for itself in a JSON text and takes one byte there.
bool isPlain(char16_t c) {
    return c >= 0x20 && c < 0x80 && c != u'"' && c != u'\\';
}

/// Writes the plain characters that `text` begins with to `out`, which has room for all of it, and
/// returns their number, possibly too low by a few. Blocks without an early exit: compilers turn
/// them into vector instructions.
qsizetype narrowPlain(QStringView text, char *out) {
    constexpr qsizetype block = 32;
    qsizetype done = 0;
    for (; done + block <= text.size(); done += block) {
        const char16_t *const from = text.utf16() + done;
        unsigned foreign = 0;
        for (qsizetype i = 0; i < block; ++i) {
            foreign |= static_cast<unsigned>(!isPlain(from[i]));
            out[done + i] = static_cast<char>(from[i]);
        }
        if (foreign != 0)
            break;
    }
    while (done < text.size() && isPlain(text[done].unicode())) {
        out[done] = static_cast<char>(text[done].unicode());
        ++done;
    }
    return done;
}

/// UTF-8 of a text, with U+FFFD for halves of surrogate pairs.
QByteArray utf8(QStringView text) {
    if (text.isValidUtf16())
        return text.toUtf8();
    QString valid;
    for (const char32_t codePoint : text.toUcs4())
        valid += QChar::fromUcs4(codePoint);
    return valid.toUtf8();
}

} // namespace

char *Writer::extend(qsizetype size) {
    const qsizetype before = m_text.size();
    // Growing by halves, whatever the size of a piece: resize alone would copy at every call.
    if (before + size > m_text.capacity())
        m_text.reserve((before + size) * 3 / 2);
    m_text.resize(before + size);
    return m_text.data() + before;
}

void Writer::key(std::string_view name) {
    char *out = extend(static_cast<qsizetype>(name.size()) + 3);
    *out++ = '"';
    std::memcpy(out, name.data(), name.size());
    out += name.size();
    *out++ = '"';
    *out = ':';
}

bool Writer::write(bool value) {
    m_text.append(value ? "true" : "false");
    return true;
}

bool Writer::write(double value) {
    if (!std::isfinite(value))
        return false;
    std::array<char, 32> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    m_text.append(digits.data(), end - digits.data());
    return true;
}

bool Writer::write(const QString &value) {
    QStringView rest = value;
    m_text.append('"');
    while (!rest.isEmpty()) {
        char *const out = extend(rest.size());
        const qsizetype plain = narrowPlain(rest, out);
        m_text.chop(rest.size() - plain);
        rest = rest.sliced(plain);
        qsizetype foreign = 0;
        while (foreign < rest.size() && !isPlain(rest[foreign].unicode()))
            ++foreign;
        escape(rest.first(foreign));
        rest = rest.sliced(foreign);
    }
    m_text.append('"');
    return true;
}

void Writer::escape(QStringView text) {
    // What is not ASCII goes as it is, in UTF-8; between control characters it goes in one piece,
    // so that surrogate pairs stay together.
    qsizetype begin = 0;
    const auto flush = [&](qsizetype end) {
        if (end > begin)
            m_text.append(utf8(text.sliced(begin, end - begin)));
        begin = end + 1;
    };
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        if (c >= 0x80)
            continue;
        flush(i);
        switch (c) {
        case u'"':
            m_text.append("\\\"");
            break;
        case u'\\':
            m_text.append("\\\\");
            break;
        case u'\n':
            m_text.append("\\n");
            break;
        case u'\r':
            m_text.append("\\r");
            break;
        case u'\t':
            m_text.append("\\t");
            break;
        default:
            m_text.append("\\u00").append(hexDigits[c >> 4]).append(hexDigits[c & 15]);
        }
    }
    flush(text.size());
}

bool Writer::write(const QUuid &value) {
    char *out = extend(38);
    const auto digits = [&out](quint64 number, int count) {
        for (int i = count - 1; i >= 0; --i)
            *out++ = hexDigits[number >> (4 * i) & 15];
    };
    *out++ = '"';
    digits(value.data1, 8);
    *out++ = '-';
    digits(value.data2, 4);
    *out++ = '-';
    digits(value.data3, 4);
    for (int i = 0; i < 8; ++i) {
        if (i == 0 || i == 2)
            *out++ = '-';
        digits(value.data4[i], 2);
    }
    *out = '"';
    return true;
}

} // namespace tarne::json
