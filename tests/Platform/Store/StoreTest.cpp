#include "StoreTest.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QTimer>

#include <mutex>

using namespace Qt::StringLiterals;

namespace tarne::test {

namespace {

std::mutex linesMutex;
QStringList collectedLines;
QtMessageHandler previousHandler = nullptr;

void collect(QtMsgType type, const QMessageLogContext &context, const QString &text) {
    if (type != QtWarningMsg || QByteArrayView(context.category) != "tarne.store") {
        previousHandler(type, context, text);
        return;
    }
    const std::lock_guard lock(linesMutex);
    collectedLines += text;
}

} // namespace

StoreDiagnostics::StoreDiagnostics() {
    collectedLines.clear();
    previousHandler = qInstallMessageHandler(collect);
}

StoreDiagnostics::~StoreDiagnostics() {
    qInstallMessageHandler(previousHandler);
}

QStringList StoreDiagnostics::lines() {
    const std::lock_guard lock(linesMutex);
    return collectedLines;
}

bool eventually(const std::function<bool()> &condition) {
    const QDeadlineTimer deadline(20'000);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QEventLoop pause;
        QTimer::singleShot(2, &pause, &QEventLoop::quit);
        pause.exec();
    }
    return true;
}

StoreTest::StoreTest() {
    EXPECT_TRUE(m_directory.isValid());
}

StoredUserDefaults &StoreTest::open() {
    return m_store.emplace(
        folder(),
        StoredUserDefaults::Keys{.restored = {preferencesKey, historyKey, goalsKey},
                                 .passing = {passingKey}},
        time, time, std::chrono::milliseconds(20));
}

StoredUserDefaults &StoreTest::reopen() {
    close();
    return open();
}

std::string StoreTest::read(const std::string &query) const {
    const SQLite::Database database(file().toStdString(), SQLite::OPEN_READONLY, 1000);
    SQLite::Statement statement(database, query);
    return statement.executeStep() ? statement.getColumn(0).getString() : std::string();
}

void StoreTest::execute(const std::string &statements) const {
    SQLite::Database(file().toStdString(), SQLite::OPEN_READWRITE, 1000).exec(statements);
}

std::string StoreTest::stored(const QString &name) const {
    return read("SELECT value FROM defaults WHERE key = '" + name.toStdString() + "'");
}

bool StoreTest::comesToHold(const QString &name, const std::string &value) const {
    return eventually([&] { return stored(name) == value; });
}

QStringList StoreTest::filesIn(const QString &path) const {
    return QDir(path).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

QStringList StoreTest::damagedFiles() const {
    return QDir(folder()).entryList({u"defaults.damaged-*.sqlite"_s}, QDir::Files, QDir::Name);
}

QByteArray StoreTest::bytesOf(const QString &path) const {
    QFile opened(path);
    EXPECT_TRUE(opened.open(QIODevice::ReadOnly)) << qPrintable(path);
    return opened.readAll();
}

void StoreTest::overwrite(const QString &path, qint64 offset, const QByteArray &bytes) const {
    QFile opened(path);
    ASSERT_TRUE(opened.open(QIODevice::ReadWrite));
    ASSERT_TRUE(opened.seek(offset));
    ASSERT_EQ(opened.write(bytes), bytes.size());
}

void StoreTest::corrupt(const QByteArray &bytes, const QByteArray &by) const {
    const QByteArray content = bytesOf(file());
    ASSERT_EQ(content.count(bytes), 1);
    ASSERT_EQ(bytes.size(), by.size());
    overwrite(file(), content.indexOf(bytes), by);
}

} // namespace tarne::test
