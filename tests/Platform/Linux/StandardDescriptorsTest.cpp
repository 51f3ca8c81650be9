#include "StandardDescriptors.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace tarne::test {
namespace {

bool isNullDevice(int descriptor) {
    struct stat status {};
    return ::fstat(descriptor, &status) == 0 && S_ISCHR(status.st_mode) &&
           status.st_rdev == makedev(1, 3);
}

class StandardDescriptorsDeathTest : public testing::TestWithParam<int> {
protected:
    /// Bit n of the parameter: descriptor n is closed.
    static bool isClosed(int descriptor) { return (GetParam() >> descriptor & 1) != 0; }

    /// 0 when all is as it should be, as the status of a process.
    static int statusAfterOpening() {
        const int nextBefore = ::dup(STDERR_FILENO);
        ::close(nextBefore);
        for (int descriptor = 0; descriptor <= STDERR_FILENO; ++descriptor) {
            if (isClosed(descriptor))
                ::close(descriptor);
        }
        openStandardDescriptors();
        for (int descriptor = 0; descriptor <= STDERR_FILENO; ++descriptor) {
            if (isClosed(descriptor) && !isNullDevice(descriptor))
                return 1;
            if (::fcntl(descriptor, F_GETFD) != 0)
                return 2;
        }
        return ::dup(STDERR_FILENO) == nextBefore ? 0 : 3;
    }
};

TEST_P(StandardDescriptorsDeathTest, AreOpenAfterwardsAndNoOtherIs) {
    EXPECT_EXIT(::_exit(statusAfterOpening()), testing::ExitedWithCode(0), "");
}

INSTANTIATE_TEST_SUITE_P(ClosedOnes, StandardDescriptorsDeathTest, testing::Range(0, 8));

} // namespace
} // namespace tarne::test
