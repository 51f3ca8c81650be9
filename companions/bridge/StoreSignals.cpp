#include "StoreSignals.h"

#include "StoredSession.h"

#include <array>
#include <chrono>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

using namespace std::chrono_literals;

namespace tarne {

namespace {

constexpr std::string_view storeName = "defaults.sqlite";

/// When to read after a file was written. A commit is there for readers a moment after its last
/// write, which is the last that is told of it; on a slow disk that moment is long.
constexpr std::array<std::chrono::milliseconds, 2> settling{20ms, 300ms};

/// Readings write neither of these two files, so none of them causes the next.
bool isOfStore(std::string_view name) {
    return name == storeName || name == "defaults.sqlite-wal";
}

} // namespace

StoreSignals::StoreSignals(const asio::any_io_executor &executor, const std::string &folder,
                           std::function<void(const SessionState &state)> changed)
    : m_storeFile(folder + '/' + std::string(storeName)),
      m_lockFile(folder + "/defaults.lock"),
      m_changed(std::move(changed)),
      m_watch(executor, folder, {.matters = &isOfStore, .changed = [this] { readSoon(); }}),
      m_settling(executor),
      m_nextReading(executor) {}

void StoreSignals::start() {
    m_watch.start();
    read();
}

void StoreSignals::readSoon() {
    // The writes of one commit come one after the other.
    if (!m_isReadingSoon)
        readAfter(0);
}

void StoreSignals::readAfter(std::size_t delay) {
    m_isReadingSoon = delay == 0;
    m_settling.expires_after(settling[delay]);
    m_settling.async_wait([this, delay](std::error_code error) {
        if (error)
            return;
        m_isReadingSoon = false;
        read();
        if (delay + 1 < settling.size())
            readAfter(delay + 1);
    });
}

void StoreSignals::read() {
    const SessionState before = state();
    const auto stored = readStoredSession(m_storeFile);
    m_session.take(stored, isLocked(m_lockFile), std::chrono::steady_clock::now());
    m_nextReading.cancel();
    if (const auto next = m_session.nextReading()) {
        m_nextReading.expires_at(*next);
        m_nextReading.async_wait([this](std::error_code error) {
            if (!error)
                read();
        });
    }
    if (state() != before)
        m_changed(state());
}

bool isLocked(const std::string &lockFile) {
    const int file = ::open(lockFile.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
    if (file < 0)
        return false;
    struct flock wholeFile {};
    wholeFile.l_type = F_WRLCK;
    wholeFile.l_whence = SEEK_SET;
    const bool isAsked = ::fcntl(file, F_OFD_GETLK, &wholeFile) == 0;
    ::close(file);
    return isAsked && wholeFile.l_type != F_UNLCK;
}

} // namespace tarne
