#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <optional>
#include <string>

namespace tarne {

struct QuotaClocks {
    std::function<std::chrono::steady_clock::time_point()> steady = &std::chrono::steady_clock::now;
    std::function<std::chrono::system_clock::time_point()> wall = &std::chrono::system_clock::now;
};

/// How often the model may be asked: the key that pays for it pays for the coaching too.
///
/// 10 questions in any minute, 300 a day (of UTC), and none for a while after the service said that
/// it were too many. The day's count outlives the program, as a date and a number in a file; where
/// that cannot be written the count goes on in memory.
class QuotaGate {
public:
    static constexpr int mostAMinute = 10;
    static constexpr int mostADay = 300;
    static constexpr std::chrono::seconds pauseAfterRefusal{60};

    /// `file` keeps the day's count; empty: none does.
    explicit QuotaGate(std::string file, QuotaClocks clocks = {});

    /// Counts one question and returns nothing where it may be asked; else in how many seconds the
    /// next one may, at least 1.
    [[nodiscard]] std::optional<std::chrono::seconds> admit();

    /// In how many seconds the pause after a refusal is over, at least 1; nothing without a pause.
    [[nodiscard]] std::optional<std::chrono::seconds> pause() const;

    /// The service has refused for so long.
    void beginPause(std::chrono::seconds length);

    /// Questions that the day still has.
    [[nodiscard]] int leftToday();

private:
    using SteadyTime = std::chrono::steady_clock::time_point;

    [[nodiscard]] std::chrono::sys_days today() const;
    void load();
    void save() const;
    [[nodiscard]] std::chrono::seconds untilTomorrow() const;

    std::string m_file;
    QuotaClocks m_clocks;
    std::deque<SteadyTime> m_lastMinute;
    std::optional<SteadyTime> m_pauseEnd;
    std::chrono::sys_days m_day;
    int m_askedToday = 0;
};

} // namespace tarne
