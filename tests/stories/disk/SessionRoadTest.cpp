// The road of a session from the typed line through the real store into the history.

#include "ManualTime.h"
#include "RecordingLog.h"
#include "RecordingPlatform.h"
#include "SessionViewModel.h"
#include "StoredKeys.h"
#include "StoredUserDefaults.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimeZone>

#include <gtest/gtest.h>

#include <optional>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

/// A controller over a store on the disk; both end and begin anew together, as the program does.
class SessionOnDisk : public testing::Test {
protected:
    SessionOnDisk() {
        EXPECT_TRUE(m_data.isValid());
        launch();
    }

    void launch() {
        m_store.emplace(m_data.filePath(u"com.tarne.app"_s), StoredUserDefaults::Keys{}, time,
                        time);
        m_controller.emplace(
            SessionPlatform{.clock = time,
                            .runLoop = time,
                            .log = log,
                            .defaults = *m_store,
                            .notificationCenter = m_center,
                            .userNotifications = m_userNotifications,
                            .backgroundActivities = m_activities,
                            .haptics = m_haptics,
                            .calendar = [] { return Calendar(QTimeZone::utc(), QLocale::c()); }});
    }

    void relaunch() {
        m_controller.reset();
        m_store.reset();
        launch();
    }

    void pass(double seconds) { time.advance(RunLoop::Seconds(seconds)); }

    SessionViewModel &controller() { return *m_controller; }
    UserDefaults &store() { return *m_store; }
    QString dataHome() const { return m_data.path(); }

    test::ManualTime time;
    test::RecordingLog log;

private:
    QTemporaryDir m_data;
    NotificationCenter m_center;
    test::RecordingUserNotifications m_userNotifications;
    test::RecordingBackgroundActivities m_activities;
    test::CountingHaptics m_haptics;
    std::optional<StoredUserDefaults> m_store;
    std::optional<SessionViewModel> m_controller;
};

struct OddLine {
    const char *name;
    QString line;
    QStringList goals;
};

class SessionRoad : public SessionOnDisk, public testing::WithParamInterface<OddLine> {
protected:
    static void expectGoals(const std::vector<SessionGoal> &goals) {
        QStringList texts;
        for (const SessionGoal &goal : goals)
            texts += goal.text;
        EXPECT_TRUE(texts == GetParam().goals);
    }

    bool logged(const QString &line) const { return log.lines().contains(line); }
};

TEST_P(SessionRoad, LeadsAnyLineIntoTheHistoryUnchanged) {
    const auto &[name, line, goals] = GetParam();
    const QString shown = goals.join(u", "_s);
    controller().startSession(controller().createSession(line, 300));
    pass(2);
    EXPECT_TRUE(logged(u"📱 Starting new session: "_s + line));
    EXPECT_TRUE(store().stringForKey(keys::timerSessionGoal) == line);
    EXPECT_TRUE(store().stringForKey(keys::sessionGoals) == shown);

    relaunch();
    ASSERT_TRUE(controller().currentSession());
    EXPECT_TRUE(controller().currentSession()->goal == line);
    expectGoals(controller().currentSession()->goals);
    EXPECT_TRUE(controller().loadLastGoal() == line);
    EXPECT_TRUE(store().stringForKey(keys::sessionGoals) == shown) << "published again";

    time.setWallClock(time.now() + 300);
    pass(1);
    EXPECT_TRUE(controller().isTimerComplete());
    EXPECT_TRUE(logged(u"📱 Added new session to history: "_s + line));
    controller().endSession(std::nullopt, true);

    relaunch();
    EXPECT_FALSE(controller().currentSession());
    const auto history = controller().loadSessionHistory();
    ASSERT_EQ(history.size(), 1u);
    expectGoals(history[0].goals);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, SessionRoad,
    testing::Values(
        OddLine{"OneGoalOfAMegabyte", QString(1'000'000, u'x'), {QString(1'000'000, u'x')}},
        OddLine{"ManyGoalsOfAMegabyte", u"report,"_s.repeated(150'000),
                QStringList(150'000, u"report"_s)},
        OddLine{"RightToLeftAndEmoji",
                u"כתיבת דוח 📄, مراجعة 👩‍💻, e\u0301"_s,
                {u"כתיבת דוח 📄"_s, u"مراجعة 👩‍💻"_s, u"e\u0301"_s}},
        OddLine{"NewlinesInside", u"one\ntwo, \u2028three\r\n"_s, {u"one\ntwo"_s, u"three"_s}}),
    [](const auto &test) { return std::string(test.param.name); });

class LargeDocuments : public SessionOnDisk {
protected:
    const QString text = QString(50'000'000, u'x');
};

TEST_F(LargeDocuments, PreferencesOf50MegabytesAreSavedAndLoaded) {
    UserPreferences preferences;
    preferences.lastReflection = text;
    preferences.defaultDuration = 600.0;
    controller().updatePreferences(preferences);
    relaunch();
    EXPECT_EQ(controller().userPreferences().defaultDuration, 600.0);
    EXPECT_TRUE(controller().loadLastReflection() == text);
}

TEST_F(LargeDocuments, AHistoryOf50MegabytesIsSavedAndLoadedAndGrows) {
    controller().saveSessionHistory({{.sessionDate = time.now() - 86400.0,
                                      .goals = {},
                                      .duration = 60.0,
                                      .overallAssessment = text}});
    relaunch();
    controller().startSession(controller().createSession(u"Review"_s, 300));
    pass(300);
    relaunch();
    const auto history = controller().loadSessionHistory();
    ASSERT_EQ(history.size(), 2u);
    EXPECT_TRUE(history[0].overallAssessment == text);
    EXPECT_EQ(history[1].goals.at(0).text, u"Review"_s);
}

class TheExampleThatPrintsTheHistory : public SessionOnDisk {
protected:
    QJsonArray printed() const {
        QProcess reader;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"XDG_DATA_HOME"_s, dataHome());
        environment.insert(u"TZ"_s, u"UTC"_s);
        reader.setProcessEnvironment(environment);
        reader.start(QStringLiteral(TARNE_HISTORY_READER), {u"json"_s});
        EXPECT_TRUE(reader.waitForFinished(20'000));
        EXPECT_EQ(reader.exitCode(), 0) << reader.readAllStandardError().constData();
        return QJsonDocument::fromJson(reader.readAllStandardOutput()).array();
    }
};

TEST_F(TheExampleThatPrintsTheHistory, ReadsWhatIsStoredWhileTheStoreIsOpen) {
    const QString text = u"\"one\"\ntwo \u2028 e\u0301 👩‍💻 \u0001"_s;
    controller().saveSessionHistory(
        {{.sessionDate = Date::fromReferenceSeconds(1.0),
          .goals = {{.text = text, .status = GoalStatus::partiallyCompleted}, {.text = u"b"_s}},
          .duration = 300.5,
          .overallAssessment = u"o"_s,
          .patternsObserved = u"p"_s,
          .suggestions = u"s"_s,
          .motivation = u"m"_s,
          .reflection = text}});
    // What is written is on the disk, and the store is open again.
    relaunch();
    const QString id = controller().loadSessionHistory().at(0).id.toString(QUuid::WithoutBraces);
    const QJsonObject rated{{u"text"_s, text}, {u"status"_s, u"partially_completed"_s}};
    const QJsonObject unrated{{u"text"_s, u"b"_s}, {u"status"_s, QJsonValue()}};
    EXPECT_EQ(printed(), (QJsonArray{QJsonObject{{u"id"_s, id.toUpper()},
                                                 {u"date"_s, u"2001-01-01T00:00:01+00:00"_s},
                                                 {u"duration"_s, 300.5},
                                                 {u"goals"_s, QJsonArray{rated, unrated}},
                                                 {u"overallAssessment"_s, u"o"_s},
                                                 {u"patternsObserved"_s, u"p"_s},
                                                 {u"suggestions"_s, u"s"_s},
                                                 {u"motivation"_s, u"m"_s},
                                                 {u"reflection"_s, text}}}));
}

} // namespace
} // namespace tarne::test
