// What a power cut leaves of the store and of the notifier's file: a run's own writes, put together
// again as they may lie on the disk after each of them.

#include "DailyCopies.h"
#include "DefaultsFault.h"
#include "DefaultsSaver.h"
#include "PowerCuts.h"
#include "Proof.h"
#include "RequestFile.h"
#include "RequestText.h"
#include "StoreTest.h"
#include "StoredKeys.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include <QDir>
#include <QFile>

#include <array>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using Promise = PowerCuts::Promise;

const QStringList restoredKeys{preferencesKey, historyKey, goalsKey};
const QString after = u"After"_s;

QStringList passingKeys() {
    return {keys::published.begin(), keys::published.end()};
}

Contents contentsOf(const DefaultsValues &values) {
    Contents contents;
    for (auto value = values.cbegin(); value != values.cend(); ++value) {
        const StoredValue stored(value.value());
        contents += u"%1 %2 %3"_s.arg(value.key(), QString::fromStdString(stored.type))
                        .arg(stored.checksum());
    }
    return contents;
}

bool isSound(const QString &file) {
    const SQLite::Database database(file.toStdString(), SQLite::OPEN_READONLY, 1000);
    SQLite::Statement check(database, "PRAGMA integrity_check");
    return check.executeStep() && check.getColumn(0).getString() == "ok";
}

/// Copies that bear the name of a day are whole.
bool areCopiesSound(const DefaultsFolder &folder, Date now) {
    for (const QString &copy : DailyCopies(folder).latestFirst(now)) {
        try {
            std::ignore = SQLiteFile(copy, SQLiteFile::Access::Immutable).load();
        } catch (const DefaultsFault &) {
            return false;
        }
    }
    return true;
}

/// What a start finds in the store of a folder. None when it tells of damage, when SQLite finds
/// some, when a copy is damaged, or when what is saved next is not found by the start after it.
std::optional<Contents> startStore(const QString &folder, Date now, bool isDamageExpected) {
    const StoreDiagnostics diagnostics;
    const DefaultsFolder files(folder + u"/com.tarne.app"_s);
    OpenedDefaults opened = openDefaults(files, restoredKeys, now);
    DefaultsValues values = opened.values;
    const Contents found = contentsOf(values);
    if (!isSound(files.file()) || !areCopiesSound(files, now))
        return std::nullopt;
    {
        DefaultsSaver saver(files, std::move(opened), now);
        saver.keep({{{after, DefaultsValue(true)}}, now});
        saver.save();
    }
    values.insert(after, true);
    const DefaultsValues next = openDefaults(files, restoredKeys, now).values;
    const bool isQuiet = isDamageExpected || StoreDiagnostics::lines().isEmpty();
    return isQuiet && contentsOf(next) == contentsOf(values) && isSound(files.file())
               ? std::optional(found)
               : std::nullopt;
}

/// A store that is used as TARNE uses it, in a recording.
class StorePowerCut : public StoreTest {
protected:
    std::string recordedFolder() const { return QFileInfo(folder()).path().toStdString(); }

    void begin(const Contents &initial = {}) { m_cuts.emplace(recordedFolder(), initial); }

    StoredUserDefaults &openRecorded() {
        m_store.emplace(
            folder(), StoredUserDefaults::Keys{.restored = restoredKeys, .passing = passingKeys()},
            time, time, std::chrono::milliseconds(20));
        return *m_store;
    }
    StoredUserDefaults &recorded() { return *m_store; }
    void closeRecorded() { m_store.reset(); }

    /// Commits what was set, and `number` under `name`, and waits until another reader sees it.
    void commit(const QString &name, Promise promise) {
        recorded().setObject(name, ++m_number);
        m_cuts->handOver(contents());
        recorded().synchronize();
        runPosted();
        ASSERT_TRUE(comesToHold(name, std::to_string(m_number)));
        m_cuts->acknowledge(promise);
    }
    /// What a second of a session publishes.
    void publish() {
        const auto number = static_cast<double>(m_number);
        recorded().setObject(keys::sessionActive, qint64{1});
        recorded().setObject(keys::sessionGoals, u"Goals %1"_s.arg(m_number));
        recorded().setObject(keys::sessionId, u"Session %1"_s.arg(m_number));
        recorded().setObject(keys::timeRemaining, 1500.0 - number);
        recorded().setObject(keys::sessionDuration, 1500.0);
        recorded().setObject(keys::sessionProgress, number / 1500.0);
        commit(keys::lastUpdate, Promise::Passing);
    }
    /// What a user's action changes.
    void act(int sizeOfHistory) {
        const QByteArray number = QByteArray::number(m_number);
        recorded().setObject(historyKey, number.repeated(sizeOfHistory / int(number.size())));
        recorded().setObject(preferencesKey, QByteArray("{\"lastGoal\":\"" + number + "\"}"));
        if (m_number % 3 == 0)
            recorded().removeObjectForKey(goalsKey);
        else
            recorded().setObject(goalsKey, QByteArray('[' + number + ']'));
        recorded().setObject(timerKey, Date::fromReferenceSeconds(static_cast<double>(m_number)));
        commit(u"Number"_s, Promise::Lasting);
    }

    PowerCuts::Start start(bool isDamageExpected = false) {
        return [this, isDamageExpected](const QString &state) {
            return startStore(state, time.now(), isDamageExpected);
        };
    }
    PowerCuts &cuts() { return *m_cuts; }

private:
    Contents contents() {
        DefaultsValues values;
        for (const QString &name :
             restoredKeys + passingKeys() + QStringList{timerKey, u"Number"_s})
            if (const auto value = recorded().objectForKey(name))
                values.insert(name, *value);
        return contentsOf(values);
    }

    std::optional<PowerCuts> m_cuts;
    std::optional<StoredUserDefaults> m_store;
    qint64 m_number = 0;
};

TEST_F(StorePowerCut, LeavesOneCommitAndAllThatWasAcknowledgedButTheSessionsKeys) {
    begin();
    for (int run = 0; run < 3; ++run) {
        openRecorded();
        for (int action = 0; action < 4; ++action) {
            act(20'000);
            for (int second = 0; second < 5; ++second)
                publish();
        }
        closeRecorded();
        time.advance(day); // The next start makes a copy.
    }
    cuts().prove("store-power-cut", start());
}

TEST_F(StorePowerCut, InTheMergingOfALongLogLeavesTheSame) {
    begin();
    openRecorded();
    for (int action = 0; action < 14; ++action) {
        act(400'000);
        publish();
    }
    closeRecorded();
    cuts().prove("long-log-power-cut", start(), isLongProof() ? 5 : 23);
}

TEST_F(StorePowerCut, InTheReplacementOfADamagedStoreLeavesItsCopyAndTheDamagedFile) {
    openRecorded().setObject(historyKey, QByteArray("copied"));
    closeRecorded();
    time.advance(day);
    openRecorded().setObject(historyKey, QByteArray(20'000, 'n'));
    closeRecorded();
    openRecorded().setObject(preferencesKey, QByteArray("in the log"));
    recorded().synchronize();
    runPosted();
    ASSERT_TRUE(comesToHold(preferencesKey, "in the log"));
    // As a kill leaves it: with a log. And then damaged.
    QByteArray damaged = bytesOf(file());
    const QByteArray log = bytesOf(file() + u"-wal"_s);
    closeRecorded();
    damaged[damaged.indexOf(QByteArray(4000, 'n')) + 10] = 'm';
    overwrite(file(), 0, damaged);
    overwrite(file() + u"-wal"_s, 0, log);

    begin(contentsOf({{historyKey, QByteArray("copied")}}));
    {
        const StoreDiagnostics diagnostics;
        openRecorded();
        EXPECT_EQ(StoreDiagnostics::lines().size(), 1);
    }
    for (int action = 0; action < 3; ++action) {
        act(20'000);
        publish();
    }
    closeRecorded();
    cuts().prove("damaged-store-power-cut", [&](const QString &state) -> std::optional<Contents> {
        const auto found = startStore(state, time.now(), true);
        const QDir place(state + u"/com.tarne.app"_s);
        for (const QString &name : place.entryList({u"defaults.damaged-*.sqlite"_s}))
            if (bytesOf(place.filePath(name)) == damaged)
                return found;
        return std::nullopt;
    });
}

/// The notifier's file of requests, in a recording.
class NotifierPowerCut : public testing::Test {
protected:
    using File = notifier::RequestFile;

    static QString folderIn(const QString &folder) { return folder + u"/notifier"_s; }
    using Pending = NotificationSchedule::Pending;

    static Contents contentsOf(const std::vector<Pending> &requests) {
        Contents contents;
        for (const Pending &pending : requests)
            contents += QString::fromUtf8(notifier::textOf(pending));
        contents.sort();
        return contents;
    }
    static Contents contentsOf(const File &file) { return contentsOf(file.requests()); }
    /// What the file is to hold once one request was put and another removed.
    static Contents contentsAfter(const File &file, const Pending &put, const QString &removed) {
        std::vector<Pending> requests = file.requests();
        std::erase_if(requests, [&](const Pending &one) {
            const QString &identifier = one.request.identifier;
            return identifier == put.request.identifier || identifier == removed;
        });
        requests.push_back(put);
        return contentsOf(requests);
    }
    static Pending request(int number, int size) {
        return {{u"request-%1"_s.arg(number % 7),
                 {u"Title %1"_s.arg(number), QString(size, u'b')},
                 DateComponents{2999, 12, 31, 23, 59, number % 60}},
                Date::fromReferenceSeconds(number)};
    }

    static std::optional<Contents> start(const QString &folder) {
        const StoreDiagnostics diagnostics;
        const QString place = folderIn(folder);
        Contents found;
        Contents saved;
        {
            const auto file = File::open(place, Date());
            if (!file || !isSound(File::filesIn(place).file()))
                return std::nullopt;
            found = contentsOf(*file);
            file->put(request(1000, 10));
            if (!file->save(Date()))
                return std::nullopt;
            saved = contentsOf(*file);
        }
        const auto next = File::open(place, Date());
        return next && contentsOf(*next) == saved && StoreDiagnostics::lines().isEmpty()
                   ? std::optional(found)
                   : std::nullopt;
    }

    QTemporaryDir m_folder;
};

TEST_F(NotifierPowerCut, LeavesOneSaveAndEveryRequestThatWasAcknowledged) {
    PowerCuts cuts(m_folder.path().toStdString(), {});
    int number = 0;
    for (int run = 0; run < 4; ++run) {
        const auto file = File::open(folderIn(m_folder.path()), Date());
        ASSERT_TRUE(file);
        for (int save = 0; save < 12; ++save) {
            ++number;
            const auto added = request(number, number % 5 == 0 ? 9000 : 40);
            const QString removed =
                number % 4 == 0 ? request(number + 3, 0).request.identifier : QString();
            cuts.handOver(contentsAfter(*file, added, removed));
            file->put(added);
            if (!removed.isEmpty())
                file->remove(removed);
            ASSERT_TRUE(file->save(Date()));
            ASSERT_EQ(contentsOf(*file), cuts.lastHandedOver());
            cuts.acknowledge(Promise::Lasting);
        }
    }
    cuts.prove("notifier-power-cut", &start);
}

} // namespace
} // namespace tarne::test
