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

void QtRunLoop::enqueue(MonotonicTime due, Block block) {
    bool postWakeUp = false;
    {
        const std::lock_guard lock(m_mutex);
        m_entries.push({due, m_nextSequence++, std::make_shared<Block>(std::move(block))});
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
    m_endedTimers.clear();
    // Only what is due on entry: a block that posts itself anew must not starve the event loop.
    const MonotonicTime limit = steady_clock::now();
    const auto takeDue = [&]() -> std::shared_ptr<Block> {
        const std::lock_guard lock(m_mutex);
        m_wakeUpPosted = false;
        if (m_entries.empty() || m_entries.top().due > limit)
            return nullptr;
        auto block = m_entries.top().block;
        m_entries.pop();
        return block;
    };
    while (const auto block = takeDue())
        (*block)();
    armWakeUp();
}

void QtRunLoop::armWakeUp() {
    const std::lock_guard lock(m_mutex);
    if (!m_entries.empty())
        startUntil(m_wakeUp, m_entries.top().due);
}

void QtRunLoop::startUntil(QTimer &timer, MonotonicTime due) {
    const auto wait = ceil<milliseconds>(due - steady_clock::now());
    timer.start(std::clamp<milliseconds>(wait, 0ms, longestWait));
}

RunLoop::Timer QtRunLoop::scheduleRepeating(Seconds interval, Block block) {
    const quint64 id = m_nextTimer++;
    auto repeating = std::make_unique<Repeating>();
    repeating->interval = duration_cast<steady_clock::duration>(interval);
    repeating->due = steady_clock::now() + repeating->interval;
    repeating->block = std::move(block);
    QTimer &timer = repeating->timer;
    timer.setSingleShot(true);
    // Coarse timers are aligned to whole seconds, which would make all timers of an interval fire
    // together, whatever their phase. Repeating ones fall into step as well: those that a busy
    // thread made miss a firing begin anew together.
    timer.setTimerType(Qt::PreciseTimer);
    connect(&timer, &QTimer::timeout, this, [&fired = *repeating] { fire(fired); });
    startUntil(timer, repeating->due);
    m_timers.emplace(id, std::move(repeating));
    return Timer{id};
}

void QtRunLoop::fire(Repeating &repeating) {
    const MonotonicTime now = steady_clock::now();
    const bool isDue = now >= repeating.due;
    if (isDue)
        repeating.due = nextFiring(repeating.due, repeating.interval, now);
    startUntil(repeating.timer, repeating.due);
    // Last: the block may end the timer.
    if (isDue)
        repeating.block();
}

QtRunLoop::MonotonicTime QtRunLoop::nextFiring(MonotonicTime due, MonotonicTime::duration interval,
                                               MonotonicTime now) {
    return now < due ? due : due + ((now - due) / interval + 1) * interval;
}

void QtRunLoop::invalidate(Timer timer) {
    const auto found = m_timers.find(static_cast<quint64>(timer));
    if (found == m_timers.end())
        return;
    found->second->timer.stop();
    // The block may be running right now, on the timer's own signal.
    m_endedTimers.push_back(std::move(found->second));
    m_timers.erase(found);
}

} // namespace tarne
