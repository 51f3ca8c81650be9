#include "RandomUuid.h"

#include <gtest/gtest.h>

#include <QSet>

#include <array>
#include <thread>

using namespace tarne;

TEST(RandomUuid, EachOneIsAVersion4UuidOfItsOwn) {
    QSet<QUuid> seen;
    for (int i = 0; i < 100000; ++i) {
        const QUuid uuid = randomUuid();
        ASSERT_EQ(uuid.version(), QUuid::Random);
        ASSERT_EQ(uuid.variant(), QUuid::DCE);
        seen.insert(uuid);
    }
    EXPECT_EQ(seen.size(), 100000);
}

TEST(RandomUuid, ThreadsDoNotMakeTheSameOnes) {
    std::array<QUuid, 2> made;
    std::thread first([&made] { made[0] = randomUuid(); });
    std::thread second([&made] { made[1] = randomUuid(); });
    first.join();
    second.join();
    EXPECT_NE(made[0], made[1]);
}

TEST(RandomUuid, EveryOtherBitIsSometimesSetAndSometimesNot) {
    quint64 everSet = 0;
    quint64 alwaysSet = ~quint64{0};
    for (int i = 0; i < 1000; ++i) {
        const QByteArray bytes = randomUuid().toRfc4122();
        quint64 high = 0;
        for (int b = 0; b < 8; ++b)
            high = high << 8 | static_cast<uchar>(bytes[b]);
        everSet |= high;
        alwaysSet &= high;
    }
    EXPECT_EQ(everSet, 0xFFFFFFFFFFFF4FFFU);
    EXPECT_EQ(alwaysSet, 0x0000000000004000U);
}
