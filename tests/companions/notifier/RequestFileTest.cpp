#include "NotifierFixture.h"
#include "RequestText.h"

#include <SQLiteCpp/Database.h>

#include <QDir>
#include <QFile>

#include <csignal>

#include <sys/resource.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using notifier::pendingOf;
using notifier::textOf;
using testing::ElementsAre;
using testing::IsEmpty;

NotificationSchedule::Pending pending(const QString &identifier,
                                      std::optional<DateComponents> trigger) {
    return {{identifier, {u"Title 🎉"_s, u"a \"body\" <b>\n"_s}, trigger},
            Date::fromReferenceSeconds(794'138'400.123456789)};
}

TEST(TheTextOfARequest, ReadsBackAsTheSameRequest) {
    for (const auto &one :
         {pending(u"a"_s, DateComponents{2026, 3, 2, 11, 30, 15}), pending(u"b"_s, std::nullopt)})
        EXPECT_EQ(pendingOf(textOf(one)), one);
}

TEST(TheTextOfARequest, IsAFormThatLaterVersionsRead) {
    EXPECT_EQ(textOf({{u"id"_s, {u"T"_s, u"B"_s}, DateComponents{2026, 3, 2, 11, 30, 0}},
                      Date::fromReferenceSeconds(0.5)}),
              R"({"added":0.5,"body":"B","components":{"day":2,"hour":11,"minute":30,"month":3,)"
              R"("second":0,"year":2026},"identifier":"id","title":"T"})");
}

TEST(TheTextOfARequest, OfAnyOtherFormIsNone) {
    const QByteArray whole = textOf(pending(u"a"_s, DateComponents{2026, 3, 2, 11, 30, 15}));
    for (const QByteArray &text :
         {QByteArray(), QByteArray("{}"), QByteArray("[]"), whole + ' ', whole.chopped(1),
          QByteArray(whole).replace("2026", "99999"), QByteArray(whole).replace("\"month\":3", ""),
          QByteArray(whole).replace("\"day\":2", "\"day\":31,\"month\":2"),
          QByteArray(whole).replace("\"hour\":11", "\"hour\":\"11\""),
          QByteArray(whole).replace("\"hour\":11", "\"hour\":24"),
          QByteArray(whole).replace("\"hour\":11", "\"hour\":11.5"),
          QByteArray(whole).replace("\"title\"", "\"headline\"")})
        EXPECT_EQ(pendingOf(text), std::nullopt) << text.constData();
}

class TheRequestFile : public NotifierTest {
protected:
    /// What another program does to the file.
    void execute(const char *statements) {
        SQLite::Database(filePath().toStdString(), SQLite::OPEN_READWRITE).exec(statements);
    }
    QStringList files() const { return QDir(folder()).entryList(QDir::Files); }
};

TEST_F(TheRequestFile, CanBeReadByItsUserAlone) {
    add(u"a"_s, at(3, 2, 11));
    for (const QString &path : {folder(), filePath(), filePath() + u"-wal"_s}) {
        struct stat status {};
        ASSERT_EQ(::stat(qPrintable(path), &status), 0) << qPrintable(path);
        EXPECT_EQ(status.st_mode & 077, 0u) << qPrintable(path);
    }
}

TEST_F(TheRequestFile, ThatIsDamagedIsSetAsideAndNothingOfItIsShown) {
    startDaemon();
    add(u"a"_s, at(3, 2, 11), u"the body of it"_s);
    end();
    QFile file(filePath());
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    const qsizetype place = file.readAll().indexOf("the body");
    ASSERT_GT(place, 0);
    file.seek(place);
    file.write("THE");
    file.close();
    {
        const ExpectedWarning warning(u"the file of pending notifications is damaged"_s);
        start();
    }
    arriveAt(at(3, 2, 12));
    EXPECT_THAT(shown(), IsEmpty());
    EXPECT_THAT(files(), testing::Contains(u"requests.damaged-20260302-100000.sqlite"_s));
    add(u"b"_s, at(3, 2, 13));
    start();
    EXPECT_THAT(subject().pending(), ElementsAre(u"b"_s));
}

TEST_F(TheRequestFile, ThatIsNoDatabaseIsSetAside) {
    add(u"a"_s, at(3, 2, 11));
    end();
    QFile file(filePath());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("this is no database at all, and it is long enough for nobody to think so");
    file.close();
    const ExpectedWarning warning(u"is damaged"_s);
    start();
    EXPECT_THAT(subject().pending(), IsEmpty());
}

TEST_F(TheRequestFile, OfANewerVersionIsLeftAlone) {
    add(u"a"_s, at(3, 2, 11));
    end();
    execute("PRAGMA user_version = 2");
    const ExpectedWarning warning(u"from a newer version"_s);
    EXPECT_EQ(notifier::RequestFile::open(folder(), m_clock.moment), nullptr);
    EXPECT_EQ(SQLite::Database(filePath().toStdString())
                  .execAndGet("SELECT count(*) FROM defaults")
                  .getInt(),
              1);
}

TEST_F(TheRequestFile, IsNotBelievedWhereAnotherHandHasWrittenNoRequest) {
    startDaemon();
    add(u"a"_s, at(3, 2, 11));
    end();
    execute("UPDATE defaults SET key = 'b'"); // Its text tells another identifier.
    const ExpectedWarning warning(u"ignoring b"_s);
    start();
    arriveAt(at(3, 2, 12));
    EXPECT_THAT(shown(), IsEmpty());
}

TEST_F(TheRequestFile, WhereNoFileCanBeMadeCostsTheSaveAndNothingElse) {
    startDaemon();
    QFile inTheWay(folder());
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    const ExpectedWarning warning(u"cannot be saved now"_s);
    add(u"a"_s, at(3, 2, 11));
    EXPECT_THAT(subject().pending(), ElementsAre(u"a"_s));
    arriveAt(at(3, 2, 11));
    EXPECT_EQ(notification().at(3).toString(), u"a"_s);
    EXPECT_TRUE(serveUntil([&] { return subject().pending().isEmpty(); }));
}

TEST_F(TheRequestFile, OnAFullDiskCostsTheSaveUntilThereIsRoom) {
    add(u"first"_s, at(3, 2, 11));
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    {
        const ExpectedWarning warning(u"cannot be saved now"_s);
        const rlimit full{0, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &full);
        add(u"second"_s, at(3, 2, 12));
        EXPECT_THAT(subject().pending(), ElementsAre(u"first"_s, u"second"_s));
        setrlimit(RLIMIT_FSIZE, &before);
    }
    subject().review();
    EXPECT_THAT(stored(), ElementsAre(u"first"_s, u"second"_s));
}

} // namespace
} // namespace tarne::test
