// The entry point of libFuzzer; compiled once for each target. A violated statement ends the
// process, which is how libFuzzer notices.

#include "FuzzTargets.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    tarne::fuzz::TARNE_FUZZ_TARGET({data, static_cast<qsizetype>(size)});
    return 0;
}
