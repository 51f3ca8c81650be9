#include "SQLiteUserDefaults.h"

#include <QStandardPaths>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

/// Leaves the second half of the promised second to the disk.
constexpr RunLoop::Seconds handOverDelay{0.5};

} // namespace

QString SQLiteUserDefaults::standardFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           u"/com.tarne.app"_s;
}

SQLiteUserDefaults::SQLiteUserDefaults(const QString &folder, QStringList keysToRestore,
                                       const Clock &clock, RunLoop &runLoop,
                                       std::chrono::milliseconds retryInterval)
    : m_clock(clock), m_runLoop(runLoop) {
    const DefaultsFolder files(folder);
    const Date now = m_clock.now();
    OpenedDefaults opened = openDefaults(files, keysToRestore, now);
    m_values = opened.values;
    m_writer = std::make_unique<DefaultsWriter>(files, std::move(opened), std::move(keysToRestore),
                                                now, retryInterval);
}

SQLiteUserDefaults::~SQLiteUserDefaults() {
    handOver();
}

std::optional<DefaultsValue> SQLiteUserDefaults::objectForKey(const QString &key) const {
    const auto found = m_values.constFind(key);
    return found == m_values.cend() ? std::nullopt : std::optional(*found);
}

void SQLiteUserDefaults::setObject(const QString &key, const DefaultsValue &value) {
    const auto found = m_values.constFind(key);
    if (found != m_values.cend() && isSameValue(*found, value))
        return;
    touch(key);
    m_values.insert(key, value);
}

void SQLiteUserDefaults::removeObjectForKey(const QString &key) {
    if (!m_values.contains(key))
        return;
    touch(key);
    m_values.remove(key);
}

void SQLiteUserDefaults::touch(const QString &key) {
    if (m_touched.empty())
        handOverAfter(handOverDelay);
    const auto found = std::find_if(m_touched.begin(), m_touched.end(),
                                    [&](const Touched &touched) { return touched.key == key; });
    if (found == m_touched.end())
        m_touched.push_back({key, objectForKey(key)});
    else
        std::rotate(found, found + 1, m_touched.end());
}

void SQLiteUserDefaults::synchronize() {
    // Posted, not done at once: the event that is running may go on to write keys that belong
    // together with those it has written.
    if (!m_touched.empty() && !std::exchange(m_isHandOverPosted, true))
        handOverAfter(RunLoop::Seconds{0});
}

void SQLiteUserDefaults::handOverAfter(RunLoop::Seconds delay) {
    auto block = [this, current = std::weak_ptr(m_handOver), expected = *m_handOver] {
        if (const auto handOverNow = current.lock(); handOverNow && *handOverNow == expected)
            handOver();
    };
    if (delay.count() > 0)
        m_runLoop.asyncAfter(delay, std::move(block));
    else
        m_runLoop.async(std::move(block));
}

void SQLiteUserDefaults::handOver() {
    ++*m_handOver;
    m_isHandOverPosted = false;
    DefaultsBatch batch{{}, m_clock.now()};
    for (Touched &touched : std::exchange(m_touched, {})) {
        const auto now = objectForKey(touched.key);
        const bool isAsBefore =
            now && touched.before ? isSameValue(*now, *touched.before) : !now && !touched.before;
        if (!isAsBefore)
            batch.changes.push_back({std::move(touched.key), now});
    }
    if (!batch.changes.empty())
        m_writer->commit(std::move(batch));
}

} // namespace tarne
