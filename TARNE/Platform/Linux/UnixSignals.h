#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <array>
#include <functional>
#include <memory>

#include <csignal>

namespace tarne {

/// Turns SIGTERM and SIGINT into a call on the main thread and has SIGPIPE ignored, for as long as
/// it lives. One at a time; what held before comes back with its end.
class UnixSignals final : public QObject {
    Q_OBJECT

public:
    /// `terminate` is called from the event loop, once for any number of signals that came
    /// together.
    explicit UnixSignals(std::function<void()> terminate);
    ~UnixSignals() override;

private:
    std::array<int, 2> m_sockets{-1, -1};
    std::unique_ptr<QSocketNotifier> m_notifier;
    struct sigaction m_formerTerm {};
    struct sigaction m_formerInt {};
    struct sigaction m_formerPipe {};
};

/// No file with this process's memory, and the key in it, is written when it crashes; children
/// inherit that.
void disableCoreDumps();

} // namespace tarne
