// Every call of the system that the store and the notifier's file make is made to fail, one after
// the other, alone and for ever, until a run meets no fault. TARNE_PROOF=long makes every error
// take its turn, TARNE_ONE_FAULT="killed: pwrite64 ENOSPC at 7" plays one run again.

#include "FaultStages.h"
#include "FaultValues.h"
#include "FaultyRun.h"
#include "FixedClock.h"
#include "ManualTime.h"
#include "Proof.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using Stage = FaultStages::Stage;

/// Above what any run makes of one call.
constexpr int mostCalls = 400;

struct CallAndErrors {
    QByteArray call;
    QList<QByteArray> errors; ///< The first ones are those of the short form.
    bool isMadeByAll = false; ///< By every run that meets no fault.
};

const QList<CallAndErrors> failures{
    {"pwrite64", {"ENOSPC", "EIO"}, true},
    {"fdatasync", {"EIO", "ENOSPC"}, true},
    {"fsync", {"EIO", "ENOSPC"}},
    {"openat", {"EMFILE", "EACCES", "EIO", "ENOSPC"}, true},
    {"ftruncate", {"EIO", "ENOSPC"}},
    {"rename", {"EIO", "ENOSPC", "EACCES"}},
    {"renameat2", {"EIO", "ENOSPC", "EACCES"}},
    {"link", {"EIO", "EACCES"}},
    {"unlink", {"EIO", "EACCES"}},
    {"mkdir", {"ENOSPC", "EACCES"}},
};

/// The one run that is to be played again; empty for all of them.
QByteArray oneFault() {
    return qgetenv("TARNE_ONE_FAULT");
}

/// What the reader of another process sees; 0 while it sees nothing.
qint64 visibleNumber(const QString &folder) {
    try {
        const SQLite::Database reader((folder + u"/defaults.sqlite"_s).toStdString(),
                                      SQLite::OPEN_READONLY, 100);
        SQLite::Statement query(reader, "SELECT value FROM defaults WHERE key = 'LastUpdate'");
        return query.executeStep() ? static_cast<qint64>(query.getColumn(0).getDouble()) : 0;
    } catch (const SQLite::Exception &) {
        return 0;
    }
}

bool isWhole(const QString &database) {
    const SQLite::Database reader(database.toStdString(), SQLite::OPEN_READONLY, 100);
    SQLite::Statement check(reader, "PRAGMA integrity_check");
    return check.executeStep() && check.getColumn(0).getString() == "ok";
}

QStringList diagnostics;

void collectDiagnostic(QtMsgType type, const QMessageLogContext &, const QString &text) {
    if (type == QtWarningMsg)
        diagnostics += text;
}

class FaultLoop : public testing::Test {
public:
    FaultLoop() : m_previousHandler(qInstallMessageHandler(collectDiagnostic)) {}
    ~FaultLoop() override { qInstallMessageHandler(m_previousHandler); }

    using Play = void (FaultLoop::*)(Stage stage, const Fault &fault);

    /// Until a run meets no fault, for each call, error and way to fail.
    void loop(Stage stage, Play play) {
        for (const auto &[call, errors, isMadeByAll] : failures) {
            const int before = m_faults;
            for (const QByteArray &error : isLongProof() ? errors : errors.mid(0, 1)) {
                for (const bool isLasting : {false, true})
                    loop(stage, play, {call, error, 1, isLasting});
            }
            const bool hasFailed = m_faults > before || !oneFault().isEmpty();
            EXPECT_TRUE(hasFailed || !isMadeByAll) << "no call failed: " << call.constData();
        }
    }

    void playStore(Stage stage, const Fault &fault) {
        const QString folder = m_stages.make(stage);
        FaultyRun run(u"store"_s, folder, FaultStages::filesOf(folder), preparedNumber, fault);
        qint64 acknowledged =
            stage == Stage::Absent || stage == Stage::Damaged ? 0 : preparedNumber;
        for (qint64 number = preparedNumber + 1; number <= preparedNumber + 4; ++number) {
            const auto isSet = [&] { return run.told("set").contains(QByteArray::number(number)); };
            ASSERT_TRUE(run.goesOnUntil(isSet)) << run.errors().constData();
            const auto isSaved = [&] { return visibleNumber(folder) == number; };
            const auto isToldOff = [&] {
                return run.isGivenUp() || (fault.isLasting && run.isRefused());
            };
            EXPECT_TRUE(run.goesOnUntil([&] { return isToldOff() || isSaved(); }))
                << number << " is neither saved nor told of: " << run.errors().constData();
            if (isSaved())
                acknowledged = number;
            run.ask();
        }
        ASSERT_TRUE(run.endsWell()) << run.errors().constData();
        count(run);
        expectFoundOrTold(run, stage);
        if (!run.isRefused() && !run.isGivenUp())
            acknowledged = preparedNumber + 4;
        expectStoreHolds(folder, acknowledged, stage);
    }

    void playRequests(Stage stage, const Fault &fault) {
        const QString folder = m_stages.make(stage);
        FaultyRun run(u"requests"_s, folder, FaultStages::filesOf(folder), preparedNumber, fault);
        ASSERT_TRUE(run.endsWell(EXIT_FAILURE)) << run.errors().constData();
        count(run);
        expectFoundOrTold(run, stage);
        const auto saved = run.told("saved");
        if (!run.told("closed").isEmpty() && !fault.isLasting) {
            EXPECT_EQ(saved.size(), 4) << run.errors().constData();
        }
        const qint64 acknowledged = saved.isEmpty() ? preparedNumber : saved.last().toLongLong();
        diagnostics.clear();
        const Date now = FixedClock().moment;
        const auto file = notifier::RequestFile::open(folder, now);
        ASSERT_TRUE(file) << qPrintable(diagnostics.join(u'\n'));
        EXPECT_GE(numberOfRequests(file->requests()), acknowledged);
        EXPECT_LE(numberOfRequests(file->requests()), preparedNumber + 4);
        EXPECT_EQ(diagnostics, QStringList());
        putRequests(*file, 2'000, now);
        EXPECT_TRUE(file->save(now));
    }

    void printProof(const char *name, const char *what) const {
        std::printf(
            "proof: %s: %d runs with %d failed calls, %s, %d runs that said they would save "
            "nothing (no seed)\n",
            name, m_runs, m_faults, HasFailure() ? "BROKEN" : what, m_givenUp);
    }

private:
    void loop(Stage stage, Play play, Fault fault) {
        const QByteArray only = oneFault();
        for (; fault.first <= mostCalls; ++fault.first) {
            const QByteArray description = FaultStages::nameOf(stage) + ": " + fault.description();
            if (!only.isEmpty() && only != description)
                continue;
            SCOPED_TRACE(description.constData());
            m_lastMet = 0;
            (this->*play)(stage, fault);
            if (m_lastMet == 0 || HasFatalFailure())
                return;
        }
        if (!only.isEmpty())
            return;
        ADD_FAILURE() << "there is no end of " << fault.description().constData();
    }

    void count(const FaultyRun &run) {
        m_lastMet = run.faultsMet();
        EXPECT_GE(m_lastMet, 0);
        m_faults += m_lastMet;
        m_givenUp += run.isGivenUp() ? 1 : 0;
        ++m_runs;
    }

    /// Nothing is served that is not true: what could not be read was told.
    static void expectFoundOrTold(const FaultyRun &run, Stage stage) {
        const auto found = run.told("found").value(0);
        const bool isAbsent = stage == Stage::Absent;
        const QByteArray prepared = QByteArray::number(preparedNumber);
        const QByteArray expected = isAbsent ? "0 0"
                                    : stage == Stage::Damaged
                                        ? "0 " + QByteArray::number(copiedNumber)
                                    : stage == Stage::Requests ? prepared + " 0"
                                                               : prepared + ' ' + prepared;
        const bool isTold = run.isGivenUp() || run.errors().contains("no good copy");
        EXPECT_TRUE(found == expected || isTold)
            << found.constData() << ": " << run.errors().constData();
    }

    /// Opens it as the next start does, without faults.
    void expectStoreHolds(const QString &folder, qint64 acknowledged, Stage stage) const {
        diagnostics.clear();
        {
            ManualTime time;
            StoredUserDefaults store(folder, faultStoreKeys(), time, time);
            const auto passing = static_cast<qint64>(store.doubleForKey(passingKey));
            const auto number = static_cast<qint64>(store.doubleForKey(numberKey));
            EXPECT_GE(passing, acknowledged);
            EXPECT_LE(passing, preparedNumber + 4);
            const bool isOfPassing = passing == preparedNumber + momentOfPassing;
            if (passing != 0) {
                EXPECT_EQ(number, isOfPassing ? passing - 1 : passing);
                EXPECT_EQ(numberOfHistory(store.dataForKey(historyKey).value_or(QByteArray())),
                          number);
                EXPECT_EQ(store.boolForKey(oddKey), number % 2 == 1);
            }
            store.setObject(numberKey, 2'000.0);
        }
        ManualTime time;
        const StoredUserDefaults store(folder, faultStoreKeys(), time, time);
        EXPECT_EQ(store.doubleForKey(numberKey), 2'000.0);
        EXPECT_TRUE(isWhole(folder + u"/defaults.sqlite"_s));
        expectPrivate(folder);
        expectCopiesWhole(folder);
        if (stage == Stage::Damaged)
            expectDamagedFileKept(folder);
        else
            EXPECT_EQ(diagnostics, QStringList());
    }

    static void expectCopiesWhole(const QString &folder) {
        QDirIterator copies(folder + u"/copies"_s, {u"defaults-*.sqlite"_s}, QDir::Files);
        while (copies.hasNext()) {
            const auto values = SQLiteFile(copies.next(), SQLiteFile::Access::Immutable).load();
            const auto history = std::get<QByteArray>(values.value(historyKey));
            EXPECT_GE(numberOfHistory(history), copiedNumber) << qPrintable(copies.fileName());
        }
    }

    static void expectPrivate(const QString &folder) {
        constexpr auto others = QFileDevice::ReadGroup | QFileDevice::WriteGroup |
                                QFileDevice::ReadOther | QFileDevice::WriteOther;
        QDirIterator files(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (files.hasNext())
            EXPECT_FALSE(QFile::permissions(files.next()) & others) << qPrintable(files.fileName());
    }

    /// And nothing else was set aside.
    void expectDamagedFileKept(const QString &folder) const {
        const auto names = QDir(folder).entryList({u"defaults.damaged-*.sqlite"_s});
        EXPECT_EQ(names.size(), 1) << qPrintable(names.join(u' '));
        const QString name = names.value(0);
        QFile aside(folder + u'/' + name);
        ASSERT_TRUE(!name.isEmpty() && aside.open(QIODevice::ReadOnly));
        EXPECT_TRUE(aside.readAll() == m_stages.damagedBytes()) << qPrintable(name);
    }

    FaultStages m_stages;
    QtMessageHandler m_previousHandler;
    int m_runs = 0;
    int m_faults = 0;
    int m_givenUp = 0;
    int m_lastMet = 0;
};

TEST_F(FaultLoop, OfTheStoreLosesNothingThatWasAcknowledgedAndGoesOn) {
    for (const Stage stage : {Stage::Absent, Stage::Whole, Stage::Killed, Stage::Damaged})
        loop(stage, &FaultLoop::playStore);
    printProof("store-fault-loops", "0 crashes, 0 acknowledged values lost");
}

TEST_F(FaultLoop, OfTheNotifiersFileLosesNoRequestThatWasAcknowledgedAndGoesOn) {
    loop(Stage::Requests, &FaultLoop::playRequests);
    printProof("notifier-fault-loops", "0 crashes, 0 acknowledged requests lost");
}

} // namespace
} // namespace tarne::test
