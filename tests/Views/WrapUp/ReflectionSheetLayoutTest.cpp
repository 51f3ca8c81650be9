#include "TARNEStyle.h"
#include "WrapUpFixture.h"

#include <QEasingCurve>
#include <QFontMetricsF>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

using Fonts = TARNEStyle::Typography;

class ReflectionSheetLayout : public WrapUpScreenTest {
protected:
    /// Where a text stands.
    QRectF text(const QString &text) {
        const QQuickItem *const found = ui().findText(text);
        return LayoutProbe::place(found ? *found : probe().item(text));
    }
    QQuickItem &editor() { return probe().item(u"Reflection"_s, QAccessible::EditableText); }
    /// The rounded rectangle that the editor lies on.
    QQuickItem &editorGround() { return *editor().parentItem()->parentItem()->parentItem(); }
    QQuickItem &circle() { return *probe().item(u"Complete reflection"_s).parentItem(); }
    QColor fillOfCircle() {
        const auto *const ground =
            probe().item(u"Complete reflection"_s).property("background").value<QQuickItem *>();
        return ground ? LayoutProbe::color(*ground) : QColor();
    }
    /// The button is ready, and its animation over.
    void rateTheOneGoal() {
        ASSERT_TRUE(ui().click(u"Completed"_s));
        ASSERT_TRUE(ui().waitUntil(
            [&] { return circle().scale() == 1 && fillOfCircle() == TARNEStyle::Colors::accent; }));
    }
};

TEST_F(ReflectionSheetLayout, LiesOnTheMaterialWithItsShadowAndADragIndicator) {
    openReflection(u"Review"_s);
    expectSheetGround(reflectionPanel());
    EXPECT_EQ(reflectionPanel().property("hasDragIndicator"), true);
}

TEST_F(ReflectionSheetLayout, HeadsItselfWithItsTitleAndTheCloseControl) {
    openReflection(u"Review"_s);
    expectLook(ui(), u"How did you do with your goals?"_s, Fonts::system(22, QFont::DemiBold),
               SystemColors::label);
    expectCloseControl();
    EXPECT_NEAR(probe().place(u"Close"_s).center().y(),
                text(u"How did you do with your goals?"_s).center().y(), 0.5);
}

TEST_F(ReflectionSheetLayout, AGoalOfAnyScriptBeginsAtTheLeadingSide) {
    openReflection(u"שלום"_s);
    EXPECT_EQ(probe()
                  .item(u"שלום"_s, QAccessible::StaticText)
                  .property("effectiveHorizontalAlignment")
                  .toInt(),
              Qt::AlignLeft);
}

TEST_F(ReflectionSheetLayout, SetsTheGoalsAndTheReflectionApartAsTold) {
    openReflection(u"Write report, Review"_s);
    const QRectF panel = LayoutProbe::place(reflectionPanel());
    const QRectF first = text(u"Write report"_s);
    const QRectF options = probe().place(u"Completed"_s, QAccessible::RadioButton);
    const QRectF second = text(u"Review"_s);
    EXPECT_EQ(first.left(), panel.left() + 40);
    EXPECT_EQ(first.top(), text(u"How did you do with your goals?"_s).bottom() + 32);
    EXPECT_EQ(options.top(), first.bottom() + 18);
    EXPECT_EQ(second.top(), options.bottom() + 32);
    const double lastRowsEnd = second.bottom() + 18 + options.height();
    const QRectF line = LayoutProbe::place(*linesIn(reflectionPanel()).at(0));
    EXPECT_EQ(line.top(), lastRowsEnd + 48);
    EXPECT_EQ(line.left(), panel.left() + 40);
    EXPECT_EQ(line.right(), panel.right() - 40);
    const QRectF label = text(u"Reflection"_s);
    EXPECT_EQ(label.top(), line.bottom() + 32 + 8);
    EXPECT_EQ(LayoutProbe::place(editorGround()).top(), label.bottom() + 16);
}

TEST_F(ReflectionSheetLayout, ScrollsToTwentyPointsBelowTheEditor) {
    openReflection(u"A, B, C, D, E, F"_s);
    const QQuickItem &body = firstIn(
        reflectionPanel(), [](const QQuickItem &item) { return item.inherits("QQuickFlickable"); });
    const auto *const content = body.property("contentItem").value<QQuickItem *>();
    ASSERT_TRUE(content);
    EXPECT_EQ(body.property("contentHeight"),
              editorGround().mapRectToItem(content, editorGround().boundingRect()).bottom() + 20);
}

TEST_F(ReflectionSheetLayout, DrawsOneLineAboveTheReflectionAndNoneWithoutGoals) {
    openReflection(u"Review"_s);
    ASSERT_EQ(linesIn(reflectionPanel()).size(), 1U);
    expectSeparator(*linesIn(reflectionPanel())[0]);
}

TEST_F(ReflectionSheetLayout, WithoutGoalsTheReflectionIsTheFirstThing) {
    openReflection(u",,"_s);
    EXPECT_TRUE(linesIn(reflectionPanel()).empty());
    EXPECT_EQ(text(u"Reflection"_s).top(),
              text(u"How did you do with your goals?"_s).bottom() + 32 + 8);
}

TEST_F(ReflectionSheetLayout, WritesGoalsAndVerdictsInTheirFontsAndColours) {
    openReflection(u"Review"_s);
    expectLook(ui(), u"Review"_s, Fonts::system(14, QFont::Medium), SystemColors::label);
    expectLook(ui(), u"○"_s, Fonts::system(11), SystemColors::secondaryLabel);
    ASSERT_TRUE(ui().click(u"Partially Completed"_s));
    expectLook(ui(), u"●"_s, Fonts::system(11), SystemColors::label);
    expectLook(ui(), u"Partially Completed"_s, Fonts::system(11), SystemColors::label);
    expectLook(ui(), u"Completed"_s, Fonts::system(11), SystemColors::secondaryLabel);
    expectLook(ui(), u"Not Completed"_s, Fonts::system(11), SystemColors::secondaryLabel);
}

TEST_F(ReflectionSheetLayout, SetsTheVerdictsApartAsTold) {
    openReflection(u"Review"_s);
    const QRectF panel = LayoutProbe::place(reflectionPanel());
    double left = panel.left() + 40 + 16;
    for (const QString &name : {u"Completed"_s, u"Partially Completed"_s, u"Not Completed"_s}) {
        const QRectF option = probe().place(name, QAccessible::RadioButton);
        EXPECT_EQ(option.left(), left) << qPrintable(name);
        const QQuickItem &label = probe().item(name, QAccessible::StaticText);
        const QQuickItem &mark = *label.parentItem()->childItems().constFirst();
        EXPECT_EQ(mark.property("text"), u"○"_s);
        EXPECT_EQ(LayoutProbe::place(mark).left(), option.left());
        EXPECT_EQ(LayoutProbe::place(label).left(), LayoutProbe::place(mark).right() + 6);
        left = option.right() + 24;
    }
}

TEST_F(ReflectionSheetLayout, TheEditorLiesOnItsGroundAndWritesInItsFont) {
    openReflection(u"Review"_s);
    expectLook(ui(), u"Reflection"_s, Fonts::system(16, QFont::Medium), SystemColors::label);
    EXPECT_EQ(editorGround().size(), QSizeF(520 - 2 * 40, 120));
    EXPECT_EQ(editorGround().property("radius"), 8);
    EXPECT_EQ(LayoutProbe::color(editorGround()), SystemColors::textBackground);
    EXPECT_EQ(editorGround().property("outlineColor").value<QColor>(), SystemColors::separator);
    EXPECT_EQ(editorGround().property("outlineWidth"), 0.5);
    EXPECT_EQ(LayoutProbe::place(editor()).topLeft(),
              LayoutProbe::place(editorGround()).topLeft() + QPointF(12, 10));
    EXPECT_EQ(LayoutProbe::font(editor()), Fonts::system(14));
    EXPECT_EQ(LayoutProbe::color(editor()), SystemColors::label);
}

TEST_F(ReflectionSheetLayout, TheEditorsLinesStandThreePointsFurtherApart) {
    openReflection(u"Review"_s);
    write(u"one"_s);
    const double one = editor().property("contentHeight").toDouble();
    ui().key(Qt::Key_Return);
    ui().type(u"two"_s);
    ui().settle();
    const double line = QFontMetricsF(LayoutProbe::font(editor())).height();
    EXPECT_NEAR(editor().property("contentHeight").toDouble() - one, line + 3, 0.5);
}

TEST_F(ReflectionSheetLayout, HintsAtTwoKeysBesideTheCompleteButton) {
    openReflection(u"Review"_s);
    rateTheOneGoal();
    const QQuickItem &command = symbolIn(reflectionPanel(), u"command"_s);
    const QQuickItem &enter = symbolIn(reflectionPanel(), u"return"_s);
    expectSymbol(command, 11, QFont::Medium, SystemColors::tertiaryLabel);
    expectSymbol(enter, 11, QFont::Medium, SystemColors::tertiaryLabel);
    EXPECT_EQ(LayoutProbe::place(enter).left(), LayoutProbe::place(command).right() + 4);
    EXPECT_EQ(LayoutProbe::place(circle()).left(), LayoutProbe::place(enter).right() + 16);
    EXPECT_NEAR(LayoutProbe::place(enter).center().y(), LayoutProbe::place(circle()).center().y(),
                0.5);
}

TEST_F(ReflectionSheetLayout, APressOnTheHintDoesNothing) {
    openReflection(u"Review"_s);
    rateTheOneGoal();
    const QStringList before = ui().names();
    ui().clickAt(LayoutProbe::place(symbolIn(reflectionPanel(), u"return"_s)).center());
    EXPECT_EQ(ui().names(), before);
    EXPECT_FALSE(sheet().showingFeedback());
}

TEST_F(ReflectionSheetLayout, TheCompleteButtonIsGreyUntilAllIsRatedAndThenHasTheAccent) {
    openReflection(u"Review"_s);
    EXPECT_EQ(fillOfCircle(), SystemColors::quaternaryLabel);
    EXPECT_EQ(circle().scale(), 0.95);
    expectSymbol(symbolIn(circle(), u"checkmark"_s), 15, QFont::DemiBold, SystemColors::white);
    rateTheOneGoal();
    EXPECT_EQ(circle().size(), QSizeF(36, 36));
    const QRectF place = LayoutProbe::place(circle());
    EXPECT_EQ(ui().picture().pixelColor((place.center() + QPointF(0, 14)).toPoint()),
              TARNEStyle::Colors::accent);
}

TEST_F(ReflectionSheetLayout, TheCompleteButtonChangesOverTwoTenthsOfASecondEasedInAndOut) {
    openReflection(u"Review"_s);
    ASSERT_TRUE(ui().click(u"Completed"_s));
    EXPECT_LT(circle().scale(), 1) << "jumps";
    EXPECT_NE(fillOfCircle(), TARNEStyle::Colors::accent) << "jumps";
    QEasingCurve easeInOut(QEasingCurve::BezierSpline);
    easeInOut.addCubicBezierSegment({0.42, 0}, {0.58, 1}, {1, 1});
    int animations = 0;
    for (const QObject *const object : circle().findChildren<QObject *>()) {
        const auto easing = object->property("easing");
        if (!easing.isValid())
            continue;
        ++animations;
        EXPECT_EQ(object->property("duration"), 200);
        EXPECT_EQ(easing.value<QEasingCurve>(), easeInOut);
    }
    EXPECT_EQ(animations, 2) << "of the scale and of the fill";
}

TEST_F(ReflectionSheetLayout, TheFooterLiesOnTheMaterial) {
    openReflection(u"Review"_s);
    const QQuickItem &footer = *circle().parentItem()->parentItem();
    EXPECT_EQ(LayoutProbe::color(footer), SystemColors::regularMaterial);
    EXPECT_EQ(footer.size(), QSizeF(520, 24 + 36 + 24));
}

} // namespace
} // namespace tarne::test
