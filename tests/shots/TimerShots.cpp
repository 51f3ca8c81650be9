#include "TimerShots.h"

#include "DurationPickerView.h"
#include "Gallery.h"
#include "OfflineSession.h"
#include "TimerView.h"

#include <QProperty>
#include <QQuickView>

using namespace Qt::StringLiterals;

namespace tarne::shots {

namespace {

using Seconds = RunLoop::Seconds;

constexpr double sessionSeconds = 25 * 60.0;

/// A shown timer screen of its own for each picture.
struct TimerStage {
    TimerStage() { view.appear(); }

    /// A session of which this share has passed.
    void run(double share) {
        session.controller.saveGoal(u"Write report, Review"_s);
        view.startTimer();
        session.time.advance(Seconds(share * sessionSeconds));
    }

    void openNotes() {
        view.selectDuration();
        view.durationSelection()->submit();
        session.time.advance(Seconds(0.3));
    }

    void take(Gallery &gallery, const QString &name,
              const std::function<void(QQuickView &)> &prepare = {}) {
        gallery.take(name, QUrl(u"qrc:/qt/qml/TARNE/Views/TimerScreen.qml"_s),
                     {{u"view"_s, QVariant::fromValue(&view)}}, prepare);
    }

    OfflineSession session;
    TimerView view{session.controller, session.defaults, session.time, session.center,
                   session.feedback.sheets(session.controller)};
};

} // namespace

void takeTimerShots(Gallery &gallery) {
    TimerStage().take(gallery, u"timer-setup"_s);
    for (const auto &[share, name] :
         {std::pair(0.1, u"timer-running-10"_s), std::pair(0.5, u"timer-running"_s),
          std::pair(0.9, u"timer-running-90"_s)}) {
        TimerStage stage;
        stage.run(share);
        stage.take(gallery, name);
    }
    {
        TimerStage stage;
        stage.run(0.5);
        stage.take(gallery, u"timer-paused"_s, [&](QQuickView &) { stage.view.toggleTimer(); });
    }
    {
        TimerStage stage;
        stage.take(gallery, u"duration"_s, [&](QQuickView &) { stage.view.selectDuration(); });
    }
    {
        TimerStage stage;
        stage.take(gallery, u"duration-error"_s, [&](QQuickView &) {
            stage.view.selectDuration();
            stage.view.durationSelection()->toggleCustomInput();
            stage.view.durationSelection()->setCustomDuration(u"4"_s);
        });
    }
    {
        OfflineSession session;
        QProperty<double> selectedDuration(50 * 60.0);
        DurationPickerView picker(session.controller, &selectedDuration);
        picker.appear();
        picker.setCustomDuration(u"200"_s);
        gallery.take(u"duration-picker"_s,
                     QUrl(u"qrc:/qt/qml/TARNE/Views/DurationPickerPanel.qml"_s),
                     {{u"view"_s, QVariant::fromValue(&picker)}}, {}, QSize(400, 320));
    }
    {
        TimerStage stage;
        stage.take(gallery, u"notes-empty"_s, [&](QQuickView &) { stage.openNotes(); });
    }
    {
        TimerStage stage;
        stage.session.controller.saveGoal(
            u"Write the report, answer the open questions of the review, plan Monday"_s);
        stage.take(gallery, u"notes"_s, [&](QQuickView &) { stage.openNotes(); });
    }
}

} // namespace tarne::shots
