#include "DefaultsLock.h"

#include "TestMain.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using Holder = ProgramLock::Holder;
using test::ExpectedWarning;

/// Another program that locks the first bytes of the store's lock and says so. It ends after a
/// time, or when it is killed.
class LockHolder {
public:
    LockHolder(const QString &file, int bytes, double seconds) {
        QDir().mkpath(QFileInfo(file).path());
        m_process.start(u"/usr/bin/python3"_s, {u"-c"_s, QString::fromLatin1(script), file,
                                                QString::number(bytes), QString::number(seconds)});
        EXPECT_TRUE(m_process.waitForReadyRead(20'000));
    }
    ~LockHolder() { kill(); }
    LockHolder(const LockHolder &) = delete;
    LockHolder &operator=(const LockHolder &) = delete;

    void kill() {
        m_process.kill();
        m_process.waitForFinished(20'000);
    }

private:
    static constexpr auto script = R"(
import fcntl, struct, sys, time
F_OFD_SETLK = 37
file = open(sys.argv[1], "w")
fcntl.fcntl(file, F_OFD_SETLK, struct.pack("hhqqi4x", fcntl.F_WRLCK, 0, 0, int(sys.argv[2]), 0))
print("held", flush=True)
time.sleep(float(sys.argv[3]))
)";

    QProcess m_process;
};

class ADefaultsLock : public testing::Test {
protected:
    QString folder() const { return m_data.filePath(u"com.tarne.app"_s); }
    QString file() const { return folder() + u"/defaults.lock"_s; }

    Holder takeAnother() { return DefaultsLock(folder()).take(); }

    QTemporaryDir m_data;
};

TEST_F(ADefaultsLock, IsHeldByOneUntilItsEnd) {
    {
        DefaultsLock lock(folder());
        EXPECT_EQ(lock.take(), Holder::Us);
        EXPECT_EQ(takeAnother(), Holder::Another);
    }
    EXPECT_EQ(takeAnother(), Holder::Us);
}

TEST_F(ADefaultsLock, TellsTheOthersWhereItsHolderCanBeAsked) {
    DefaultsLock lock(folder());
    ASSERT_EQ(lock.take(), Holder::Us);
    lock.setAddress(u"unix:path=/run/a/long/one"_s);
    lock.setAddress(u"unix:path=/run/bus"_s);
    DefaultsLock other(folder());
    EXPECT_EQ(other.take(), Holder::Another);
    EXPECT_EQ(other.address(), u"unix:path=/run/bus"_s);
}

TEST_F(ADefaultsLock, TellsTheOthersThatItsHolderIsAboutToEnd) {
    DefaultsLock lock(folder());
    ASSERT_EQ(lock.take(), Holder::Us);
    lock.beginEnding();
    EXPECT_EQ(takeAnother(), Holder::AnotherEnding);
}

TEST_F(ADefaultsLock, KeepsToItsUser) {
    (void)takeAnother();
    const auto permissions = [](const QString &path) { return QFileInfo(path).permissions(); };
    const auto privateFile =
        QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
    EXPECT_EQ(permissions(file()), privateFile);
    EXPECT_EQ(permissions(folder()), privateFile | QFile::ExeOwner | QFile::ExeUser);
}

TEST_F(ADefaultsLock, DoesNotFollowALinkThatSomebodyLaid) {
    const ExpectedWarning warning(u"no lock against a second program"_s);
    QDir().mkpath(folder());
    const QString target = m_data.filePath(u"precious"_s);
    QFile::link(target, file());
    EXPECT_EQ(takeAnother(), Holder::Us);
    EXPECT_FALSE(QFile::exists(target));
}

TEST_F(ADefaultsLock, IsDoneWithoutWhereTheDiskAllowsNone) {
    const ExpectedWarning warning(u"no lock against a second program"_s);
    QDir().mkpath(file()); // A folder in its place.
    DefaultsLock lock(folder());
    EXPECT_EQ(lock.take(), Holder::Us);
    lock.setAddress(u"unix:path=/run/bus"_s);
    EXPECT_EQ(lock.address(), QString());
    lock.beginEnding();
}

TEST_F(ADefaultsLock, ComesBackWithTheDeathOfItsHolder) {
    LockHolder other(file(), 2, 1000);
    EXPECT_EQ(takeAnother(), Holder::Another);
    other.kill();
    EXPECT_EQ(takeAnother(), Holder::Us);
}

TEST_F(ADefaultsLock, KnowsAnotherProgramThatIsAboutToEnd) {
    const LockHolder ending(file(), 1, 1000);
    EXPECT_EQ(takeAnother(), Holder::AnotherEnding);
}

TEST_F(ADefaultsLock, IsNotLeftToTheHoldersChildren) {
    QProcess child;
    {
        DefaultsLock lock(folder());
        ASSERT_EQ(lock.take(), Holder::Us);
        child.start(u"/bin/sleep"_s, {u"1000"_s});
        ASSERT_TRUE(child.waitForStarted());
    }
    EXPECT_EQ(takeAnother(), Holder::Us);
    child.kill();
    child.waitForFinished();
}

} // namespace
} // namespace tarne::test
