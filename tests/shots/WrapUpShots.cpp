#include "WrapUpShots.h"

#include "Gallery.h"
#include "OfflineSession.h"
#include "TimerView.h"

#include <QQuickItem>
#include <QQuickView>

using namespace Qt::StringLiterals;

namespace tarne::shots {

namespace {

using Seconds = RunLoop::Seconds;

const QByteArray coaching =
    R"(### Session Feedback\n\n)"
    R"(**Overall Assessment:** You finished the report and made real progress on the review. )"
    R"(That is a session to be content with.\n\n)"
    R"(**Patterns Observed:** The hardest goal came first and got your best hour. What was left )"
    R"(for the end suffered from a tired mind.\n\n)"
    R"(**Advice:** Give the review a session of its own in the morning, with the door closed and )"
    R"(the phone in another room.\n\n)"
    R"(**Motivation:** Stillhour is a skill that grows with every quiet hour. Today added one.)";

/// The end of a session of its own for each picture, in a window of the program's size.
struct WrapUpStage {
    WrapUpStage() {
        view.appear();
        session.controller.saveGoal(u"Write the report, Answer the open questions of the review, "
                                    "Plan Monday"_s);
        view.startTimer();
        session.time.advance(Seconds(25 * 60.0 + 1));
    }

    void rateAll() {
        for (int row = 0; row < 3; ++row)
            view.sessionReflection()->rate(row, row);
        view.sessionReflection()->setReflection(
            u"The report took longer than planned, but it is done. I lost ten minutes to mail."_s);
    }
    void completeReflection() {
        rateAll();
        view.sessionReflection()->completeReflection();
        feedback().generateFeedback();
    }
    void answer() {
        session.feedback.gemini.answer(test::FeedbackFakes::answerWith(coaching));
        session.time.runPending();
    }
    SessionFeedbackView &feedback() { return *view.sessionReflection()->feedback(); }

    void take(Gallery &gallery, const QString &name,
              const std::function<void(QQuickView &)> &prepare) {
        gallery.take(name, QUrl(u"qrc:/qt/qml/TARNE/Views/TimerScreen.qml"_s),
                     {{u"view"_s, QVariant::fromValue(&view)}}, prepare, QSize(1000, 760));
    }

    OfflineSession session;
    TimerView view{session.controller, session.defaults, session.time, session.center,
                   session.feedback.sheets(session.controller)};
};

/// Scrolls down all that can be in and below `item`.
void scrollToTheEnd(QQuickItem &item) {
    const double hidden = item.property("contentHeight").toDouble() - item.height();
    if (item.inherits("QQuickFlickable") && hidden > 0)
        item.setProperty("contentY", hidden);
    for (QQuickItem *const child : item.childItems())
        scrollToTheEnd(*child);
}

} // namespace

void takeWrapUpShots(Gallery &gallery) {
    const auto take = [&](const QString &name, auto prepare) {
        WrapUpStage stage;
        stage.take(gallery, name, [&](QQuickView &) { prepare(stage); });
    };
    take(u"reflection"_s, [](WrapUpStage &) {});
    take(u"reflection-rated"_s, [](WrapUpStage &stage) { stage.rateAll(); });
    take(u"feedback-loading"_s, [](WrapUpStage &stage) { stage.completeReflection(); });
    take(u"feedback-error"_s, [](WrapUpStage &stage) {
        stage.completeReflection();
        stage.session.feedback.gemini.fail(u"The service could not be found."_s);
        stage.session.time.runPending();
    });
    take(u"feedback"_s, [](WrapUpStage &stage) {
        stage.completeReflection();
        stage.answer();
    });
    WrapUpStage scrolled;
    scrolled.take(gallery, u"feedback-end"_s, [&](QQuickView &window) {
        scrolled.completeReflection();
        scrolled.answer();
        letRest();
        scrollToTheEnd(*window.contentItem());
    });
    take(u"feedback-editing"_s, [](WrapUpStage &stage) {
        stage.completeReflection();
        stage.session.feedback.gemini.fail(u"The service could not be found."_s);
        stage.session.time.runPending();
        stage.feedback().setEditingReflection(true);
    });
}

} // namespace tarne::shots
