// tarne-bridge: the native-messaging host between the browser's extension and TARNE. A browser
// starts it, with words of its own as arguments, which are not read; standard input and output
// carry the messages of docs/companions-protocol.md, and the end of standard input ends it.

#include "Bridge.h"
#include "CompanionsFolder.h"

#include <algorithm>
#include <csignal>
#include <system_error>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

/// A copy of a standard descriptor. Nothing else finds the original there any more, so nothing can
/// write into the messages.
int takenAway(int descriptor) {
    const int taken = ::fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    const int nothing = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    ::dup2(nothing, descriptor);
    if (nothing > STDERR_FILENO)
        ::close(nothing);
    return taken;
}

/// Goals and pages would be in a core file. At a limit of 1 the kernel writes none, and starts no
/// handler either, which it does at 0.
void disableCoreDumps() {
    rlimit limit{};
    ::getrlimit(RLIMIT_CORE, &limit);
    const rlim_t lowest = std::min<rlim_t>(limit.rlim_max, 1);
    limit = {lowest, lowest};
    ::setrlimit(RLIMIT_CORE, &limit);
}

} // namespace

int main() {
    std::signal(SIGPIPE, SIG_IGN);
    disableCoreDumps();
    const tarne::Bridge::Places places{.storeFolder = tarne::storeFolder(),
                                       .companionsFolder = tarne::companionsFolder(),
                                       .input = takenAway(STDIN_FILENO),
                                       .output = takenAway(STDOUT_FILENO)};
    if (places.storeFolder.empty() || places.input < 0 || places.output < 0)
        return 1;
    try {
        asio::io_context context(1);
        tarne::Bridge bridge(context.get_executor(), places, [&context] { context.stop(); });
        bridge.start();
        context.run();
    } catch (const std::system_error &) {
        // The system has no more of what is needed. The browser starts another one, later.
        return 1;
    }
    return 0;
}
