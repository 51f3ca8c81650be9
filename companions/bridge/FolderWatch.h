#pragma once

#include "Asio.h"

#include <array>
#include <functional>
#include <string>
#include <string_view>

namespace tarne {

/// Tells when a file of a folder was written, or came to its name, by whoever. The folder may come
/// and go; nothing is polled. On the thread of its executor.
class FolderWatch {
public:
    struct Handlers {
        /// Whether a file of this name matters.
        std::function<bool(std::string_view name)> matters;
        /// Something has changed, or the folder has come or gone.
        std::function<void()> changed;
    };

    /// Throws std::system_error where the kernel watches no more files.
    FolderWatch(const asio::any_io_executor &executor, std::string folder, Handlers handlers);

    void start();

private:
    void attach();
    void read();
    /// Whether what happened matters.
    [[nodiscard]] bool take(std::string_view events);

    std::string m_folder;
    Handlers m_handlers;
    asio::posix::stream_descriptor m_events;
    int m_watch = -1;
    bool m_isAttached = false; ///< To the folder itself, not to one above it.
    std::array<char, 4096> m_buffer{};
};

} // namespace tarne
