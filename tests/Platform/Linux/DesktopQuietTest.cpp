#include "DesktopQuiet.h"

#include "EventLoop.h"
#include "MemoryDefaults.h"
#include "PrivateBus.h"

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QTimer>

#include <gmock/gmock.h>

#include <gio/gio.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne::test {
namespace {

const QString name = u"org.freedesktop.Notifications"_s;
constexpr const char *schema = "org.gnome.desktop.notifications";
constexpr const char *banners = "show-banners";

/// The desktop's notification daemon, on a connection of its own.
class Daemon final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    Daemon(QDBusConnection bus, QStringList abilities, QString program)
        : m_bus(std::move(bus)), m_abilities(std::move(abilities)), m_program(std::move(program)) {
        EXPECT_TRUE(m_bus.registerObject(u"/org/freedesktop/Notifications"_s, this,
                                         QDBusConnection::ExportAllSlots));
        EXPECT_TRUE(m_bus.registerService(name));
    }
    ~Daemon() override {
        m_bus.unregisterService(name);
        m_bus.unregisterObject(u"/org/freedesktop/Notifications"_s);
    }
    Daemon(const Daemon &) = delete;
    Daemon &operator=(const Daemon &) = delete;

    QStringList calls;
    bool wasAskedWhoItIs = false;
    std::chrono::milliseconds delay = 0ms; ///< Of each answer.

public Q_SLOTS:
    QStringList GetCapabilities(const QDBusMessage &call) {
        answerLate(call, {m_abilities});
        return m_abilities;
    }
    QString GetServerInformation(const QDBusMessage &call, QString &vendor, QString &version,
                                 QString &specification) {
        wasAskedWhoItIs = true;
        vendor = version = specification = u"1"_s;
        answerLate(call, {m_program, vendor, version, specification});
        return m_program;
    }
    uint Inhibit(const QString &application, const QString &, const QVariantMap &,
                 const QDBusMessage &call) {
        calls += u"Inhibit "_s + application;
        answerLate(call, {++m_cookie});
        return m_cookie;
    }
    void UnInhibit(uint cookie) { calls += u"UnInhibit %1"_s.arg(cookie); }

private:
    void answerLate(const QDBusMessage &call, const QVariantList &answer) {
        if (delay == 0ms)
            return;
        call.setDelayedReply(true);
        QTimer::singleShot(delay, this,
                           [this, call, answer] { m_bus.send(call.createReply(answer)); });
    }

    QDBusConnection m_bus;
    QStringList m_abilities;
    QString m_program;
    uint m_cookie = 6;
};

const QString inhibited = u"Inhibit com.tarne.app"_s;

class AQuietDesktop : public testing::Test {
protected:
    void startDaemon(const QStringList &abilities, const QString &program) {
        m_daemon = std::make_unique<Daemon>(m_bus.connect(), abilities, program);
    }
    void startInhibitingDaemon() { startDaemon({u"body"_s, u"inhibitions"_s}, u"Plasma"_s); }
    void startGnome() { startDaemon({u"body"_s}, u"gnome-shell"_s); }

    void make() { m_quiet = std::make_unique<DesktopQuiet>(m_connection, m_defaults); }
    bool isPossible() {
        return serveUntil([&] { return m_quiet->isPossible(); });
    }
    /// Whether these are the calls that the daemon gets.
    bool getsCalls(const QStringList &calls) {
        return serveUntil([&] { return m_daemon->calls == calls; });
    }

    MemoryDefaults m_defaults;
    PrivateBus m_bus;
    QDBusConnection m_connection = m_bus.connect();
    std::unique_ptr<Daemon> m_daemon;
    std::unique_ptr<DesktopQuiet> m_quiet;
};

TEST_F(AQuietDesktop, IsMadeByTheDaemonsInhibitionAndUndoneByItsCookie) {
    startInhibitingDaemon();
    make();
    ASSERT_TRUE(isPossible());
    EXPECT_TRUE(m_daemon->calls.isEmpty()) << "not before it is wanted";
    m_quiet->setQuiet(true);
    ASSERT_TRUE(getsCalls({inhibited}));
    m_quiet->setQuiet(false);
    EXPECT_TRUE(getsCalls({inhibited, u"UnInhibit 7"_s}));
    m_quiet->setQuiet(true);
    m_quiet->setQuiet(true);
    m_quiet->setQuiet(false);
    EXPECT_TRUE(getsCalls({inhibited, u"UnInhibit 7"_s, inhibited, u"UnInhibit 8"_s}));
}

TEST_F(AQuietDesktop, ThatIsNotWantedAnyMoreBeforeTheAnswerIsUndoneByIt) {
    startInhibitingDaemon();
    make();
    ASSERT_TRUE(isPossible());
    m_quiet->setQuiet(true);
    m_quiet->setQuiet(false);
    EXPECT_TRUE(getsCalls({inhibited, u"UnInhibit 7"_s}));
}

TEST_F(AQuietDesktop, ThatIsAnsweredLateIsUndoneAllTheSame) {
    startInhibitingDaemon();
    make();
    ASSERT_TRUE(isPossible());
    m_daemon->delay = 2500ms;
    m_quiet->setQuiet(true);
    ASSERT_TRUE(getsCalls({inhibited}));
    EXPECT_FALSE(serveUntil([] { return false; }, 2300ms));
    m_quiet->setQuiet(false);
    EXPECT_TRUE(getsCalls({inhibited, u"UnInhibit 7"_s}));
}

TEST_F(AQuietDesktop, IsPossibleWithADaemonThatAnswersLate) {
    startInhibitingDaemon();
    m_daemon->delay = 2500ms;
    make();
    EXPECT_TRUE(isPossible());
}

TEST_F(AQuietDesktop, IsPossibleOnABusThatAnswersLate) {
    startInhibitingDaemon();
    m_bus.hang();
    make();
    EXPECT_FALSE(serveUntil([] { return false; }, 2500ms));
    m_bus.resume();
    EXPECT_TRUE(isPossible());
}

TEST_F(AQuietDesktop, ComesWithADaemonThatComesLaterAndWithItsSuccessor) {
    make();
    m_quiet->setQuiet(true);
    EXPECT_FALSE(m_quiet->isPossible());
    for (int round = 0; round < 2; ++round) {
        startInhibitingDaemon();
        EXPECT_TRUE(getsCalls({inhibited}));
        m_daemon.reset();
        EXPECT_TRUE(serveUntil([&] { return !m_quiet->isPossible(); }));
    }
}

TEST_F(AQuietDesktop, IsNotPossibleWhereTheDaemonHasNoWay) {
    startDaemon({u"body"_s}, u"dunst"_s);
    make();
    m_quiet->setQuiet(true);
    ASSERT_TRUE(serveUntil([&] { return m_daemon->wasAskedWhoItIs; }));
    // Its successor is asked behind that answer.
    m_daemon.reset();
    startInhibitingDaemon();
    EXPECT_TRUE(getsCalls({inhibited}));
}

TEST_F(AQuietDesktop, EndsWithItsObject) {
    startInhibitingDaemon();
    make();
    ASSERT_TRUE(isPossible());
    m_quiet->setQuiet(true);
    ASSERT_TRUE(getsCalls({inhibited}));
    // Its answer comes before that to a later call.
    const auto later = m_connection.asyncCall(QDBusMessage::createMethodCall(
        name, u"/org/freedesktop/Notifications"_s, name, u"GetCapabilities"_s));
    ASSERT_TRUE(serveUntil([&] { return later.isFinished(); }));
    QCoreApplication::processEvents();
    m_quiet.reset();
    EXPECT_TRUE(getsCalls({inhibited, u"UnInhibit 7"_s}));
}

class AQuietGnome : public AQuietDesktop {
protected:
    static void SetUpTestSuite() { qputenv("GSETTINGS_BACKEND", "memory"); }
    void SetUp() override {
        m_settings = g_settings_new(schema);
        g_settings_reset(m_settings, banners);
        startGnome();
    }
    void TearDown() override {
        m_quiet.reset();
        g_object_unref(m_settings);
    }

    bool showsBanners() { return g_settings_get_boolean(m_settings, banners); }
    bool isUntouched() {
        GVariant *const chosen = g_settings_get_user_value(m_settings, banners);
        if (chosen)
            g_variant_unref(chosen);
        return !chosen;
    }
    void hideBanners() {
        make();
        ASSERT_TRUE(isPossible());
        m_quiet->setQuiet(true);
        ASSERT_TRUE(serveUntil([&] { return !showsBanners(); }));
    }

    GSettings *m_settings = nullptr;
};

TEST_F(AQuietGnome, ShowsNoBannersAndThenAgain) {
    hideBanners();
    m_quiet->setQuiet(false);
    EXPECT_TRUE(showsBanners());
    EXPECT_TRUE(isUntouched());
    EXPECT_TRUE(m_defaults.values().isEmpty());
}

TEST_F(AQuietGnome, IsPossibleWhereItAnswersLate) {
    m_daemon->delay = 2500ms;
    make();
    EXPECT_TRUE(isPossible());
}

TEST_F(AQuietGnome, GetsBackWhatTheUserHadChosen) {
    g_settings_set_boolean(m_settings, banners, TRUE);
    hideBanners();
    m_quiet.reset();
    EXPECT_TRUE(showsBanners());
    EXPECT_FALSE(isUntouched());
}

TEST_F(AQuietGnome, IsRememberedBeforeItIsMade) {
    make();
    ASSERT_TRUE(isPossible());
    m_quiet->setQuiet(true);
    EXPECT_FALSE(m_defaults.values().isEmpty());
    EXPECT_TRUE(showsBanners()) << "the store has had no time to reach the disk";
}

TEST_F(AQuietGnome, IsUndoneByTheNextRunWhereOneWasKilled) {
    hideBanners();
    const MemoryDefaults left = m_defaults;
    m_quiet.reset();
    g_settings_set_boolean(m_settings, banners, FALSE);
    MemoryDefaults found = left;
    const DesktopQuiet next(noBus(), found);
    EXPECT_TRUE(showsBanners());
    EXPECT_TRUE(found.values().isEmpty());
}

TEST_F(AQuietGnome, IsTheUsersOwnWhereBannersAreOffAnyway) {
    g_settings_set_boolean(m_settings, banners, FALSE);
    make();
    ASSERT_TRUE(isPossible());
    m_quiet->setQuiet(true);
    EXPECT_TRUE(m_defaults.values().isEmpty());
    m_quiet->setQuiet(false);
    EXPECT_FALSE(showsBanners());
}

} // namespace
} // namespace tarne::test

#include "DesktopQuietTest.moc"
