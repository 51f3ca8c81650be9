#include "QProcessLauncher.h"

#include "StandardDescriptors.h"

#include <QPointer>
#include <QProcess>

#include <condition_variable>
#include <csignal>
#include <mutex>
#include <optional>

#include <sys/prctl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

/// Lets any thread wait for the exit that the launcher's thread notices.
class Exit {
public:
    void happened() {
        const std::lock_guard lock(m_mutex);
        m_hasHappened = true;
        m_condition.notify_all();
    }
    bool hasHappened() const {
        const std::lock_guard lock(m_mutex);
        return m_hasHappened;
    }
    bool wait(std::chrono::milliseconds limit) {
        std::unique_lock lock(m_mutex);
        return m_condition.wait_for(lock, limit, [this] { return m_hasHappened; });
    }

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_condition;
    bool m_hasHappened = false;
};

void killGroup(qint64 leader) {
    // 0 stands for a process that has ended, and for kill() 0 and 1 mean our own group and
    // everyone.
    if (leader > 1)
        ::kill(-static_cast<pid_t>(leader), SIGKILL);
}

/// Runs in the child, between fork and exec: system calls only.
void becomeGroupThatDiesWith(pid_t parent) {
    ::setpgid(0, 0);
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent)
        ::_exit(1);
    keepOtherDescriptorsToOurselves();
    // What our process blocks or ignores is no business of the child's.
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    ::signal(SIGTERM, SIG_DFL);
    ::signal(SIGINT, SIG_DFL);
}

class RunningChild final : public ChildProcess {
public:
    RunningChild(QPointer<QObject> context, QPointer<QProcess> process, std::shared_ptr<Exit> exit)
        : m_context(std::move(context)), m_process(std::move(process)), m_exit(std::move(exit)) {}

    bool isRunning() const override { return !m_exit->hasHappened(); }
    void terminate() override {
        onLauncherThread([](QProcess &process) { process.terminate(); });
    }
    void forceKill() override {
        onLauncherThread([](QProcess &process) { killGroup(process.processId()); });
    }
    bool waitUntilExit(std::chrono::milliseconds limit) override { return m_exit->wait(limit); }

private:
    /// On its own thread a process is known to be alive, or its number known to be still its own.
    void onLauncherThread(std::function<void(QProcess &)> action) {
        if (!m_context)
            return;
        QMetaObject::invokeMethod(m_context, [process = m_process, action = std::move(action)] {
            if (process && process->state() == QProcess::Running)
                action(*process);
        });
    }

    QPointer<QObject> m_context;
    QPointer<QProcess> m_process;
    std::shared_ptr<Exit> m_exit;
};

/// Hands on what is there to read.
void forward(const QByteArray &chunk, const std::function<void(const QByteArray &)> &handler) {
    if (!chunk.isEmpty() && handler)
        handler(chunk);
}

/// The system's reason alone: Qt puts the failing function's name in front.
QString launchFailure(const QString &errorString) {
    const auto colon = errorString.indexOf(u": "_s);
    return errorString.startsWith("exec"_L1) && colon > 0 ? errorString.sliced(colon + 2)
                                                          : errorString;
}

void connectHandlers(QProcess *process, const ChildLaunch &launch,
                     const std::shared_ptr<Exit> &exit) {
    QObject::connect(process, &QProcess::readyReadStandardOutput, process,
                     [process, handler = launch.standardOutput] {
                         forward(process->readAllStandardOutput(), handler);
                     });
    QObject::connect(process, &QProcess::readyReadStandardError, process,
                     [process, handler = launch.standardError] {
                         forward(process->readAllStandardError(), handler);
                     });
    const qint64 leader = process->processId();
    QObject::connect(process, &QProcess::finished, process,
                     [process, leader, exit, handler = launch.terminated](int status) {
                         killGroup(leader);
                         if (handler)
                             handler(status);
                         exit->happened();
                         process->deleteLater();
                     });
}

} // namespace

QProcessLauncher::QProcessLauncher() : m_children(std::make_unique<QObject>()) {
    m_thread.setObjectName(u"Children"_s);
    m_children->moveToThread(&m_thread);
    m_thread.start();
}

QProcessLauncher::~QProcessLauncher() {
    const auto endAll = [this] {
        for (auto *process : m_children->findChildren<QProcess *>()) {
            process->disconnect();
            killGroup(process->processId());
            process->waitForFinished(-1);
        }
        m_children.reset();
    };
    QMetaObject::invokeMethod(m_children.get(), endAll, Qt::BlockingQueuedConnection);
    m_thread.quit();
    m_thread.wait();
}

ChildProcessLauncher::Outcome QProcessLauncher::launch(ChildLaunch launch) {
    std::optional<Outcome> outcome;
    const auto startChild = [&] {
        auto process = std::make_unique<QProcess>();
        process->setProgram(launch.executable);
        process->setArguments(launch.arguments);
        auto environment = QProcessEnvironment::systemEnvironment();
        for (const auto &[name, value] : launch.environment)
            environment.insert(name, value);
        process->setProcessEnvironment(environment);
        process->setInputChannelMode(QProcess::ForwardedInputChannel);
        process->setChildProcessModifier(
            [parent = ::getpid()] { becomeGroupThatDiesWith(parent); });
        process->start(QIODevice::ReadOnly);
        if (!process->waitForStarted(-1)) {
            outcome = Failure{launchFailure(process->errorString())};
            return;
        }
        auto exit = std::make_shared<Exit>();
        connectHandlers(process.get(), launch, exit);
        process->setParent(m_children.get());
        outcome = std::make_shared<RunningChild>(m_children.get(), process.release(), exit);
    };
    QMetaObject::invokeMethod(m_children.get(), startChild, Qt::BlockingQueuedConnection);
    return *outcome;
}

} // namespace tarne
