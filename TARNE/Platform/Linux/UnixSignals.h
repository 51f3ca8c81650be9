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

/// No dump of this process's memory, with the key in it, is made when it crashes, neither into a
/// file nor for a handler; children inherit that. Where an administrator has forbidden files of
/// dumps for good, by a hard limit of 0, a handler may still be given one.
void disableCoreDumps();

} // namespace tarne
