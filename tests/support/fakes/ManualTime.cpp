#include "ManualTime.h"

#include <algorithm>
#include <cmath>

namespace tarne::test {

void ManualTime::async(Block block) {
    asyncAfter(Seconds{0}, std::move(block));
}

void ManualTime::asyncAfter(Seconds delay, Block block) {
    m_blocks.emplace(Order{m_uptime + bounded(delay).count(), m_nextSequence++}, std::move(block));
}

RunLoop::Timer ManualTime::scheduleRepeating(Seconds interval, Block block) {
    const quint64 id = m_nextSequence++;
    m_timers.emplace(id,
                     Repeating{interval.count(), m_uptime + interval.count(), std::move(block)});
    return Timer{id};
}

void ManualTime::invalidate(Timer timer) {
    m_timers.erase(static_cast<quint64>(timer));
}

void ManualTime::advance(Seconds duration) {
    const double end = m_uptime + duration.count();
    // A block that kept the thread busy past the end has moved the end.
    while (runNext(std::max(end, m_uptime))) {
    }
    const double rest = std::max(end - m_uptime, 0.0);
    m_now = m_now + rest;
    m_uptime += rest;
}

void ManualTime::block(Seconds duration) {
    m_now = m_now + duration.count();
    m_uptime += duration.count();
    for (auto &[id, timer] : m_timers) {
        if (timer.next < m_uptime)
            timer.next += std::floor((m_uptime - timer.next) / timer.interval) * timer.interval;
    }
}

bool ManualTime::runNext(double limit) {
    auto due = m_timers.end();
    for (auto timer = m_timers.begin(); timer != m_timers.end(); ++timer) {
        if (due == m_timers.end() || timer->second.next < due->second.next)
            due = timer;
    }
    const bool timerIsNext = due != m_timers.end() &&
                             (m_blocks.empty() || due->second.next < m_blocks.begin()->first.first);
    if (!timerIsNext && m_blocks.empty())
        return false;
    const double moment = timerIsNext ? due->second.next : m_blocks.begin()->first.first;
    if (moment > limit)
        return false;
    if (moment > m_uptime) {
        m_now = m_now + (moment - m_uptime);
        m_uptime = moment;
    }
    Block block;
    if (timerIsNext) {
        block = due->second.block;
        due->second.next += due->second.interval;
    } else {
        block = std::move(m_blocks.begin()->second);
        m_blocks.erase(m_blocks.begin());
    }
    block();
    return true;
}

} // namespace tarne::test
