// The whole window on screens that do not hold all of it.

#include "ItemLook.h"
#include "ShellFixture.h"

#include <QPauseAnimation>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

std::string nameOfSize(const testing::TestParamInfo<QSize> &size) {
    return std::to_string(size.param.width()) + "x" + std::to_string(size.param.height());
}

class SmallWindow : public test::ShellTest, public testing::WithParamInterface<QSize> {
protected:
    void SetUp() override {
        completeOnboardingBefore();
        // Made here, so that it has its size.
        ui(GetParam()).settle();
    }

    TimerView &timer() { return *content().timerView(); }

    /// What scrolls around the named item.
    QQuickItem &scrolled(const QString &name) {
        const QQuickItem *const view = test::around(ui().find(name), "contentY");
        if (!view)
            ADD_FAILURE() << "nothing scrolls around " << qPrintable(name);
        return view ? const_cast<QQuickItem &>(*view) : *ui().root();
    }
    qreal contentY(const QString &name) { return scrolled(name).property("contentY").toReal(); }
    bool isInSight(const QString &name) {
        const QQuickItem &view = scrolled(name);
        const QQuickItem *const item = ui().find(name);
        return view.mapRectToScene(view.boundingRect())
            .contains(item->mapRectToScene(item->boundingRect()));
    }
    bool isPartlyInSight(const QString &name) {
        const QQuickItem &view = scrolled(name);
        const QQuickItem *const item = ui().find(name);
        return view.mapRectToScene(view.boundingRect())
            .intersects(item->mapRectToScene(item->boundingRect()));
    }
    bool isInWindow(const QString &name) {
        const QQuickItem *const item = ui().find(name);
        return item && QRectF(QPointF(), QSizeF(GetParam()))
                           .contains(item->mapRectToScene(item->boundingRect()));
    }
    /// Whether all is in sight or a bar tells that it is not.
    bool tellsOfAllThereIs(const QString &name) {
        const QQuickItem &view = scrolled(name);
        const auto *const bar = view.findChild<QQuickItem *>(u"scrollBar"_s);
        return bar && bar->isVisible() == (view.property("contentHeight").toReal() > view.height());
    }
    void scroll(const QString &name, int degrees) {
        QQuickItem &view = scrolled(name);
        const QPointF middle = view.mapToScene(view.boundingRect().center());
        qreal before = -1;
        ui().wheel(middle, degrees);
        EXPECT_TRUE(ui().waitUntil([&] {
            return !view.property("moving").toBool() &&
                   std::exchange(before, contentY(name)) == contentY(name);
        }));
    }
    /// Lays out what has changed, and lets the focus be brought into sight, which takes its time
    /// from the animations as this pause does.
    void drawFrame() {
        EXPECT_FALSE(ui().picture().isNull());
        QPauseAnimation pause(50);
        pause.start();
        EXPECT_TRUE(ui().waitUntil([&] { return pause.state() == QPauseAnimation::Stopped; }));
        ui().settle();
    }

    void openFeedback() {
        startSession(u"Review the report "_s.repeated(15));
        pressByKey(u"Stop"_s);
        pressByKey(u"Completed"_s);
        tabTo(u"Reflection"_s);
        ui().type(u"Fine"_s);
        pressByKey(u"Complete reflection"_s);
        ASSERT_TRUE(ui().waitUntil([&] { return !feedback.gemini.requests.empty(); }));
        drawFrame();
    }
    /// All of its box, which stands out from what scrolls around it at no side.
    bool isReflectionsEditorInSight() {
        const QQuickItem *const text = ui().find(u"Your Reflection"_s, QAccessible::EditableText);
        const QQuickItem *const box = text ? test::around(text, "contentY")->parentItem() : nullptr;
        const QQuickItem *const view = test::around(box, "contentY");
        return view && view->mapRectToScene(view->boundingRect())
                           .contains(box->mapRectToScene(box->boundingRect()));
    }

    void beginSession() {
        timer().startTimer();
        drawFrame();
    }
};

TEST_P(SmallWindow, ABarShowsWhereverThereIsMore) {
    EXPECT_TRUE(tellsOfAllThereIs(u"Start Session"_s));
    beginSession();
    EXPECT_TRUE(tellsOfAllThereIs(u"Pause"_s));
    timer().toggleTimer();
    drawFrame();
    EXPECT_TRUE(tellsOfAllThereIs(u"Resume"_s));
}

TEST_P(SmallWindow, TheFocusIsInSightOnEachFaceAndAfterAPause) {
    tabTo(u"Start Session"_s);
    EXPECT_TRUE(isInSight(u"Start Session"_s));
    beginSession();
    tabTo(u"Pause"_s);
    EXPECT_TRUE(isInSight(u"Pause"_s));
    ui().key(Qt::Key_Space);
    drawFrame();
    ASSERT_EQ(ui().focusedName(), u"Resume"_s);
    EXPECT_TRUE(isInSight(u"Resume"_s));
    timer().completeSession();
    drawFrame();
    ASSERT_EQ(ui().focusedName(), u"Start Session"_s);
    EXPECT_TRUE(isInSight(u"Start Session"_s));
}

TEST_P(SmallWindow, TheFocusStaysInSightWhenTheWindowBecomesLower) {
    beginSession();
    tabTo(u"Stop"_s);
    ui().view().resize(GetParam().width(), GetParam().height() - 60);
    drawFrame();
    EXPECT_TRUE(isInSight(u"Stop"_s));
}

TEST_P(SmallWindow, AChangeOfFaceBeginsAtTheTop) {
    tabTo(u"Timer"_s);
    beginSession();
    scroll(u"Pause"_s, -120);
    timer().completeSession();
    drawFrame();
    EXPECT_EQ(contentY(u"Start Session"_s), 0);
    scroll(u"Start Session"_s, -120);
    beginSession();
    EXPECT_EQ(contentY(u"Pause"_s), 0);
}

TEST_P(SmallWindow, EditBringsTheReflectionsEditorIntoSight) {
    openFeedback();
    tabTo(u"Edit"_s);
    drawFrame();
    ASSERT_TRUE(ui().click(u"Edit"_s));
    drawFrame();
    EXPECT_TRUE(isReflectionsEditorInSight());
    ASSERT_TRUE(ui().click(u"Done"_s));
    drawFrame();
    pressByKey(u"Edit"_s);
    drawFrame();
    EXPECT_TRUE(isReflectionsEditorInSight());
}

TEST_P(SmallWindow, WhatTheUserScrolledAwayFromStaysAway) {
    beginSession();
    tabTo(u"Stop"_s);
    scroll(u"Stop"_s, 120);
    if (isPartlyInSight(u"Stop"_s))
        return; // There is too little to scroll.
    const qreal before = contentY(u"Stop"_s);
    timer().toggleTimer();
    drawFrame();
    EXPECT_EQ(contentY(u"Stop"_s), before);
}

TEST_P(SmallWindow, WhatTheUserScrolledAwayFromStaysAwayWhenTheWindowComesBack) {
    beginSession();
    tabTo(u"Stop"_s);
    scroll(u"Stop"_s, 120);
    const qreal before = contentY(u"Stop"_s);
    ui().leaveWindow();
    ui().returnToWindow();
    drawFrame();
    EXPECT_EQ(contentY(u"Stop"_s), before);
}

TEST_P(SmallWindow, AnEditorThatTheUserScrolledAwayFromStaysAwayWhenTheWindowComesBack) {
    beginSession();
    timer().resetTimer();
    drawFrame();
    const QString editor = u"Reflection"_s;
    tabTo(editor);
    scroll(editor, 120);
    const qreal before = contentY(editor);
    ui().leaveWindow();
    ui().returnToWindow();
    drawFrame();
    EXPECT_EQ(contentY(editor), before);
}

INSTANTIATE_TEST_SUITE_P(AtEachSize, SmallWindow,
                         testing::Values(QSize(1000, 700), QSize(1000, 614), QSize(900, 640),
                                         QSize(800, 600), QSize(960, 540), QSize(640, 360)),
                         nameOfSize);

/// The same for who has not finished onboarding.
class SmallOnboarding : public SmallWindow {
protected:
    void SetUp() override { ui(GetParam()).settle(); }
};

TEST_P(SmallOnboarding, BothPagesAreWithinReach) {
    const QString lastLine = u"and stay focused on the work that matters most"_s;
    EXPECT_TRUE(isInWindow(u"Next"_s));
    EXPECT_TRUE(tellsOfAllThereIs(lastLine));
    const bool hasMore =
        scrolled(lastLine).property("contentHeight").toReal() > scrolled(lastLine).height();
    scroll(lastLine, -120);
    EXPECT_EQ(contentY(lastLine) > 0, hasMore);
    EXPECT_TRUE(isInSight(lastLine));
    ASSERT_TRUE(ui().click(u"Next"_s));
    ASSERT_TRUE(ui().waitUntil([&] { return ui().has(u"Back"_s) && !ui().has(lastLine); }));
    EXPECT_TRUE(isInWindow(u"Start Focusing"_s));
    EXPECT_TRUE(tellsOfAllThereIs(u"Get Free API Key"_s));
    tabTo(u"Enter your Gemini API key"_s);
    EXPECT_TRUE(isInSight(u"Enter your Gemini API key"_s));
    tabTo(u"Get Free API Key"_s);
    EXPECT_TRUE(isInSight(u"Get Free API Key"_s));
}

INSTANTIATE_TEST_SUITE_P(AtEachSize, SmallOnboarding,
                         testing::Values(QSize(1000, 614), QSize(800, 600), QSize(960, 540),
                                         QSize(640, 360)),
                         nameOfSize);

using HiddenFace = test::ShellTest;

/// What hidden texts and orbs below `item` hold.
QStringList hiddenBelow(const QQuickItem &item) {
    QStringList found;
    for (const QQuickItem *const child : item.childItems()) {
        for (const char *const property : {"text", "progress"}) {
            if (!child->isVisible() && child->property(property).isValid())
                found += child->property(property).toString();
        }
        found += hiddenBelow(*child);
    }
    return found;
}

TEST_F(HiddenFace, HearsNothingOfTheTimeThatPasses) {
    ui().settle();
    content().timerView()->startTimer();
    ui().settle();
    const QStringList before = hiddenBelow(*ui().root());
    ASSERT_THAT(before, testing::Contains(u"Start Session"_s));
    pass(60);
    ui().settle();
    EXPECT_TRUE(ui().has(u"00:24:00"_s));
    EXPECT_EQ(hiddenBelow(*ui().root()), before);
}

} // namespace
} // namespace tarne::test
