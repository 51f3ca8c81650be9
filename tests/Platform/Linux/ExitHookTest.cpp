#include "ExitHook.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

namespace tarne::test {
namespace {

const auto tell = [] { std::fputs("the last operation ", stderr); };

TEST(ExitHookDeathTest, RunsItsOperationOnceWhenTheProcessIsEndedFromBelow) {
    EXPECT_EXIT(
        {
            const ExitHook hook(tell);
            std::exit(7);
        },
        testing::ExitedWithCode(7), "^the last operation $");
}

TEST(ExitHookDeathTest, RunsNothingAfterItsEnd) {
    EXPECT_EXIT(
        {
            { const ExitHook hook(tell); }
            std::exit(7);
        },
        testing::ExitedWithCode(7), "^$");
}

} // namespace
} // namespace tarne::test
