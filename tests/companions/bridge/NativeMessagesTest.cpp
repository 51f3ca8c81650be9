#include "NativeMessages.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <vector>

#include <unistd.h>

namespace tarne::test {
namespace {

std::string lengthAlone(std::uint32_t length) {
    std::string bytes(sizeof length, '\0');
    std::memcpy(bytes.data(), &length, sizeof length);
    return bytes;
}

std::vector<std::string> messagesIn(FrameReader &reader) {
    std::vector<std::string> messages;
    while (auto message = reader.next())
        messages.push_back(std::move(*message));
    return messages;
}

TEST(AFrame, IsTheLengthInTheMachinesOrderAndTheMessage) {
    EXPECT_EQ(frameOf("abc"), lengthAlone(3) + "abc");
    EXPECT_EQ(frameOf(""), lengthAlone(0));
}

TEST(AFrameReader, FindsTheMessagesHoweverTheStreamIsCut) {
    const std::string stream = frameOf("one") + frameOf("") + frameOf("three");
    for (std::size_t cut = 0; cut <= stream.size(); ++cut) {
        FrameReader reader;
        reader.add(std::string_view(stream).substr(0, cut));
        auto messages = messagesIn(reader);
        reader.add(std::string_view(stream).substr(cut));
        for (auto &message : messagesIn(reader))
            messages.push_back(std::move(message));
        EXPECT_EQ(messages, (std::vector<std::string>{"one", "", "three"})) << cut;
        EXPECT_FALSE(reader.isBroken());
    }
}

TEST(AFrameReader, TakesAMessageOfAMebibyteAndBreaksAtALongerOne) {
    FrameReader reader;
    const std::string longest(longestMessage, 'x');
    reader.add(frameOf(longest));
    EXPECT_EQ(reader.next(), longest);
    reader.add(lengthAlone(longestMessage + 1) + "abc" + frameOf("after"));
    EXPECT_EQ(reader.next(), std::nullopt);
    EXPECT_TRUE(reader.isBroken());
    EXPECT_EQ(reader.next(), std::nullopt);
}

/// Messages over two pipes, and the browser's ends of them.
class NativeMessagesTest : public testing::Test {
protected:
    NativeMessagesTest() {
        std::array<int, 2> toHost{};
        std::array<int, 2> fromHost{};
        EXPECT_EQ(::pipe(toHost.data()), 0);
        EXPECT_EQ(::pipe(fromHost.data()), 0);
        m_write = toHost[1];
        m_read = fromHost[0];
        messages.emplace(
            m_context.get_executor(), toHost[0], fromHost[1],
            NativeMessages::Handlers{
                .received = [this](const std::string &text) { received.push_back(text); },
                .ended = [this] { ++endings; }});
        messages->start();
    }
    ~NativeMessagesTest() override {
        messages.reset(); // Before its context.
        closeWriting();
        ::close(m_read);
    }

    void write(std::string_view bytes) {
        ASSERT_EQ(::write(m_write, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    }
    void closeWriting() {
        if (m_write >= 0)
            ::close(m_write);
        m_write = -1;
    }
    std::string read(std::size_t size) {
        std::string bytes(size, '\0');
        std::size_t got = 0;
        while (got < size) {
            m_context.restart();
            m_context.poll();
            const ssize_t part = ::read(m_read, bytes.data() + got, size - got);
            if (part <= 0)
                break;
            got += static_cast<std::size_t>(part);
        }
        return bytes.substr(0, got);
    }
    template <class Condition>
    void serveUntil(Condition condition) {
        m_context.restart();
        while (!condition() && m_context.run_one_for(std::chrono::seconds(20)) > 0) {
        }
        EXPECT_TRUE(condition());
    }

    std::optional<NativeMessages> messages;
    std::vector<std::string> received;
    int endings = 0;

private:
    asio::io_context m_context{1};
    int m_write = -1;
    int m_read = -1;
};

TEST_F(NativeMessagesTest, AreReceivedAndSentWhole) {
    write(frameOf("one") + frameOf("two").substr(0, 5));
    serveUntil([this] { return received.size() == 1; });
    write(frameOf("two").substr(5));
    serveUntil([this] { return received.size() == 2; });
    EXPECT_EQ(received, (std::vector<std::string>{"one", "two"}));
    messages->send("first");
    messages->send("second");
    const std::string expected = frameOf("first") + frameOf("second");
    EXPECT_EQ(read(expected.size()), expected);
    EXPECT_EQ(endings, 0);
}

TEST_F(NativeMessagesTest, EndOnceWithTheInput) {
    write(frameOf("whole") + frameOf("cut").substr(0, 6));
    closeWriting();
    serveUntil([this] { return endings > 0; });
    EXPECT_EQ(received, std::vector<std::string>{"whole"});
    EXPECT_EQ(endings, 1);
}

TEST_F(NativeMessagesTest, EndWithALengthThatNoMessageHas) {
    write(frameOf("whole") + "Hello, who are you?");
    serveUntil([this] { return endings > 0; });
    EXPECT_EQ(received, std::vector<std::string>{"whole"});
}

} // namespace
} // namespace tarne::test
