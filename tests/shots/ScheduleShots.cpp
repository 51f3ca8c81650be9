#include "ScheduleShots.h"

#include "Gallery.h"
#include "ScheduleStage.h"

#include <QQuickItem>
#include <QQuickView>

using namespace Qt::StringLiterals;

namespace tarne::shots {

namespace {

/// The frame that the screen is meant for, and one that shows its sheet in full height.
constexpr QSize frame(900, 700);
constexpr QSize tallFrame(900, 840);

void take(Gallery &gallery, const QString &name, test::ScheduleStage &stage,
          const std::function<void(QQuickView &)> &prepare = {}, const QSize &size = frame) {
    gallery.take(name, QUrl(u"qrc:/qt/qml/TARNE/Views/ScheduleScreen.qml"_s),
                 {{u"view"_s, QVariant::fromValue(&stage.view())}}, prepare, size);
}

/// Scrolls everything to its top: a sheet comes up at its focused field.
void scrollToTop(QQuickItem &item) {
    if (item.inherits("QQuickFlickable") &&
        item.property("contentHeight").toDouble() > item.height())
        item.setProperty("contentY", 0);
    for (QQuickItem *child : item.childItems())
        scrollToTop(*child);
}

} // namespace

void takeScheduleShots(Gallery &gallery) {
    {
        test::ScheduleStage stage;
        take(gallery, u"schedule-empty"_s, stage);
    }
    for (const auto &[locale, name] :
         {std::pair(u"en_US"_s, u"schedule"_s), std::pair(u"de_DE"_s, u"schedule-german"_s),
          std::pair(u"ar_EG"_s, u"schedule-arabic"_s)}) {
        test::ScheduleStage stage{QLocale(locale)};
        stage.addSampleGoals();
        take(gallery, name, stage);
    }
    for (const auto &[text, name] : {std::pair(u""_s, u"schedule-sheet-disabled"_s),
                                     std::pair(u"Prepare the talk"_s, u"schedule-sheet"_s)}) {
        test::ScheduleStage stage;
        stage.addSampleGoals();
        stage.controller().setGoalText(text);
        take(
            gallery, name, stage, [&](QQuickView &) { stage.view().openAddGoal(); }, tallFrame);
    }
    {
        test::ScheduleStage stage;
        stage.controller().setGoalText(u"Prepare the talk"_s);
        take(
            gallery, u"schedule-sheet-unfocused"_s, stage,
            [&](QQuickView &) {
                stage.view().openAddGoal();
                stage.view().addGoalSheet()->setGoalTextFocused(false);
            },
            tallFrame);
    }
    {
        test::ScheduleStage stage;
        take(
            gallery, u"schedule-sheet-top"_s, stage,
            [&](QQuickView &window) {
                stage.view().openAddGoal();
                letRest();
                scrollToTop(*window.contentItem());
            },
            tallFrame);
    }
    for (const auto &[locale, name] : {std::pair(u"de_DE"_s, u"schedule-sheet-german"_s),
                                       std::pair(u"ar_EG"_s, u"schedule-sheet-arabic"_s)}) {
        test::ScheduleStage stage{QLocale(locale)};
        take(
            gallery, name, stage, [&](QQuickView &) { stage.view().openAddGoal(); }, tallFrame);
    }
}

} // namespace tarne::shots
