#include "StandardDescriptors.h"

#include <fcntl.h>
#include <linux/close_range.h>
#include <unistd.h>

namespace tarne {

void openStandardDescriptors() {
    // A new descriptor has the lowest number that is free.
    int opened = 0;
    do {
        opened = ::open("/dev/null", O_RDWR);
    } while (opened >= STDIN_FILENO && opened <= STDERR_FILENO);
    if (opened > STDERR_FILENO)
        ::close(opened);
}

void keepOtherDescriptorsToOurselves() {
    ::close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
}

} // namespace tarne
