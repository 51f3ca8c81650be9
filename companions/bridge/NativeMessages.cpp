#include "NativeMessages.h"

#include <cstdint>
#include <cstring>
#include <utility>

namespace tarne {

namespace {

constexpr std::size_t lengthSize = sizeof(std::uint32_t);

} // namespace

std::optional<std::string> FrameReader::next() {
    if (m_isBroken || m_bytes.size() < lengthSize)
        return std::nullopt;
    std::uint32_t length = 0;
    std::memcpy(&length, m_bytes.data(), lengthSize);
    m_isBroken = length > longestMessage;
    if (m_isBroken || m_bytes.size() - lengthSize < length)
        return std::nullopt;
    std::string message = m_bytes.substr(lengthSize, length);
    m_bytes.erase(0, lengthSize + length);
    return message;
}

std::string frameOf(std::string_view message) {
    const auto length = static_cast<std::uint32_t>(message.size());
    std::string frame(lengthSize, '\0');
    std::memcpy(frame.data(), &length, lengthSize);
    return frame.append(message);
}

NativeMessages::NativeMessages(const asio::any_io_executor &executor, int input, int output,
                               Handlers handlers)
    : m_input(executor, input), m_output(executor, output), m_handlers(std::move(handlers)) {}

void NativeMessages::read() {
    m_input.async_read_some(asio::buffer(m_chunk), [this](std::error_code error, std::size_t size) {
        if (error) {
            end();
            return;
        }
        m_reader.add({m_chunk.data(), size});
        while (const auto message = m_reader.next())
            m_handlers.received(*message);
        if (m_reader.isBroken())
            end();
        else
            read();
    });
}

void NativeMessages::send(std::string_view message) {
    m_toSend.push_back(frameOf(message));
    if (m_toSend.size() == 1)
        write();
}

void NativeMessages::write() {
    asio::async_write(m_output, asio::buffer(m_toSend.front()),
                      [this](std::error_code error, std::size_t) {
                          if (error) {
                              end();
                              return;
                          }
                          m_toSend.pop_front();
                          if (!m_toSend.empty())
                              write();
                      });
}

void NativeMessages::end() {
    if (const auto ended = std::exchange(m_handlers.ended, nullptr))
        ended();
}

} // namespace tarne
