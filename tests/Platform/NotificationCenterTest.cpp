#include "NotificationCenter.h"

#include <gtest/gtest.h>

#include <optional>

namespace tarne::test {
namespace {

constexpr QLatin1StringView ping{"ping"};
constexpr QLatin1StringView pong{"pong"};

TEST(NotificationCenter, CallsTheObserversOfANameInTheOrderOfTheirRegistration) {
    NotificationCenter center;
    QString heard;
    const auto first = center.addObserver(ping, [&] { heard += QLatin1Char('1'); });
    const auto other = center.addObserver(pong, [&] { heard += QLatin1Char('x'); });
    const auto second = center.addObserver(ping, [&] { heard += QLatin1Char('2'); });
    center.post(ping);
    EXPECT_EQ(heard, QStringLiteral("12"));
}

TEST(NotificationCenter, ForgetsAnObserverWhoseRegistrationEnds) {
    NotificationCenter center;
    int heard = 0;
    {
        const auto registration = center.addObserver(ping, [&] { ++heard; });
        center.post(ping);
    }
    center.post(ping);
    EXPECT_EQ(heard, 1);
}

TEST(NotificationCenter, DoesNotCallAnObserverThatWasRemovedDuringThePost) {
    NotificationCenter center;
    int heard = 0;
    std::optional<NotificationCenter::Registration> second;
    const auto first = center.addObserver(ping, [&] { second.reset(); });
    second = center.addObserver(ping, [&] { ++heard; });
    center.post(ping);
    EXPECT_EQ(heard, 0);
}

TEST(NotificationCenter, CallsAnObserverThatWasAddedDuringAPostFromTheNextOneOn) {
    NotificationCenter center;
    int heard = 0;
    std::vector<NotificationCenter::Registration> added;
    const auto first = center.addObserver(
        ping, [&] { added.push_back(center.addObserver(ping, [&] { ++heard; })); });
    center.post(ping);
    EXPECT_EQ(heard, 0);
    center.post(ping);
    EXPECT_EQ(heard, 1);
}

} // namespace
} // namespace tarne::test
