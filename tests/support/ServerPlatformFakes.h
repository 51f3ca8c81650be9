#pragma once

#include "Bundle.h"
#include "ChildProcess.h"
#include "HealthProbe.h"
#include "PortProbe.h"
#include "ProcessTools.h"

#include <QStringList>

#include <map>
#include <set>
#include <vector>

namespace tarne::test {

/// Notes what the sweep would have done; touches no process.
class RecordingProcessTools final : public ProcessTools {
public:
    std::optional<Result> run(const QString &path, const QStringList &arguments) override {
        calls += path + QLatin1Char(' ') + arguments.join(QLatin1Char(' '));
        if (unlaunchable.contains(path))
            return std::nullopt;
        const auto scripted = results.find(arguments.last());
        return scripted == results.end() ? Result{1, {}} : scripted->second;
    }
    void sendSignal(qint32 process, int signal) override {
        calls += QStringLiteral("signal %1 to %2").arg(signal).arg(process);
    }

    std::map<QString, Result> results; ///< By the last argument, such as ":3000" or "node".
    QStringList unlaunchable;          ///< Paths of tools that are not there.
    QStringList calls;
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

class FakePortProbe final : public PortProbe {
public:
    bool canBind(int port) override {
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
class ScriptedChildren final : public ChildProcessLauncher {
public:
    class Child final : public ChildProcess {
    public:
        Child(ScriptedChildren &family, ChildLaunch how)
            : launch(std::move(how)), m_family(family) {}

        bool isRunning() const override { return m_running; }
        void terminate() override { m_family.calls += QStringLiteral("terminate"); }
        void forceKill() override { m_family.calls += QStringLiteral("forceKill"); }
        bool waitUntilExit(std::chrono::milliseconds limit) override {
            m_family.calls += QStringLiteral("wait %1 ms").arg(limit.count());
            if (!m_family.ignoresTerminate)
                exit(m_family.statusOnTerminate);
            return !m_running;
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
        calls += QStringLiteral("launch ") + how.executable;
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
    QStringList calls;
    std::optional<QString> failure;  ///< Why no child can be launched.
    std::optional<int> statusAtOnce; ///< Children exit before the launch returns.
    bool ignoresTerminate = false;
    int statusOnTerminate = 0;
};

} // namespace tarne::test
