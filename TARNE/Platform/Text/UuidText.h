#pragma once

#include <QString>
#include <QUuid>

namespace tarne {

/// The canonical text of 36 characters in upper case, as documents and the extension have it.
[[nodiscard]] inline QString uuidString(const QUuid &uuid) {
    return uuid.toString(QUuid::WithoutBraces).toUpper();
}

} // namespace tarne
