#include "DailyCopies.h"

#include "DefaultsFault.h"
#include "SQLiteFile.h"
#include "StoreLog.h"

#include <QDate>
#include <QDir>
#include <QFile>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

constexpr double secondsPerDay = 86400.0;

/// The moment's day as "2026-03-02"; empty for a moment outside the years 1 to 9999.
QString dayName(Date moment) {
    const double days = std::floor(moment.secondsSinceReferenceDate() / secondsPerDay);
    if (!(std::abs(days) < 4e6))
        return {};
    return QDate(2001, 1, 1).addDays(static_cast<qint64>(days)).toString(Qt::ISODate);
}

QString fileName(const QString &day) {
    return u"defaults-%1.sqlite"_s.arg(day);
}

} // namespace

void DailyCopies::copyOncePerDay(SQLiteFile &file, Date now) {
    const QString day = dayName(now);
    if (day.isEmpty() || day == m_lastDay)
        return;
    m_lastDay = day;
    const QString path = m_folder.copies() + u'/' + fileName(day);
    if (QFile::exists(path))
        return;
    // Built under another name, so that a copy that a kill cut short is never taken for one.
    const QString unfinished = m_folder.copies() + u"/unfinished.sqlite"_s;
    DefaultsFolder::removeFile(unfinished);
    DefaultsFolder::createPrivateFile(unfinished);
    try {
        file.copyTo(unfinished);
        DefaultsFolder::moveFile(unfinished, path);
    } catch (const DefaultsFault &fault) {
        DefaultsFolder::removeFile(unfinished);
        qCWarning(storeLog).noquote()
            << "no copy of the defaults store was made today:" << fault.reason();
        return;
    }
    const QStringList copies = latestFirst(now);
    for (const QString &old : copies.mid(std::min<qsizetype>(kept, copies.size())))
        QFile::remove(old);
}

QStringList DailyCopies::latestFirst(Date now) const {
    const QDir folder(m_folder.copies());
    QStringList paths =
        folder.entryList({fileName(u"*"_s)}, QDir::Files, QDir::Name | QDir::Reversed);
    const QString today = fileName(dayName(now));
    std::stable_partition(paths.begin(), paths.end(),
                          [&](const QString &name) { return name <= today; });
    for (QString &path : paths)
        path = folder.filePath(path);
    return paths;
}

} // namespace tarne
