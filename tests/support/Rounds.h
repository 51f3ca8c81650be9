#pragma once

namespace tarne::test {

/// How often a test repeats what it does at random, `plain` times in a plain build. Under the
/// sanitizers a round takes ten times as long and is looked at for another kind of fault: a tenth
/// of the rounds has to do.
consteval int rounds(int plain) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return plain / 10;
#else
    return plain;
#endif
}

} // namespace tarne::test
