#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

#include <chrono>
#include <functional>

namespace tarne::test {

/// Serves the event loop until `done` holds; false when it does not within `limit`.
[[nodiscard]] inline bool serveUntil(const std::function<bool()> &done,
                                     std::chrono::milliseconds limit = std::chrono::seconds(20)) {
    const QDeadlineTimer deadline(limit);
    QTimer pulse; // Conditions may change without any event.
    pulse.start(10);
    while (!done() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents);
    return done();
}

/// The time that `action` holds the calling thread.
[[nodiscard]] inline std::chrono::milliseconds timeOf(const std::function<void()> &action) {
    const auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                                 start);
}

} // namespace tarne::test
