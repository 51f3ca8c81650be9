#pragma once

#include "ChildProcess.h"

#include <QThread>

namespace tarne {

/// Children as QProcess objects, all on one thread of the launcher's own that lives as long as the
/// launcher: output is read and an exit is noticed while the main thread blocks, and the signal
/// that ends a child when its parent dies is bound to the thread that made it.
///
/// Each child leads a process group of its own, whose other members end with it. Destroying the
/// launcher kills what still runs, without a further call of any handler.
class QProcessLauncher final : public ChildProcessLauncher {
public:
    QProcessLauncher();
    ~QProcessLauncher() override;

    Outcome launch(ChildLaunch launch) override;

private:
    QThread m_thread;
    std::unique_ptr<QObject> m_children; ///< Parent of all running processes; on the thread.
};

} // namespace tarne
