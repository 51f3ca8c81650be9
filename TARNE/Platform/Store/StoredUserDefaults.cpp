#include "StoredUserDefaults.h"

#include <QStandardPaths>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

/// Long enough to gather what a user's action writes; the rest of the promised second belongs to
/// the disk.
constexpr RunLoop::Seconds handOverDelay{0.2};

/// Two controllers publish one right after the other. They are saved together, so that no reader
/// sees what the first of them says in between.
constexpr RunLoop::Seconds synchronizeDelay{0.005};

} // namespace

QString StoredUserDefaults::standardFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           u"/com.tarne.app"_s;
}

StoredUserDefaults::StoredUserDefaults(const QString &folder, Keys keys, const Clock &clock,
                                       RunLoop &runLoop, std::chrono::milliseconds retryInterval)
    : m_clock(clock), m_runLoop(runLoop), m_passingKeys(std::move(keys.passing)) {
    const DefaultsFolder files(folder);
    const Date now = m_clock.now();
    OpenedDefaults opened = openDefaults(files, keys.restored, now);
    m_values = opened.values;
    m_writer = std::make_unique<DefaultsWriter>(files, std::move(opened), std::move(keys.restored),
                                                now, retryInterval);
}

StoredUserDefaults::~StoredUserDefaults() {
    close();
}

void StoredUserDefaults::close() {
    handOver();
    m_writer.reset();
}

std::optional<DefaultsValue> StoredUserDefaults::objectForKey(const QString &key) const {
    const auto found = m_values.constFind(key);
    return found == m_values.cend() ? std::nullopt : std::optional(*found);
}

void StoredUserDefaults::setObject(const QString &key, const DefaultsValue &value) {
    const auto found = m_values.constFind(key);
    if (found != m_values.cend() && isSameValue(*found, value))
        return;
    touch(key);
    m_values.insert(key, value);
}

void StoredUserDefaults::removeObjectForKey(const QString &key) {
    if (!m_values.contains(key))
        return;
    touch(key);
    m_values.remove(key);
}

void StoredUserDefaults::touch(const QString &key) {
    if (m_touched.isEmpty())
        handOverAfter(handOverDelay);
    if (m_before.try_emplace(key, objectForKey(key)).second)
        m_touched += key;
    else
        m_touched.move(m_touched.indexOf(key), m_touched.size() - 1);
}

void StoredUserDefaults::synchronize() {
    if (!m_touched.isEmpty() && !std::exchange(m_isHandOverPosted, true))
        handOverAfter(synchronizeDelay);
}

void StoredUserDefaults::handOverAfter(RunLoop::Seconds delay) {
    m_runLoop.asyncAfter(
        delay, [this, current = std::weak_ptr(m_handOver), expected = *m_handOver] {
            if (const auto handOverNow = current.lock(); handOverNow && *handOverNow == expected)
                handOver();
        });
}

void StoredUserDefaults::handOver() {
    ++*m_handOver;
    m_isHandOverPosted = false;
    DefaultsBatch batch{{}, m_clock.now()};
    const auto befores = std::exchange(m_before, {});
    for (const QString &key : std::exchange(m_touched, {})) {
        const auto &before = befores.at(key);
        const auto now = objectForKey(key);
        const bool isAsBefore = now && before ? isSameValue(*now, *before) : !now && !before;
        if (!isAsBefore)
            batch.changes.push_back({key, now});
    }
    batch.isRelaxed = std::ranges::all_of(batch.changes, [this](const DefaultsChange &change) {
        return m_passingKeys.contains(change.key);
    });
    if (!batch.changes.empty() && m_writer)
        m_writer->commit(std::move(batch));
}

} // namespace tarne
