#include "QuotaGate.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <utility>

namespace tarne {

using namespace std::chrono;

namespace {

seconds roundedUp(steady_clock::duration time) {
    return std::max(ceil<seconds>(time), 1s);
}

} // namespace

QuotaGate::QuotaGate(std::string file, QuotaClocks clocks)
    : m_file(std::move(file)), m_clocks(std::move(clocks)), m_day(today()) {
    load();
}

std::optional<seconds> QuotaGate::admit() {
    if (const auto left = pause())
        return left;
    const SteadyTime now = m_clocks.steady();
    while (!m_lastMinute.empty() && now - m_lastMinute.front() >= 1min)
        m_lastMinute.pop_front();
    if (m_lastMinute.size() >= mostAMinute)
        return roundedUp(m_lastMinute.front() + 1min - now);
    if (leftToday() == 0)
        return untilTomorrow();
    m_lastMinute.push_back(now);
    ++m_askedToday;
    save();
    return std::nullopt;
}

std::optional<seconds> QuotaGate::pause() const {
    const SteadyTime now = m_clocks.steady();
    if (!m_pauseEnd || now >= *m_pauseEnd)
        return std::nullopt;
    return roundedUp(*m_pauseEnd - now);
}

void QuotaGate::beginPause(seconds length) {
    m_pauseEnd = m_clocks.steady() + std::clamp<seconds>(length, 1s, 24h);
}

int QuotaGate::leftToday() {
    if (std::exchange(m_day, today()) != m_day)
        m_askedToday = 0;
    return mostADay - m_askedToday;
}

sys_days QuotaGate::today() const {
    return floor<days>(m_clocks.wall());
}

seconds QuotaGate::untilTomorrow() const {
    return std::max(ceil<seconds>(today() + days(1) - m_clocks.wall()), 1s);
}

void QuotaGate::load() {
    std::ifstream file(m_file);
    long long day = 0;
    int asked = 0;
    if (file >> day >> asked && day == m_day.time_since_epoch().count())
        m_askedToday = std::clamp(asked, 0, mostADay);
}

void QuotaGate::save() const {
    if (m_file.empty())
        return;
    const std::string written = m_file + ".new";
    std::ofstream file(written, std::ios::trunc);
    file << m_day.time_since_epoch().count() << ' ' << m_askedToday << '\n';
    file.close();
    if (file)
        std::rename(written.c_str(), m_file.c_str());
}

} // namespace tarne
