#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <cstdio>

namespace tarne::test {

/// What a proof in figures shares with the others. They take a minute at most, and with
/// TARNE_PROOF=long as many rounds as they are worth.
[[nodiscard]] inline bool isLongProof() {
    return qgetenv("TARNE_PROOF") == "long";
}

/// The same seed repeats a proof; TARNE_SEED gives another one than 1.
[[nodiscard]] inline unsigned proofSeed() {
    const unsigned seed = qgetenv("TARNE_SEED").toUInt();
    return seed == 0 ? 1 : seed;
}

/// The line in which a proof ends. Its figures are those that the run has counted.
inline void printProof(const char *name, const QByteArray &result) {
    std::printf("proof: %s: %s (seed %u)\n", name, result.constData(), proofSeed());
    std::fflush(stdout);
}

} // namespace tarne::test
