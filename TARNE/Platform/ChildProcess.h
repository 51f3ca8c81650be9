#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <variant>

namespace tarne {

/// A program that runs beside ours. It ends at the latest when our process does.
///
/// Dropping the handle neither ends the child nor silences its handlers.
class ChildProcess {
public:
    virtual ~ChildProcess() = default;

    [[nodiscard]] virtual bool isRunning() const = 0;

    /// Asks the child to end (signal 15).
    virtual void terminate() = 0;
    /// Ends the child and what it started (signal 9).
    virtual void forceKill() = 0;

    /// Blocks until the child has exited, `limit` at most; true when it has. The termination
    /// handler has been called by then.
    virtual bool waitUntilExit(std::chrono::milliseconds limit) = 0;
};

/// What to launch and who hears of it. The handlers are called on a thread of the launcher, never
/// on the caller's, and must not block.
struct ChildLaunch {
    QString executable;
    QStringList arguments;
    /// Added to a copy of our own environment. The working directory is ours.
    std::map<QString, QString> environment;

    /// What the child has written since the last call; never empty.
    std::function<void(const QByteArray &chunk)> standardOutput;
    std::function<void(const QByteArray &chunk)> standardError;
    /// The exit status, or the number of the signal that ended the child. Called once, after the
    /// last output.
    std::function<void(int status)> terminated;
};

class ChildProcessLauncher {
public:
    struct Failure {
        QString description; ///< The system's reason.
    };
    using Outcome = std::variant<std::shared_ptr<ChildProcess>, Failure>;

    virtual ~ChildProcessLauncher() = default;

    /// Starts the child. After a failure no handler is called.
    [[nodiscard]] virtual Outcome launch(ChildLaunch launch) = 0;
};

} // namespace tarne
