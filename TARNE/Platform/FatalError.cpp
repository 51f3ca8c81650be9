#include "FatalError.h"

#include <cstdio>
#include <cstdlib>

namespace tarne {

void fatalError(const char *reason) {
    std::fprintf(stderr, "tarne: fatal: %s\n", reason);
    std::abort();
}

} // namespace tarne
