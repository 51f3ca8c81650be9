#include "FaultStages.h"

#include "EventLoop.h"
#include "FaultValues.h"
#include "FixedClock.h"
#include "ManualTime.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <filesystem>
#include <string>

using namespace Qt::StringLiterals;

namespace tarne::test {

namespace {

namespace fs = std::filesystem;

const QStringList olderDays{u"2026-02-22"_s, u"2026-02-23"_s, u"2026-02-24"_s, u"2026-02-25"_s,
                            u"2026-02-26"_s, u"2026-02-27"_s, u"2026-03-01"_s};

/// In memory where there is such a folder: what the disk does is not the question here.
QString folderTemplate() {
    const QString name = u"faults-XXXXXX"_s;
    return QFileInfo(u"/dev/shm"_s).isWritable() ? u"/dev/shm/"_s + name
                                                 : QDir::temp().filePath(name);
}

void writeStore(const QString &folder, qint64 number) {
    ManualTime time;
    StoredUserDefaults store(folder, {}, time, time);
    setLastingValues(store, number);
    store.setObject(passingKey, static_cast<double>(number));
}

void copy(const QString &from, const QString &to) {
    fs::copy(from.toStdString(), to.toStdString(),
             fs::copy_options::recursive | fs::copy_options::overwrite_existing);
}

/// Copies that hold older values, one a day.
void addCopies(const QString &folder, const QStringList &days) {
    const QString older = folder + u".older"_s;
    writeStore(older, copiedNumber);
    QDir().mkpath(folder + u"/copies"_s);
    for (const QString &day : days)
        copy(older + u"/defaults.sqlite"_s, u"%1/copies/defaults-%2.sqlite"_s.arg(folder, day));
    QDir(older).removeRecursively();
}

} // namespace

QByteArray FaultStages::nameOf(Stage stage) {
    switch (stage) {
    case Stage::Absent:
        return "absent";
    case Stage::Whole:
        return "whole";
    case Stage::Killed:
        return "killed";
    case Stage::Damaged:
        return "damaged";
    case Stage::Requests:
        return "requests";
    }
    return {};
}

FaultStages::FaultStages() : m_folder(folderTemplate()) {
    EXPECT_TRUE(m_folder.isValid());
    prepareWhole();
    prepareKilled(Stage::Killed);
    prepareKilled(Stage::Damaged);
    damage();
    const Date now = FixedClock().moment;
    const auto file = notifier::RequestFile::open(prepared(Stage::Requests), now);
    putRequests(*file, preparedNumber, now);
    EXPECT_TRUE(file->save(now));
}

QString FaultStages::prepared(Stage stage) const {
    return m_folder.filePath(QString::fromLatin1(nameOf(stage)));
}

void FaultStages::prepareWhole() const {
    writeStore(prepared(Stage::Whole), preparedNumber);
    addCopies(prepared(Stage::Whole), olderDays);
}

void FaultStages::prepareKilled(Stage stage) const {
    const QString living = m_folder.filePath(u"living"_s);
    writeStore(living, preparedNumber - 2);
    {
        ManualTime time;
        StoredUserDefaults store(living, {}, time, time);
        // Of a damaged one the log holds little, so that what is in the file counts.
        if (stage == Stage::Killed)
            setLastingValues(store, preparedNumber);
        store.setObject(passingKey, static_cast<double>(preparedNumber));
        time.advance(RunLoop::Seconds(1.0));
        EXPECT_TRUE(serveUntil([&] {
            const SQLite::Database reader((living + u"/defaults.sqlite"_s).toStdString());
            SQLite::Statement query(reader, "SELECT value FROM defaults WHERE key = 'LastUpdate'");
            return query.executeStep() &&
                   query.getColumn(0).getDouble() == static_cast<double>(preparedNumber);
        }));
        copy(living, prepared(stage));
    }
    QDir(living).removeRecursively();
    QFile::remove(prepared(stage) + u"/defaults.sqlite-shm"_s);
    EXPECT_GT(QFileInfo(prepared(stage) + u"/defaults.sqlite-wal"_s).size(), 0);
}

/// One entry of the history reads otherwise than it was written.
void FaultStages::damage() {
    addCopies(prepared(Stage::Damaged), {u"2026-03-01"_s});
    QFile file(prepared(Stage::Damaged) + u"/defaults.sqlite"_s);
    EXPECT_TRUE(file.open(QIODevice::ReadWrite));
    m_damagedBytes = file.readAll();
    const qsizetype place = m_damagedBytes.lastIndexOf("entry 999\n");
    EXPECT_GT(place, 0);
    m_damagedBytes.replace(place, 5, "ENTRY");
    file.seek(0);
    EXPECT_EQ(file.write(m_damagedBytes), m_damagedBytes.size());
}

QString FaultStages::make(Stage stage) {
    const QString folder = m_folder.filePath(u"run"_s);
    QDir(folder).removeRecursively();
    if (stage == Stage::Absent)
        return folder;
    copy(prepared(stage), folder);
    return folder;
}

QStringList FaultStages::filesOf(const QString &folder) {
    QStringList databases{folder + u"/defaults.sqlite"_s,
                          folder + u"/defaults.sqlite.new"_s,
                          folder + u"/defaults.damaged-20260302-100000.sqlite"_s,
                          folder + u"/copies/unfinished.sqlite"_s,
                          folder + u"/copies/defaults-2026-03-02.sqlite"_s,
                          folder + u"/requests.sqlite"_s};
    for (const QString &day : olderDays)
        databases += u"%1/copies/defaults-%2.sqlite"_s.arg(folder, day);
    QStringList files{folder, folder + u"/copies"_s};
    for (const QString &database : databases) {
        for (const QString &suffix : {u""_s, u"-wal"_s, u"-shm"_s, u"-journal"_s})
            files += database + suffix;
    }
    return files;
}

} // namespace tarne::test
