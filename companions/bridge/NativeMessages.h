#pragma once

#include "Asio.h"

#include <array>
#include <cstddef>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace tarne {

/// The longest message of a browser's native messaging, in bytes.
inline constexpr std::size_t longestMessage = 1024 * 1024;

/// Cuts a stream into messages: each is its length as four bytes in the machine's order, then so
/// many bytes.
class FrameReader {
public:
    void add(std::string_view bytes) { m_bytes.append(bytes); }
    /// The next whole message; none while it is not there.
    [[nodiscard]] std::optional<std::string> next();
    /// Whether a length is above the longest: what follows it means nothing any more.
    [[nodiscard]] bool isBroken() const { return m_isBroken; }

private:
    std::string m_bytes;
    bool m_isBroken = false;
};

/// A message with its length before it.
[[nodiscard]] std::string frameOf(std::string_view message);

/// The two streams between a browser and its native-messaging host. On the thread of its executor.
class NativeMessages {
public:
    struct Handlers {
        std::function<void(const std::string &message)> received;
        /// Once: the browser has gone, or speaks something else.
        std::function<void()> ended;
    };

    /// Takes the descriptors over.
    NativeMessages(const asio::any_io_executor &executor, int input, int output, Handlers handlers);

    void start() { read(); }
    void send(std::string_view message);

private:
    void read();
    void write();
    void end();

    asio::posix::stream_descriptor m_input;
    asio::posix::stream_descriptor m_output;
    Handlers m_handlers;
    FrameReader m_reader;
    std::array<char, 4096> m_chunk{};
    std::deque<std::string> m_toSend;
};

} // namespace tarne
