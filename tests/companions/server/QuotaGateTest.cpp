#include "QuotaGate.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

using Seconds = std::optional<std::chrono::seconds>;

class AQuotaGate : public testing::Test {
protected:
    QuotaGate gate() {
        return QuotaGate(file().toStdString(),
                         {.steady = [this] { return m_now; }, .wall = [this] { return m_wall; }});
    }

    void pass(std::chrono::seconds time) {
        m_now += time;
        m_wall += time;
    }
    /// Asks as often as the day allows.
    void useUpTheDay(QuotaGate &gate) {
        for (int asked = 0; asked < QuotaGate::mostADay; ++asked) {
            if (gate.admit())
                FAIL() << "refused after " << asked;
            pass(7s);
        }
    }

    QString file() const { return m_folder.filePath(u"count"_s); }

    std::chrono::steady_clock::time_point m_now{1h};
    std::chrono::system_clock::time_point m_wall{
        std::chrono::sys_days(std::chrono::year(2026) / 11 / 22) + 8h};

private:
    QTemporaryDir m_folder;
};

TEST_F(AQuotaGate, LetsTenThroughInAnyMinute) {
    auto gate = this->gate();
    EXPECT_EQ(gate.admit(), Seconds());
    pass(20s);
    for (int asked = 1; asked < 10; ++asked)
        EXPECT_EQ(gate.admit(), Seconds());
    EXPECT_EQ(gate.admit(), Seconds(40s));
    pass(39s);
    EXPECT_EQ(gate.admit(), Seconds(1s));
    pass(1s);
    EXPECT_EQ(gate.admit(), Seconds());
    EXPECT_EQ(gate.admit(), Seconds(20s));
}

TEST_F(AQuotaGate, LetsThreeHundredThroughADay) {
    auto gate = this->gate();
    EXPECT_EQ(gate.leftToday(), 300);
    useUpTheDay(gate);
    EXPECT_EQ(gate.leftToday(), 0);
    // 300 times 7 seconds later.
    EXPECT_EQ(gate.admit(), Seconds(16h - 2100s));
    pass(16h);
    EXPECT_EQ(gate.leftToday(), 300);
    EXPECT_EQ(gate.admit(), Seconds());
}

TEST_F(AQuotaGate, GoesOnCountingAfterARestart) {
    {
        auto gate = this->gate();
        useUpTheDay(gate);
    }
    auto restarted = gate();
    EXPECT_EQ(restarted.leftToday(), 0);
    EXPECT_TRUE(restarted.admit());
    pass(24h);
    EXPECT_EQ(gate().leftToday(), 300);
}

TEST_F(AQuotaGate, KeepsADateAndANumberAndNothingElse) {
    auto gate = this->gate();
    std::ignore = gate.admit();
    std::ignore = gate.admit();
    QFile count(file());
    ASSERT_TRUE(count.open(QIODevice::ReadOnly));
    EXPECT_EQ(count.readAll(), "20779 2\n");
}

TEST_F(AQuotaGate, OverlooksACountThatCannotBeRead) {
    for (const char *content :
         {"", "20779", "yesterday 7", "20779 x", "20778 300", "-1 -1", "99999999999999999999 3"}) {
        QFile count(file());
        ASSERT_TRUE(count.open(QIODevice::WriteOnly | QIODevice::Truncate));
        count.write(content);
        count.close();
        EXPECT_EQ(gate().leftToday(), 300) << content;
    }
}

TEST_F(AQuotaGate, CountsInMemoryWhereNoFileCanBeWritten) {
    QuotaGate gate("/nonexistent/count",
                   {.steady = [this] { return m_now; }, .wall = [this] { return m_wall; }});
    EXPECT_EQ(gate.admit(), Seconds());
    EXPECT_EQ(gate.leftToday(), 299);
}

TEST_F(AQuotaGate, LetsNothingThroughAfterARefusalOfTheService) {
    auto gate = this->gate();
    EXPECT_EQ(gate.pause(), Seconds());
    gate.beginPause(60s);
    EXPECT_EQ(gate.admit(), Seconds(60s));
    pass(59s);
    EXPECT_EQ(gate.pause(), Seconds(1s));
    EXPECT_EQ(gate.admit(), Seconds(1s));
    pass(1s);
    EXPECT_EQ(gate.pause(), Seconds());
    EXPECT_EQ(gate.admit(), Seconds());
    // What was refused here has cost nothing.
    EXPECT_EQ(gate.leftToday(), 299);
}

} // namespace
} // namespace tarne::test
