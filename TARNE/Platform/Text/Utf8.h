#pragma once

#include <QByteArrayView>
#include <QString>

namespace tarne {

/// The text of UTF-8, whole: `QString::fromUtf8` drops a byte order mark at the beginning. Bytes
/// that are no UTF-8 become replacement characters.
[[nodiscard]] inline QString textOfUtf8(QByteArrayView utf8) {
    QString text = QString::fromUtf8(utf8);
    if (utf8.startsWith("\xEF\xBB\xBF"))
        text.prepend(QChar::ByteOrderMark);
    return text;
}

} // namespace tarne
