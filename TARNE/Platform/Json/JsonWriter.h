#pragma once

#include "Date.h"
#include "JsonPadding.h"

#include <QByteArray>
#include <QString>
#include <QUuid>

#include <string_view>

namespace tarne::json {

/// Writes a JSON text piece by piece; see JsonCoder.h, which is what codecs include.
///
/// Compact, in the order of the calls. A double is the shortest text that reads back bit for bit, a
/// UUID is upper case, half of a surrogate pair becomes U+FFFD.
class Writer {
public:
    explicit Writer(qsizetype expectedSize) { m_text.reserve(expectedSize); }

    void punctuate(char character) { m_text.append(character); }
    /// A member's name, which needs no escape, with its colon.
    void key(std::string_view name);

    // Each returns whether the value has a JSON form. A number that is not finite has none.
    [[nodiscard]] bool write(bool value);
    [[nodiscard]] bool write(double value);
    [[nodiscard]] bool write(Date value) { return write(value.secondsSinceReferenceDate()); }
    [[nodiscard]] bool write(const QString &value);
    [[nodiscard]] bool write(const QUuid &value);

    /// The text so far; the writer is empty afterwards.
    [[nodiscard]] QByteArray take() {
        m_text.reserve(m_text.size() +
                       paddingOfDocuments); // For the reader, which needs room behind it.
        return std::move(m_text);
    }

private:
    char *extend(qsizetype size);
    void escape(QStringView text);

    QByteArray m_text;
};

} // namespace tarne::json
