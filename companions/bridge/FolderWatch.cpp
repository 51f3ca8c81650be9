#include "FolderWatch.h"

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

#include <sys/inotify.h>

namespace tarne {

namespace {

constexpr std::uint32_t gone = IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_IGNORED;
constexpr std::uint32_t ofFolder =
    IN_MODIFY | IN_CREATE | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;
constexpr std::uint32_t ofFolderAbove =
    IN_CREATE | IN_MOVED_TO | IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

int newInotify() {
    const int descriptor = ::inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
    if (descriptor < 0)
        throw std::system_error(errno, std::system_category(), "inotify");
    return descriptor;
}

} // namespace

FolderWatch::FolderWatch(const asio::any_io_executor &executor, std::string folder,
                         Handlers handlers)
    : m_folder(std::move(folder)),
      m_handlers(std::move(handlers)),
      m_events(executor, newInotify()) {}

void FolderWatch::start() {
    attach();
    read();
}

/// To the folder or, while that is absent, to the nearest one above it.
void FolderWatch::attach() {
    const int events = m_events.native_handle();
    if (m_watch >= 0)
        ::inotify_rm_watch(events, m_watch);
    m_isAttached = false;
    std::filesystem::path path = m_folder;
    m_watch = ::inotify_add_watch(events, path.c_str(), ofFolder);
    m_isAttached = m_watch >= 0;
    while (m_watch < 0 && path.has_relative_path()) {
        path = path.parent_path();
        m_watch = ::inotify_add_watch(events, path.c_str(), ofFolderAbove);
    }
    // It may have come between the two looks.
    if (!m_isAttached && ::inotify_add_watch(events, m_folder.c_str(), ofFolder) >= 0)
        attach();
}

void FolderWatch::read() {
    m_events.async_read_some(asio::buffer(m_buffer),
                             [this](std::error_code error, std::size_t size) {
                                 if (error)
                                     return;
                                 if (take({m_buffer.data(), size}))
                                     m_handlers.changed();
                                 read();
                             });
}

bool FolderWatch::take(std::string_view events) {
    bool matters = false;
    bool hasMoved = false;
    while (events.size() >= sizeof(inotify_event)) {
        inotify_event event{};
        std::memcpy(&event, events.data(), sizeof event);
        const std::string_view padded = events.substr(sizeof event, event.len);
        const std::string_view name = padded.substr(0, padded.find('\0'));
        events.remove_prefix(sizeof event + event.len);
        if ((event.mask & IN_Q_OVERFLOW) != 0)
            matters = true;
        else if (event.wd != m_watch)
            continue; // Of a watch that was given up.
        else if (!m_isAttached || (event.mask & gone) != 0)
            hasMoved = true;
        else
            matters = matters || m_handlers.matters(name);
    }
    if (hasMoved) {
        const bool wasAttached = m_isAttached;
        attach();
        matters = matters || wasAttached || m_isAttached;
    }
    return matters;
}

} // namespace tarne
