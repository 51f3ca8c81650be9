#include "HistoryShots.h"

#include "EditReflectionSheet.h"
#include "ExportSheet.h"
#include "Gallery.h"
#include "HistoryView.h"
#include "InsightsView.h"
#include "OfflineSession.h"
#include "RecordingPasteboard.h"

#include <QProperty>

#include <random>

using namespace Qt::StringLiterals;

namespace tarne::shots {

namespace {

QUrl document(const QString &name) {
    return QUrl(u"qrc:/qt/qml/TARNE/Views/"_s + name);
}

/// Both screens over one history, in a locale's calendar.
struct LookBackStage {
    explicit LookBackStage(const QString &locale = u"en_US"_s)
        : calendar([locale] { return Calendar(QTimeZone::utc(), QLocale(locale)); }) {}

    /// A year of sessions up to this morning, some days busier than others.
    void fillYear(const QString &goal, const QString &otherGoal, const QString &text) {
        std::mt19937 random(7);
        std::vector<SessionHistoryEntry> entries;
        const auto add = [&](int day) {
            // It is noon: from the evening before to an hour ago.
            const Date date = session.time.now() - day * 86400.0 - 3600.0 * (1 + random() % 14);
            entries.push_back({.sessionDate = date,
                               .goals = {{.text = goal, .status = allGoalStatuses[random() % 2]},
                                         {.text = otherGoal, .status = GoalStatus::completed}},
                               .duration = 1500,
                               .overallAssessment = text,
                               .suggestions = text,
                               .reflection = text});
        };
        for (int day = 365; day > 4; --day) {
            for (unsigned sessions = random() % 7 * (random() % 3) / 3; sessions > 0; --sessions)
                add(day);
        }
        for (int day = 4; day >= 0; --day)
            entries.push_back({.sessionDate = session.time.now() - day * 86400.0 - 7200.0,
                               .goals = {{.text = goal, .status = GoalStatus::completed}},
                               .duration = 3000,
                               .overallAssessment = text,
                               .patternsObserved = text,
                               .reflection = text});
        session.controller.saveSessionHistory(entries);
    }

    void takeInsights(Gallery &gallery, const QString &name) {
        InsightsView view(session.controller, session.time, calendar);
        view.appear();
        gallery.take(name, document(u"InsightsScreen.qml"_s),
                     {{u"view"_s, QVariant::fromValue(&view)}});
    }

    void takeHistory(Gallery &gallery, const QString &name, bool isLoaded = true) {
        HistoryView view(session.controller, session.center, session.time, calendar);
        if (isLoaded)
            view.appear();
        if (isLoaded)
            view.setExpanded(0, 0, true);
        gallery.take(name, document(u"HistoryScreen.qml"_s),
                     {{u"view"_s, QVariant::fromValue(&view)}});
    }

    OfflineSession session;
    CurrentCalendar calendar;
};

void takeSheets(Gallery &gallery) {
    const LookBackStage stage;
    QProperty<QString> reflection{u"Felt really productive today."_s};
    QProperty<bool> isPresented{true};
    EditReflectionSheet edit({.sessionDate = stage.session.time.now(), .goals = {}, .duration = 0},
                             &reflection, &isPresented, stage.calendar(), [](const QString &) {});
    gallery.take(u"edit-reflection"_s, document(u"EditReflectionPanel.qml"_s),
                 {{u"view"_s, QVariant::fromValue(&edit)}}, {}, QSize(500, 300));
    test::RecordingPasteboard pasteboard;
    ExportSheet exported(u"Session History\n\nMonday, 25 min: wrote the report."_s, &isPresented,
                         pasteboard);
    gallery.take(u"export"_s, document(u"ExportPanel.qml"_s),
                 {{u"view"_s, QVariant::fromValue(&exported)}}, {}, QSize(700, 500));
}

} // namespace

void takeHistoryShots(Gallery &gallery) {
    LookBackStage().takeInsights(gallery, u"insights-samples"_s);
    LookBackStage().takeHistory(gallery, u"history-samples"_s);
    LookBackStage().takeHistory(gallery, u"history-empty"_s, false);
    LookBackStage year;
    year.fillYear(u"Write the report"_s, u"Answer the open questions of the review"_s,
                  u"Steady work for most of the session, with one long interruption."_s);
    year.takeInsights(gallery, u"insights-year"_s);
    year.takeHistory(gallery, u"history-year"_s);
    LookBackStage arabic(u"ar_EG"_s);
    arabic.fillYear(u"كتابة التقرير"_s, u"الرد على أسئلة المراجعة"_s,
                    u"عمل ثابت معظم الجلسة مع انقطاع واحد طويل."_s);
    arabic.takeInsights(gallery, u"insights-right-to-left"_s);
    arabic.takeHistory(gallery, u"history-right-to-left"_s);
    takeSheets(gallery);
}

} // namespace tarne::shots
