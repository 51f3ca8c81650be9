#pragma once

#include <QByteArray>
#include <QFile>

namespace tarne::test {

/// Whether this program was started by tests/support/boxed and is in namespaces of its own, where
/// it can neither end a process of the machine nor meet another test on a port.
[[nodiscard]] inline bool isBoxed() {
    const QByteArray token = qgetenv("TARNE_TEST_BOX_TOKEN");
    const QByteArray outside = qgetenv("TARNE_TEST_BOX_OUTSIDE");
    QFile marker(QStringLiteral("/dev/shm/tarne-test-box"));
    if (token.isEmpty() || outside.isEmpty() || !marker.open(QIODevice::ReadOnly))
        return false;
    const QString inside = QFile::symLinkTarget(QStringLiteral("/proc/self/ns/pid"));
    return marker.readAll().trimmed() == token && !inside.isEmpty() &&
           !inside.endsWith(QString::fromLatin1(outside));
}

} // namespace tarne::test
