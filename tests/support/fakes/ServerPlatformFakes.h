#pragma once

#include "Bundle.h"
#include "ChildProcess.h"
#include "HealthProbe.h"
#include "PortProbe.h"
#include "ProcessTools.h"

#include <QStringList>

#include <chrono>
#include <map>
#include <set>
#include <vector>

namespace tarne::test {

/// What the fakes of one fixture were asked for, in the order over all of them.
using Journal = QStringList;

/// A fake that writes down what it is asked for; in a fixture's journal too, where it has one.
class Recorder {
public:
    explicit Recorder(Journal *journal) : m_journal(journal) {}

    QStringList calls;

protected:
    void note(const QString &call) {
        calls += call;
        if (m_journal)
            *m_journal += call;
    }

private:
    Journal *m_journal;
};

/// Notes what the sweep would have done; touches no process.
class RecordingProcessTools final : public ProcessTools, public Recorder {
public:
    explicit RecordingProcessTools(Journal *journal = nullptr) : Recorder(journal) {}

    std::optional<Result> run(const QString &path, const QStringList &arguments) override {
        note(path + QLatin1Char(' ') + arguments.join(QLatin1Char(' ')));
        if (unlaunchable.contains(path))
            return std::nullopt;
        const auto scripted = results.find(arguments.last());
        return scripted == results.end() ? Result{1, {}} : scripted->second;
    }
    void sendSignal(qint32 process, int signal) override {
        note(QStringLiteral("signal %1 to %2").arg(signal).arg(process));
    }
    /// A wait between two calls.
    void noteSleep(std::chrono::microseconds duration) {
        note(QStringLiteral("sleep %1 us").arg(duration.count()));
    }

    std::map<QString, Result> results; ///< By the last argument, such as ":3000" or "node".
    QStringList unlaunchable;          ///< Paths of tools that are not there.
};

/// A disk with the files that the test names.
class FakeBundle final : public Bundle {
public:
    QString path() const override { return bundlePath; }
    std::optional<QString> pathForResource(const QString &name) const override {
        const QString resource = QStringLiteral("/resources/") + name;
        return fileExists(resource) ? std::optional(resource) : std::nullopt;
    }
    QString currentDirectoryPath() const override { return currentDirectory; }
    bool fileExists(const QString &file) const override { return files.contains(file); }

    QString bundlePath = QStringLiteral("/opt/tarne/bin");
    QString currentDirectory = QStringLiteral("/home/user");
    std::set<QString> files;
};

class FakePortProbe final : public PortProbe, public Recorder {
public:
    explicit FakePortProbe(Journal *journal = nullptr) : Recorder(journal) {}

    bool canBind(int port) override {
        note(QStringLiteral("try %1").arg(port));
        tried.push_back(port);
        return !busy.contains(port);
    }

    std::set<int> busy;
    std::vector<int> tried;
};

/// Keeps its requests; the test answers them.
class ScriptedHealthProbe final : public HealthProbe {
public:
    void get(const QString &address, std::function<void(Reply)> done) override {
        addresses += address;
        pending.push_back(std::move(done));
    }

    void answer(const Reply &reply) {
        const auto done = std::move(pending.front());
        pending.erase(pending.begin());
        done(reply);
    }

    QStringList addresses;
    std::vector<std::function<void(Reply)>> pending;
};

/// Children that run until the test, a signal or a wait ends them.
class ScriptedChildren final : public ChildProcessLauncher, public Recorder {
public:
    explicit ScriptedChildren(Journal *journal = nullptr) : Recorder(journal) {}

    class Child final : public ChildProcess {
    public:
        Child(ScriptedChildren &family, ChildLaunch how)
            : launch(std::move(how)), m_family(family) {}

        bool isRunning() const override { return m_running; }
        void terminate() override { m_family.note(QStringLiteral("terminate")); }
        void forceKill() override { m_family.note(QStringLiteral("forceKill")); }
        bool waitUntilExit(std::chrono::milliseconds limit) override {
            m_family.note(QStringLiteral("wait %1 ms").arg(limit.count()));
            if (!m_family.ignoresTerminate)
                exit(m_family.statusOnTerminate);
            const bool hasExited = !m_running;
            if (m_family.exitsBehindTheWait)
                exit(0);
            return hasExited;
        }

        void exit(int status) {
            if (std::exchange(m_running, false))
                launch.terminated(status);
        }

        const ChildLaunch launch;

    private:
        ScriptedChildren &m_family;
        bool m_running = true;
    };

    Outcome launch(ChildLaunch how) override {
        note(QStringLiteral("launch ") + how.executable);
        if (failure)
            return Failure{*failure};
        auto child = std::make_shared<Child>(*this, std::move(how));
        children.push_back(child);
        if (statusAtOnce)
            child->exit(*statusAtOnce);
        return child;
    }

    Child &last() const { return *children.back(); }

    std::vector<std::shared_ptr<Child>> children;
    std::optional<QString> failure;  ///< Why no child can be launched.
    std::optional<int> statusAtOnce; ///< Children exit before the launch returns.
    bool ignoresTerminate = false;
    bool exitsBehindTheWait = false; ///< Where it has outlasted it.
    int statusOnTerminate = 0;
};

} // namespace tarne::test
