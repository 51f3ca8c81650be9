#pragma once

#include <QByteArray>

#include <chrono>

namespace tarne {

/// Whether somebody answers at a bus address within the given time. Only a Unix socket with a path
/// is asked, as both buses of a desktop have one. Of any other address, and of one where nobody
/// listens, it says true: a connection fails there at once.
[[nodiscard]] bool busAnswers(const QByteArray &address, std::chrono::milliseconds patience);

/// Takes buses that hang out of this process's environment and says so on standard error. A
/// connection to one of them is never made and never fails, so that the program would not start.
/// To be called before anything connects to a bus, from the only thread; waits `patience` for each
/// bus that hangs.
void doWithoutSilentBuses(std::chrono::milliseconds patience);

} // namespace tarne
