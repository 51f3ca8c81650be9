#include "HeatmapGrid.h"
#include "HistoryView.h"
#include "InsightsView.h"
#include "ManualTime.h"
#include "RecordingLog.h"
#include "RecordingPlatform.h"
#include "SessionViewModel.h"
#include "StoredUserDefaults.h"
#include "TextLook.h"
#include "UiDriver.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

// Both screens as a user of some country sees them on Wednesday, 2026-04-08, at three in the
// afternoon, a launch after the sessions were stored. Time alone is the test's.

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

/// What a user reads, written down by hand.
struct Tongue {
    QString locale;
    QString january, march, april, july, september, october;
    QString sunday, monday;
    QString midnight, one; ///< Short times.
    char16_t zero;         ///< The first of the ten digits.
    bool weeksBeginOnMonday = false;

    [[nodiscard]] QString number(int value) const {
        QString digits = QString::number(value);
        for (QChar &digit : digits)
            digit = QChar(char16_t(zero + digit.digitValue()));
        return digits;
    }
    [[nodiscard]] QString dayAndMonth(const QDate &day) const {
        const QString month = day.month() == 3 ? march : day.month() == 4 ? april : september;
        return month + u' ' + number(day.day());
    }
    /// A day before this week.
    [[nodiscard]] QString label(const QDate &day) const {
        return day.year() == 2026 ? dayAndMonth(day)
                                  : dayAndMonth(day) + u", "_s + number(day.year());
    }
    friend void PrintTo(const Tongue &tongue, std::ostream *out) {
        *out << qPrintable(tongue.locale);
    }
};

/// A time zone and a day there whose beginning is worth a look.
struct Place {
    QByteArray zone;
    QString now;        ///< 2026-04-08, 15:00, in UTC.
    QDate turn;         ///< The day.
    QString turnBegins; ///< Its first moment, in UTC.
    bool midnightIsSkipped = false;

    friend void PrintTo(const Place &place, std::ostream *out) { *out << place.zone.constData(); }
};

const std::vector<Tongue> tongues{
    {u"en_US"_s, u"Jan"_s, u"Mar"_s, u"Apr"_s, u"Jul"_s, u"Sep"_s, u"Oct"_s, u"Sunday"_s,
     u"Monday"_s, u"12:00 AM"_s, u"1:00 AM"_s, u'0'},
    {u"de_DE"_s, u"Jan."_s, u"März"_s, u"Apr."_s, u"Juli"_s, u"Sept."_s, u"Okt."_s, u"Sonntag"_s,
     u"Montag"_s, u"00:00"_s, u"01:00"_s, u'0', true},
    {u"ja_JP"_s, u"1月"_s, u"3月"_s, u"4月"_s, u"7月"_s, u"9月"_s, u"10月"_s, u"日曜日"_s,
     u"月曜日"_s, u"0:00"_s, u"1:00"_s, u'0'},
    {u"ar_EG"_s, u"يناير"_s, u"مارس"_s, u"أبريل"_s, u"يوليو"_s, u"سبتمبر"_s, u"أكتوبر"_s,
     u"الأحد"_s, u"الاثنين"_s, u"١٢:٠٠ ص"_s, u"١:٠٠ ص"_s, u'٠'},
    {u"fa_IR"_s, u"ژانویه"_s, u"مارس"_s, u"آوریل"_s, u"ژوئیه"_s, u"سپتامبر"_s, u"اکتبر"_s,
     u"یکشنبه"_s, u"دوشنبه"_s, u"۰:۰۰"_s, u"۱:۰۰"_s, u'۰'}};

const std::vector<Place> places{
    // The clocks were set forward in its second hour.
    {"Europe/Berlin", u"2026-04-08T13:00:00Z"_s, {2026, 3, 29}, u"2026-03-28T23:00:00Z"_s},
    // They were at midnight: the days begin at one.
    {"America/Santiago", u"2026-04-08T19:00:00Z"_s, {2025, 9, 7}, u"2025-09-07T04:00:00Z"_s, true},
    {"Africa/Cairo", u"2026-04-08T13:00:00Z"_s, {2025, 4, 25}, u"2025-04-24T22:00:00Z"_s, true},
    // Half an hour off, with daylight saving time and without.
    {"America/St_Johns", u"2026-04-08T17:30:00Z"_s, {2026, 3, 8}, u"2026-03-08T03:30:00Z"_s},
    {"Asia/Kolkata", u"2026-04-08T09:30:00Z"_s, {2026, 3, 8}, u"2026-03-07T18:30:00Z"_s},
    {"Asia/Tokyo", u"2026-04-08T06:00:00Z"_s, {2026, 3, 8}, u"2026-03-07T15:00:00Z"_s}};

Date utc(const QString &text) {
    return Date::fromUnixSeconds(
        static_cast<double>(QDateTime::fromString(text, Qt::ISODate).toSecsSinceEpoch()));
}

class LookingBack : public testing::TestWithParam<std::tuple<Tongue, Place>> {
protected:
    /// The parts of the program from the store up.
    struct Launch {
        Launch(const QString &folder, ManualTime &time, const CurrentCalendar &calendar)
            : defaults(folder, {}, time, time),
              controller({.clock = time,
                          .runLoop = time,
                          .log = log,
                          .defaults = defaults,
                          .notificationCenter = center,
                          .userNotifications = userNotifications,
                          .backgroundActivities = activities,
                          .haptics = haptics,
                          .calendar = calendar}) {}

        RecordingLog log;
        StoredUserDefaults defaults;
        NotificationCenter center;
        RecordingUserNotifications userNotifications;
        RecordingBackgroundActivities activities;
        CountingHaptics haptics;
        SessionViewModel controller;
    };

    LookingBack() {
        const Date midnight = m_time.now() - 15 * 3600.0;
        const Date turn = utc(m_place.turnBegins);
        std::vector<SessionHistoryEntry> entries;
        for (const Date end : {turn - 1.0, turn, midnight - 60 * 3600.0, midnight - 36 * 3600.0,
                               midnight - 1.0, midnight})
            entries.push_back({.sessionDate = end,
                               .goals = {{.text = goal, .status = GoalStatus::completed}},
                               .duration = 1500});
        Launch(m_folder.path(), m_time, m_calendar).controller.saveSessionHistory(entries);
        m_launch = std::make_unique<Launch>(m_folder.path(), m_time, m_calendar);
    }

    void show(const QString &document, Screen &view, const QSize &size) {
        view.appear();
        m_ui =
            std::make_unique<UiDriver>(QUrl(u"qrc:/qt/qml/TARNE/Views/"_s + document),
                                       QVariantMap{{u"view"_s, QVariant::fromValue(&view)}}, size);
        (void)m_ui->picture();
    }
    void showHistory() {
        m_history = std::make_unique<HistoryView>(m_launch->controller, m_launch->center, m_time,
                                                  m_calendar);
        show(u"HistoryScreen.qml"_s, *m_history, QSize(900, 1600));
    }
    void showInsights() {
        m_insights = std::make_unique<InsightsView>(m_launch->controller, m_time, m_calendar);
        show(u"InsightsScreen.qml"_s, *m_insights, QSize(1000, 800));
    }
    QRectF placeOf(const QString &name) {
        const QQuickItem *const item = m_ui->find(name);
        EXPECT_TRUE(item) << qPrintable(name);
        return item ? test::placeOf(*item) : QRectF();
    }
    /// The groups' labels from top to bottom.
    QStringList groups() {
        std::map<double, QString> byHeight;
        for (const QString &name : m_ui->names(QAccessible::Heading)) {
            const QQuickItem *const item = m_ui->find(name, QAccessible::Heading);
            byHeight[test::placeOf(*item).top()] = name;
        }
        QStringList groups;
        for (const auto &[top, name] : byHeight)
            groups += name;
        return groups.mid(1); // The page's own head.
    }
    QColor colorOf(const QDate &day) {
        const auto &grid = *m_ui->root()->findChild<HeatmapGrid *>();
        const qint64 index = QDate(2025, 4, 13).daysTo(day); // The Sunday with which it begins.
        constexpr double step = HeatmapGrid::cellSize + HeatmapGrid::gap;
        const QPointF middle(double(index / 7) * step + 7, double(index % 7) * step + 7);
        return m_ui->picture().pixelColor(grid.mapToScene(middle).toPoint());
    }

    static inline const QString goal = u"كتابة التقرير"_s;

    Tongue m_tongue = std::get<Tongue>(GetParam());
    Place m_place = std::get<Place>(GetParam());
    CurrentCalendar m_calendar = [this] {
        return Calendar(QTimeZone(m_place.zone), QLocale(m_tongue.locale));
    };
    ManualTime m_time{utc(m_place.now)};
    QTemporaryDir m_folder;
    std::unique_ptr<Launch> m_launch;
    std::unique_ptr<HistoryView> m_history;
    std::unique_ptr<InsightsView> m_insights;
    std::unique_ptr<UiDriver> m_ui;
};

TEST_P(LookingBack, TheHistoryIsGroupedInTheUsersWordsAndDays) {
    showHistory();
    const QStringList turn{m_tongue.label(m_place.turn), m_tongue.label(m_place.turn.addDays(-1))};
    QStringList expected{u"Today"_s, u"Yesterday"_s};
    // Labels with a year stand above those without, whatever their days.
    if (m_place.turn.year() == 2025)
        expected += turn;
    if (m_tongue.weeksBeginOnMonday)
        expected += m_tongue.label(QDate(2026, 4, 5));
    if (m_place.turn.year() == 2026)
        expected += turn;
    expected += m_tongue.monday;
    if (!m_tongue.weeksBeginOnMonday)
        expected += m_tongue.sunday;
    EXPECT_EQ(groups(), expected);
    EXPECT_EQ(m_ui->names().count(u"1 entry"_s), 6);
}

TEST_P(LookingBack, TimesAreOfTheUsersClockAndZone) {
    showHistory();
    // Of today, and of the turn where it comes at midnight.
    EXPECT_EQ(m_ui->names().count(m_tongue.midnight), m_place.midnightIsSkipped ? 1 : 2);
    EXPECT_EQ(m_ui->names().count(m_tongue.one), m_place.midnightIsSkipped ? 1 : 0);
}

TEST_P(LookingBack, TheHistoryRunsFromLeftToRightInEveryLocale) {
    showHistory();
    EXPECT_EQ(placeOf(u"Today"_s).left(), 20);
    EXPECT_EQ(placeOf(u"1 entry"_s).right(), 880);
    EXPECT_EQ(placeOf(m_tongue.midnight).left(), 32);
    EXPECT_EQ(placeOf(u"25 min"_s).right(), 868);
    const QQuickItem *const text = m_ui->find(goal);
    ASSERT_TRUE(text);
    EXPECT_EQ(test::placeOf(*text).left(), 56);
    EXPECT_EQ(text->property("effectiveHorizontalAlignment").toInt(), int(Qt::AlignLeft));
}

TEST_P(LookingBack, TheInsightsCountTheUsersDays) {
    showInsights();
    EXPECT_EQ(m_insights->currentStreak(), 4);
    EXPECT_EQ(m_insights->longestStreak(), 4);
    EXPECT_EQ(m_ui->names().count(u"4"_s), 2);
    EXPECT_TRUE(m_ui->has(u"6 sessions in the last year"_s));
    const QColor empty = colorOf(m_place.turn.addDays(2));
    const QColor one = colorOf(QDate(2026, 4, 8));
    EXPECT_NE(one, empty);
    EXPECT_EQ(colorOf(m_place.turn), one);
    EXPECT_EQ(colorOf(m_place.turn.addDays(-1)), one);
    EXPECT_EQ(colorOf(m_place.turn.addDays(-2)), empty);
    EXPECT_EQ(colorOf(QDate(2026, 4, 4)), empty);
    EXPECT_NE(colorOf(QDate(2026, 4, 9)), empty); // The future is paler.
}

TEST_P(LookingBack, TheHeatMapNamesItsMonthsInTheUsersWords) {
    showInsights();
    const double left = test::placeOf(*m_ui->root()->findChild<HeatmapGrid *>()).left();
    int index = 0;
    for (const QString &month : {m_tongue.april, m_tongue.july, m_tongue.october, m_tongue.january})
        EXPECT_EQ(placeOf(month).left(), left + 223 * index++) << qPrintable(month);
    for (const QString &day : {u"Mon"_s, u"Wed"_s, u"Fri"_s})
        EXPECT_LE(placeOf(day).right(), left) << qPrintable(day);
}

INSTANTIATE_TEST_SUITE_P(Everywhere, LookingBack,
                         testing::Combine(testing::ValuesIn(tongues), testing::ValuesIn(places)),
                         [](const auto &tested) {
                             QString name = std::get<Tongue>(tested.param).locale + u'_' +
                                            QString::fromLatin1(std::get<Place>(tested.param).zone);
                             return name.replace(u'/', u'_').toStdString();
                         });

} // namespace
} // namespace tarne::test
