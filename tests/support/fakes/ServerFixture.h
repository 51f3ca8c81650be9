#pragma once

#include "ManualTime.h"
#include "MemoryKeychain.h"
#include "RecordingLog.h"
#include "ServerManager.h"
#include "ServerPlatformFakes.h"

#include <gtest/gtest.h>

namespace tarne::test {

/// Hands on what is logged and writes it into a journal too.
class JournalLog final : public Log {
public:
    JournalLog(Log &log, test::Journal &journal) : m_log(log), m_journal(journal) {}

    void line(const QString &text) override {
        m_log.line(text);
        m_journal += text;
    }

private:
    Log &m_log;
    test::Journal &m_journal;
};

/// A manager on fakes, with a server to be found; the blocking waits only move the manual clock.
class ServerFixture : public testing::Test {
protected:
    ServerFixture() { bundle.files = {server}; }

    ServerPlatform platform() {
        return {time,     journalLog, keychain,
                bundle,   tools,      ports,
                launcher, health,     [this](auto duration) { sleep(duration); }};
    }

    void sleep(std::chrono::microseconds duration) {
        tools.noteSleep(duration);
        time.block(duration);
    }

    /// Starts the server and lets everything queued by that run.
    void start() {
        manager->startServer();
        time.runPending();
        log.takeLines();
        tools.calls.clear();
        journal.clear();
    }

    const QString server = QStringLiteral("/home/user/tarne-server");
    test::ManualTime time;
    test::RecordingLog log;
    test::Journal journal; ///< The log's lines and the fakes' calls, in their common order.
    JournalLog journalLog{log, journal};
    test::MemoryKeychain keychain;
    test::FakeBundle bundle;
    test::RecordingProcessTools tools{&journal};
    test::FakePortProbe ports{&journal};
    test::ScriptedChildren launcher{&journal};
    test::ScriptedHealthProbe health;
    std::unique_ptr<ServerManager> manager = std::make_unique<ServerManager>(platform());
};

} // namespace tarne::test
