#pragma once

#include "ManualTime.h"
#include "MemoryKeychain.h"
#include "RecordingLog.h"
#include "ServerManager.h"
#include "ServerPlatformFakes.h"

#include <gtest/gtest.h>

namespace tarne {

/// A manager on fakes, with a server to be found; the blocking waits only move the manual clock.
class ServerFixture : public testing::Test {
protected:
    ServerFixture() { bundle.files = {server}; }

    ServerPlatform platform() {
        return {time,     log,    keychain,
                bundle,   tools,  ports,
                launcher, health, [this](auto duration) { sleep(duration); }};
    }

    void sleep(std::chrono::microseconds duration) {
        tools.calls += QStringLiteral("sleep %1 us").arg(duration.count());
        time.block(duration);
    }

    /// Starts the server and lets everything queued by that run.
    void start() {
        manager->startServer();
        time.runPending();
        log.takeLines();
        tools.calls.clear();
    }

    const QString server = QStringLiteral("/home/user/tarne-server");
    test::ManualTime time;
    test::RecordingLog log;
    test::MemoryKeychain keychain;
    test::FakeBundle bundle;
    test::RecordingProcessTools tools;
    test::FakePortProbe ports;
    test::ScriptedChildren launcher;
    test::ScriptedHealthProbe health;
    std::unique_ptr<ServerManager> manager = std::make_unique<ServerManager>(platform());
};

} // namespace tarne
