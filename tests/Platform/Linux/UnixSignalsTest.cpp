#include "UnixSignals.h"

#include "EventLoop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <thread>

#include <sys/resource.h>
#include <unistd.h>

using namespace std::chrono_literals;

namespace tarne::test {
namespace {

using namespace test;

TEST(UnixSignals, TermAndInterruptCallTheMainThread) {
    for (const int signal : {SIGTERM, SIGINT}) {
        std::thread::id calledOn;
        const UnixSignals signals([&] { calledOn = std::this_thread::get_id(); });
        // A thread that signals itself runs the handler at once, with the thread sanitizer too.
        std::thread([signal] { ::raise(signal); }).join();
        EXPECT_EQ(calledOn, std::thread::id()); // Not from inside the handler.
        EXPECT_TRUE(serveUntil([&] { return calledOn != std::thread::id(); }));
        EXPECT_EQ(calledOn, std::this_thread::get_id());
    }
}

TEST(UnixSignals, ManySignalsWhileTheMainThreadIsBusyAreOneCall) {
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "this sanitizer delivers signals late and one by one";
#endif
    int calls = 0;
    const UnixSignals signals([&] { ++calls; });
    for (int i = 0; i < 100'000; ++i)
        ::raise(SIGTERM);
    EXPECT_TRUE(serveUntil([&] { return calls > 0; }));
    EXPECT_FALSE(serveUntil([&] { return calls > 1; }, 100ms));
}

TEST(UnixSignals, WritingToAClosedPipeEndsNothing) {
    const UnixSignals signals([] {});
    std::array<int, 2> pipe{};
    ASSERT_EQ(::pipe(pipe.data()), 0);
    ::close(pipe[0]);
    EXPECT_EQ(::write(pipe[1], "a", 1), -1);
    EXPECT_EQ(errno, EPIPE);
    ::close(pipe[1]);
}

TEST(UnixSignals, TheFormerHandlersComeBack) {
    struct sigaction before {};
    struct sigaction after {};
    sigaction(SIGTERM, nullptr, &before);
    {
        const UnixSignals signals([] {});
    }
    sigaction(SIGTERM, nullptr, &after);
    EXPECT_EQ(before.sa_handler, after.sa_handler);
}

rlimit coreLimit() {
    rlimit limit{};
    EXPECT_EQ(getrlimit(RLIMIT_CORE, &limit), 0);
    return limit;
}

TEST(CoreDumpsDeathTest, AreDisabledForFilesAndForHandlers) {
    // With a limit of 1 the kernel gives no handler a dump either; with 0 it would. What an
    // administrator has forbidden for good stays 0.
    const rlim_t noDump = std::min<rlim_t>(coreLimit().rlim_max, 1);
    disableCoreDumps();
    EXPECT_EQ(coreLimit().rlim_cur, noDump);
    EXPECT_EQ(coreLimit().rlim_max, noDump);
}

TEST(CoreDumpsDeathTest, ThatAreForbiddenForGoodStaySoWithoutAWord) {
    EXPECT_EXIT(
        {
            const rlimit none{};
            setrlimit(RLIMIT_CORE, &none);
            disableCoreDumps();
            ::_exit(coreLimit().rlim_max == 0 ? 0 : 1);
        },
        testing::ExitedWithCode(0), "^$");
}

} // namespace
} // namespace tarne::test
