#pragma once

#include "LayoutProbe.h"
#include "ScreenFixture.h"
#include "TARNEStyle.h"
#include "TextLook.h"

namespace tarne::test {

/// The two sheets that end a session, above the timer screen.
class WrapUpScreenTest : public TimerScreenTest {
protected:
    void openReflection(const QString &goals) {
        startThroughTheSheets(25, goals);
        ui().settle();
        ASSERT_TRUE(ui().click(QStringLiteral("Stop")));
    }
    void openFeedback(const QString &goal) {
        openReflection(goal);
        ASSERT_TRUE(ui().click(QStringLiteral("Completed")));
        write(QStringLiteral("Fine"));
        completeReflection();
    }
    void completeReflection() {
        ASSERT_TRUE(ui().click(QStringLiteral("Complete reflection")));
        awaitRequest();
    }
    /// Gemini is asked once the feedback sheet has been drawn.
    void awaitRequest() {
        ASSERT_TRUE(ui().waitUntil([&] { return feedback.gemini.waitingCount() > 0; }));
    }
    void write(const QString &text) {
        ASSERT_TRUE(ui().click(QStringLiteral("Reflection"), QAccessible::EditableText));
        ui().type(text);
    }
    void answer() { answerWith(FeedbackFakes::answerInFourSections()); }
    void answerWith(const QByteArray &body) {
        feedback.gemini.answer(body);
        time.runPending();
        layOut();
    }
    void fail(const QString &message) {
        feedback.gemini.fail(message);
        time.runPending();
        layOut();
    }
    /// Draws frames until everything has its place.
    void layOut() {
        for (int frame = 0; frame < 3; ++frame)
            EXPECT_FALSE(ui().picture().isNull());
    }
    SessionReflectionView &sheet() { return *view().sessionReflection(); }

    LayoutProbe probe() { return LayoutProbe(ui()); }

    QQuickItem &reflectionPanel() {
        return probe().item(QStringLiteral("How did you do with your goals?"), QAccessible::Dialog);
    }
    QQuickItem &feedbackPanel() {
        return probe().item(QStringLiteral("Session Feedback"), QAccessible::Dialog);
    }

    using Condition = std::function<bool(const QQuickItem &)>;

    /// What is visible in `item` and fulfils `condition`, in the order of the tree.
    static std::vector<QQuickItem *> itemsIn(const QQuickItem &item, const Condition &condition) {
        std::vector<QQuickItem *> found;
        for (QQuickItem *const child : item.childItems()) {
            if (!child->isVisible())
                continue;
            if (condition(*child))
                found.push_back(child);
            const auto below = itemsIn(*child, condition);
            found.insert(found.end(), below.begin(), below.end());
        }
        return found;
    }
    static QQuickItem &firstIn(const QQuickItem &item, const Condition &condition) {
        static QQuickItem nothing;
        const auto found = itemsIn(item, condition);
        if (!found.empty())
            return *found.front();
        ADD_FAILURE() << "there is no such item";
        return nothing;
    }
    static QQuickItem &symbolIn(const QQuickItem &item, const QString &name) {
        return firstIn(item, [&](const QQuickItem &child) {
            return isSymbol(child) && nameOf(child) == name;
        });
    }
    static std::vector<QQuickItem *> linesIn(const QQuickItem &item) {
        return itemsIn(item, [](const QQuickItem &child) {
            return child.inherits("QQuickRectangle") && child.height() == 1;
        });
    }

    static void expectSymbol(const QQuickItem &symbol, double size, QFont::Weight weight,
                             const QColor &color) {
        EXPECT_EQ(symbol.property("size"), size) << qPrintable(nameOf(symbol));
        EXPECT_EQ(symbol.property("weight"), static_cast<int>(weight))
            << qPrintable(nameOf(symbol));
        EXPECT_EQ(LayoutProbe::color(symbol), color) << qPrintable(nameOf(symbol));
    }

    /// The regular material in a rounded rectangle with the sheets' shadow.
    static void expectSheetGround(const QQuickItem &panel) {
        QColor shadow = SystemColors::black;
        shadow.setAlphaF(0.08F);
        EXPECT_EQ(LayoutProbe::color(panel), SystemColors::regularMaterial);
        EXPECT_EQ(panel.property("cornerRadius"), 16);
        EXPECT_EQ(panel.property("shadowColor").value<QColor>(), shadow);
        EXPECT_EQ(panel.property("shadowRadius"), 24);
        EXPECT_EQ(panel.property("shadowOffset"), 8);
    }
    /// The control that leaves a sheet and nothing more.
    void expectCloseControl() {
        const QQuickItem &close = probe().item(QStringLiteral("Close"));
        EXPECT_EQ(close.property("symbol"), QStringLiteral("xmark.circle.fill"));
        EXPECT_EQ(close.property("size"), 20);
        EXPECT_EQ(LayoutProbe::color(close), SystemColors::secondaryLabel);
        EXPECT_EQ(close.property("hierarchical"), true);
        expectSymbol(symbolIn(close, QStringLiteral("xmark.circle.fill")), 20, QFont::Normal,
                     SystemColors::secondaryLabel);
    }
    /// A line of one point in the separator's colour at three tenths.
    static void expectSeparator(const QQuickItem &line) {
        EXPECT_EQ(LayoutProbe::color(line), SystemColors::separator);
        EXPECT_EQ(line.opacity(), 0.3);
    }

private:
    static bool isSymbol(const QQuickItem &item) { return item.inherits("tarne::SymbolIcon"); }
    static QString nameOf(const QQuickItem &symbol) { return symbol.property("symbol").toString(); }
};

/// The two sheets that end a session, above the timer screen, used by accessible name.
class WrapUpTest : public WrapUpScreenTest {
protected:
    /// Moves the focus with Tab.
    void tabTo(const QString &name) {
        for (int i = 0; i < 30 && ui().focusedName() != name; ++i)
            ui().tab();
        ASSERT_EQ(ui().focusedName(), name);
    }
    bool canComplete() { return ui().isEnabled(QStringLiteral("Complete reflection")); }
    /// The item of a visible text or control.
    const QQuickItem &item(const QString &name, QAccessible::Role role = QAccessible::NoRole) {
        static const QQuickItem nothing;
        const QQuickItem *const found = ui().find(name, role);
        EXPECT_TRUE(found) << qPrintable(name);
        return found ? *found : nothing;
    }
    bool showsTextThatEndsWith(const QString &end) {
        return std::ranges::any_of(
            ui().texts(), [&](const QString &text) { return text.trimmed().endsWith(end); });
    }
    void expectTheBeginningOfALongTextAlone() {
        EXPECT_TRUE(showsTextThatEndsWith(QStringLiteral("word")));
        EXPECT_FALSE(showsTextThatEndsWith(QStringLiteral("end."))) << "laid out in one piece";
    }
    const QString longText = QStringLiteral("word ").repeated(10'000) + QStringLiteral("end.");
    /// The circle of the complete button, enabled or not.
    QQuickItem *circle() { return item(QStringLiteral("Complete reflection")).parentItem(); }
    QRectF place(const QString &name, QAccessible::Role role = QAccessible::NoRole) {
        const QQuickItem &found = item(name, role);
        return found.mapRectToScene(found.boundingRect());
    }
};

} // namespace tarne::test
