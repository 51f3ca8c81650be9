#pragma once

#include "RequestFile.h"
#include "StoredUserDefaults.h"

#include <algorithm>

namespace tarne::test {

// What a run of the store writes. All values of a moment carry its number, so that a mixture of two
// moments shows.

inline const QString numberKey = QStringLiteral("Number");
/// Only moments of an odd number have it.
inline const QString oddKey = QStringLiteral("Odd");
/// What comes back from a copy.
inline const QString historyKey = QStringLiteral("SessionHistory");
/// What means nothing after the computer was off.
inline const QString passingKey = QStringLiteral("LastUpdate");

/// The moment at which a run writes `passingKey` alone.
inline constexpr int momentOfPassing = 3;

inline StoredUserDefaults::Keys faultStoreKeys() {
    return {.restored = {historyKey}, .passing = {passingKey}};
}

/// Longer than a page of the file.
inline QByteArray historyOf(qint64 number) {
    return ("entry " + QByteArray::number(number) + '\n').repeated(2'000);
}

/// 0 when there is none, -1 when it is not what `historyOf` has made.
inline qint64 numberOfHistory(const QByteArray &history) {
    if (history.isEmpty())
        return 0;
    const qint64 number = history.mid(6, history.indexOf('\n') - 6).toLongLong();
    return history == historyOf(number) ? number : -1;
}

inline void setLastingValues(UserDefaults &defaults, qint64 number) {
    defaults.setObject(numberKey, static_cast<double>(number));
    defaults.setObject(historyKey, historyOf(number));
    if (number % 2 == 1)
        defaults.setObject(oddKey, true);
    else
        defaults.removeObjectForKey(oddKey);
}

// What a run of the notifier's file writes: a request that is always there, and one that comes and
// goes.

inline NotificationSchedule::Pending faultRequest(const QString &identifier, qint64 number,
                                                  Date now) {
    return {{identifier,
             {identifier, QString::number(number)},
             DateComponents{2999, 12, 31, 23, 59, 59}},
            now};
}

inline void putRequests(notifier::RequestFile &file, qint64 number, Date now) {
    file.put(faultRequest(numberKey, number, now));
    if (number % 2 == 1)
        file.put(faultRequest(oddKey, number, now));
    else
        file.remove(oddKey);
}

/// 0 when there are none, -1 when they are not of one moment.
inline qint64 numberOfRequests(const std::vector<NotificationSchedule::Pending> &requests) {
    if (requests.empty())
        return 0;
    const auto bodyOf = [&](const QString &identifier) {
        const auto found = std::ranges::find_if(requests, [&](const auto &pending) {
            return pending.request.identifier == identifier;
        });
        return found == requests.end() ? 0 : found->request.content.body.toLongLong();
    };
    const qint64 number = bodyOf(numberKey);
    const bool isOneMoment = bodyOf(oddKey) == (number % 2 == 1 ? number : 0);
    return isOneMoment && requests.size() == (number % 2 == 1 ? 2U : 1U) ? number : -1;
}

} // namespace tarne::test
