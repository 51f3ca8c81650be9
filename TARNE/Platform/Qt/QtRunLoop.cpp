#include "QtRunLoop.h"

#include <QCoreApplication>
#include <QEvent>

namespace tarne {

using namespace std::chrono;

namespace {

const auto wakeUpEvent = static_cast<QEvent::Type>(QEvent::registerEventType());

/// A timer of Qt holds no more than 24 days; waking up for nothing once a day costs nothing.
constexpr auto longestWait = 24h;

} // namespace

QtRunLoop::QtRunLoop() {
    m_wakeUp.setSingleShot(true);
    // A coarse timer would be up to a twentieth of the wait late.
    m_wakeUp.setTimerType(Qt::PreciseTimer);
    connect(&m_wakeUp, &QTimer::timeout, this, &QtRunLoop::runDueBlocks);
}

QtRunLoop::~QtRunLoop() = default;

void QtRunLoop::async(Block block) {
    enqueue(steady_clock::now(), std::move(block));
}

void QtRunLoop::asyncAfter(Seconds delay, Block block) {
    enqueue(steady_clock::now() + duration_cast<steady_clock::duration>(bounded(delay)),
            std::move(block));
}

RunLoop::Timer QtRunLoop::scheduleRepeating(Seconds interval, Block block) {
    const auto period = duration_cast<steady_clock::duration>(interval);
    const Timer timer{m_nextTimer++};
    m_timers.emplace(timer, Repeating{period, std::make_shared<Block>(std::move(block))});
    enqueue(steady_clock::now() + period, {}, timer);
    return timer;
}

void QtRunLoop::invalidate(Timer timer) {
    // Its entry in the queue leads nowhere now.
    m_timers.erase(timer);
}

void QtRunLoop::enqueue(MonotonicTime due, Block block, Timer timer) {
    bool postWakeUp = false;
    {
        const std::lock_guard lock(m_mutex);
        m_entries.push({due, m_nextSequence++, std::make_shared<Block>(std::move(block)), timer});
        postWakeUp = !std::exchange(m_wakeUpPosted, true);
    }
    if (postWakeUp)
        QCoreApplication::postEvent(this, new QEvent(wakeUpEvent));
}

bool QtRunLoop::event(QEvent *event) {
    if (event->type() != wakeUpEvent)
        return QObject::event(event);
    runDueBlocks();
    return true;
}

void QtRunLoop::runDueBlocks() {
    // Only what is due on entry: a block that posts itself anew must not starve the event loop.
    const MonotonicTime limit = steady_clock::now();
    while (const auto block = takeDue(limit)) {
        armWakeUp(); // The block may run an event loop of its own.
        (*block)();
    }
    armWakeUp();
}

std::shared_ptr<RunLoop::Block> QtRunLoop::takeDue(MonotonicTime limit) {
    const std::lock_guard lock(m_mutex);
    m_wakeUpPosted = false;
    while (!m_entries.empty() && m_entries.top().due <= limit) {
        Entry entry = m_entries.top();
        m_entries.pop();
        if (entry.timer == Timer::None)
            return entry.block;
        const auto timer = m_timers.find(entry.timer);
        if (timer == m_timers.end())
            continue;
        const MonotonicTime latest = lastFiring(entry.due, timer->second.interval, limit);
        const bool isLatest = entry.due == latest;
        // A timer that missed firings fires once, at its latest moment. So the order of several
        // timers is the one that they have without the busy time.
        entry.due = isLatest ? latest + timer->second.interval : latest;
        m_entries.push(std::move(entry));
        if (isLatest)
            return timer->second.block;
    }
    return nullptr;
}

QtRunLoop::MonotonicTime QtRunLoop::lastFiring(MonotonicTime due, MonotonicTime::duration interval,
                                               MonotonicTime now) {
    return due + (now - due) / interval * interval;
}

void QtRunLoop::armWakeUp() {
    const std::lock_guard lock(m_mutex);
    if (m_entries.empty())
        return;
    const auto wait = ceil<milliseconds>(m_entries.top().due - steady_clock::now());
    m_wakeUp.start(std::clamp<milliseconds>(wait, 0ms, longestWait));
}

} // namespace tarne
