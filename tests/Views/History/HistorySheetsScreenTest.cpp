#include "EditReflectionSheet.h"
#include "ExportSheet.h"
#include "ItemLook.h"
#include "RecordingPasteboard.h"
#include "TARNEStyle.h"
#include "TextLook.h"
#include "UiDriver.h"

#include <QProperty>
#include <QTimeZone>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace tarne;
using namespace Qt::StringLiterals;

namespace {

QUrl document(const QString &name) {
    return QUrl(u"qrc:/qt/qml/TARNE/Views/"_s + name);
}

/// The sheet over an entry of 2026-03-02, 12:00, with the reflection "before".
struct EditedSheet {
    Calendar calendar{QTimeZone::utc(), QLocale(u"en_US"_s)};
    QProperty<QString> reflection{u"before"_s};
    QProperty<bool> isPresented{true};
    QStringList saved;
    EditReflectionSheet sheet{
        {.sessionDate = *calendar.date({2026, 3, 2, 12}), .goals = {}, .duration = 0},
        &reflection,
        &isPresented,
        calendar,
        [this](const QString &text) { saved += text; }};
    test::UiDriver ui{document(u"EditReflectionPanel.qml"_s),
                      {{u"view"_s, QVariant::fromValue(&sheet)}},
                      QSize(500, 300)};
};

struct ShownExport {
    explicit ShownExport(const QString &text) : sheet(text, &isPresented, pasteboard) {}

    QProperty<bool> isPresented{true};
    test::RecordingPasteboard pasteboard;
    ExportSheet sheet;
    test::UiDriver ui{document(u"ExportPanel.qml"_s),
                      {{u"view"_s, QVariant::fromValue(&sheet)}},
                      QSize(700, 500)};
};

const QString prompt = u"Your thoughts about this session:"_s;

} // namespace

TEST(EditReflectionScreen, EditsSavesAndCloses) {
    EditedSheet edited;
    ASSERT_TRUE(edited.ui.click(prompt, QAccessible::EditableText));
    edited.ui.key(Qt::Key_End, Qt::ControlModifier);
    edited.ui.type(u" after"_s);
    ASSERT_TRUE(edited.ui.click(u"Save"_s));
    EXPECT_EQ(edited.saved, QStringList{u"before after"_s});
    EXPECT_FALSE(edited.isPresented);
}

TEST(EditReflectionScreen, CancelSavesNothingAndLeavesThePresenterWhatWasTyped) {
    EditedSheet edited;
    ASSERT_TRUE(edited.ui.click(prompt, QAccessible::EditableText));
    edited.ui.key(Qt::Key_End, Qt::ControlModifier);
    edited.ui.type(u" after"_s);
    ASSERT_TRUE(edited.ui.click(u"Cancel"_s));
    EXPECT_EQ(edited.saved, QStringList());
    EXPECT_FALSE(edited.isPresented);
    EXPECT_EQ(edited.reflection.value(), u"before after"_s);
}

TEST(EditReflectionScreen, ShowsATextThatThePresenterChanges) {
    EditedSheet edited;
    edited.reflection = u"another"_s;
    edited.ui.settle();
    EXPECT_EQ(edited.ui.find(prompt, QAccessible::EditableText)->property("text").toString(),
              u"another"_s);
}

TEST(EditReflectionScreen, HasItsSizeItsTextsAndTheirLook) {
    const EditedSheet edited;
    using Type = TARNEStyle::Typography;
    EXPECT_EQ(edited.ui.root()->implicitWidth(), 500);
    EXPECT_EQ(edited.ui.root()->property("ownHeight").toDouble(), 300);
    test::expectLook(edited.ui, u"Edit Reflection"_s, Type::system(17, QFont::DemiBold),
                     TARNEStyle::Colors::primaryText);
    test::expectLook(edited.ui, u"Monday, March 2, 2026 at 12:00 PM"_s, Type::system(10),
                     SystemColors::secondaryLabel);
    test::expectLook(edited.ui, prompt, Type::system(13, QFont::Bold),
                     TARNEStyle::Colors::primaryText);
    const QQuickItem *const editor =
        edited.ui.find(prompt, QAccessible::EditableText)->parentItem()->parentItem();
    EXPECT_GE(editor->height(), 120);
    for (const QString &button : {u"Cancel"_s, u"Save"_s})
        EXPECT_LE(test::placeOf(*edited.ui.find(button)).bottom(), 300) << qPrintable(button);
}

TEST(EditReflectionScreen, TheEditorLiesOnAStrokedRoundedGround) {
    const EditedSheet edited;
    const QQuickItem *const text = edited.ui.find(prompt, QAccessible::EditableText);
    const QQuickItem &ground = *test::rectangleAround(text);
    EXPECT_EQ(test::groundOf(ground), std::pair(SystemColors::textBackground, 8.0));
    EXPECT_EQ(test::outlineOf(ground), std::pair(SystemColors::separator, 1.0));
    EXPECT_GE(ground.height() - 2 * 8, 120);
    const QRectF inner = test::placeOf(*text->parentItem()->parentItem());
    EXPECT_EQ(inner, test::placeOf(ground).adjusted(8, 8, -8, -8));
    EXPECT_EQ(text->property("font").value<QFont>().pixelSize(), 13);
}

TEST(EditReflectionScreen, SaveAloneIsProminent) {
    const EditedSheet edited;
    EXPECT_EQ(edited.ui.find(u"Save"_s)->property("isProminent"), true);
    EXPECT_EQ(edited.ui.find(u"Cancel"_s)->property("isProminent"), false);
}

TEST(EditReflectionScreen, ItsPartsStandApartAndAtTheEdgesOfAPaddingOf24) {
    const EditedSheet edited;
    const auto place = [&](const QString &name, QAccessible::Role role) {
        return test::placeOf(*edited.ui.find(name, role));
    };
    const QRectF title = place(u"Edit Reflection"_s, QAccessible::Heading);
    const QRectF date = place(u"Monday, March 2, 2026 at 12:00 PM"_s, QAccessible::StaticText);
    const QRectF label = place(prompt, QAccessible::StaticText);
    const QRectF ground =
        test::placeOf(*test::rectangleAround(edited.ui.find(prompt, QAccessible::EditableText)));
    EXPECT_EQ(title.left(), 24);
    EXPECT_EQ(date.topLeft(), title.bottomLeft() + QPointF(0, 4));
    EXPECT_EQ(place(u"Cancel"_s, QAccessible::Button).right(), 500 - 24);
    EXPECT_EQ(label.topLeft(), date.bottomLeft() + QPointF(0, 20));
    EXPECT_EQ(ground.topLeft(), label.bottomLeft() + QPointF(0, 8));
    EXPECT_EQ(ground.right(), 500 - 24);
    EXPECT_EQ(place(u"Save"_s, QAccessible::Button).topRight(),
              ground.bottomRight() + QPointF(0, 20));
}

TEST(EditReflectionScreen, KeepsTheSamePaddingAboveAndBelow) {
    const EditedSheet edited;
    const double above =
        test::placeOf(*edited.ui.find(u"Edit Reflection"_s, QAccessible::Heading)).top();
    const double below =
        300 - test::placeOf(*edited.ui.find(u"Save"_s, QAccessible::Button)).bottom();
    EXPECT_NEAR(above, below, 0.5);
    EXPECT_GT(above, 0);
    EXPECT_LE(above, 24);
}

TEST(EditReflectionScreen, TabGoesFromTheEditorToSaveToCancelAndBackToTheEditor) {
    EditedSheet edited;
    ASSERT_TRUE(edited.ui.click(prompt, QAccessible::EditableText));
    for (const QString &next : {u"Save"_s, u"Cancel"_s, prompt}) {
        edited.ui.tab();
        EXPECT_EQ(edited.ui.focusedName(), next);
    }
}

TEST(ExportScreen, ShowsAndCopiesItsText) {
    ShownExport shown(u"# <i>History</i>"_s);
    EXPECT_TRUE(shown.ui.has(u"# <i>History</i>"_s));
    ASSERT_TRUE(shown.ui.click(u"Copy to Clipboard"_s));
    EXPECT_EQ(shown.pasteboard.text, u"# <i>History</i>"_s);
    EXPECT_TRUE(shown.isPresented);
    ASSERT_TRUE(shown.ui.click(u"Done"_s));
    EXPECT_FALSE(shown.isPresented);
}

TEST(ExportScreen, HasItsSizeAndItsTitle) {
    const ShownExport shown(u"text"_s);
    EXPECT_EQ(shown.ui.root()->implicitWidth(), 700);
    EXPECT_EQ(shown.ui.root()->property("ownHeight").toDouble(), 500);
    test::expectLook(shown.ui, u"Export Session History"_s,
                     TARNEStyle::Typography::system(17, QFont::DemiBold),
                     TARNEStyle::Colors::primaryText);
}

TEST(ExportScreen, ALongTextScrollsUnderItsButtons) {
    const QString text = u"line\n"_s.repeated(200);
    ShownExport shown(text);
    const auto place = [&] { return test::placeOf(*shown.ui.find(text)); };
    EXPECT_GT(place().height(), 1000);
    EXPECT_EQ(shown.ui.find(u"Copy to Clipboard"_s)->isVisible(), true);
    EXPECT_LE(test::placeOf(*shown.ui.find(u"Copy to Clipboard"_s)).bottom(), 500);
    const double before = place().top();
    shown.ui.wheel(QPointF(350, 250), -120);
    EXPECT_TRUE(shown.ui.waitUntil([&] { return place().top() < before; }));
}

TEST(ExportScreen, CopyAloneIsProminent) {
    const ShownExport shown(u"text"_s);
    EXPECT_EQ(shown.ui.find(u"Copy to Clipboard"_s)->property("isProminent"), true);
    EXPECT_EQ(shown.ui.find(u"Done"_s)->property("isProminent"), false);
}

TEST(ExportScreen, ItsPartsStandApartWithinAPaddingOf24) {
    const ShownExport shown(u"text"_s);
    const auto place = [&](const QString &name) { return test::placeOf(*shown.ui.find(name)); };
    const QQuickItem &ground = *test::rectangleAround(shown.ui.find(u"text"_s));
    EXPECT_EQ(test::groundOf(ground), std::pair(SystemColors::textBackground, 8.0));
    EXPECT_EQ(
        test::placeOf(*shown.ui.find(u"Export Session History"_s, QAccessible::Heading)).left(),
        24);
    EXPECT_EQ(place(u"Done"_s).topRight(), QPointF(700 - 24, 24));
    EXPECT_EQ(test::placeOf(ground).topLeft(), QPointF(24, place(u"Done"_s).bottom() + 20));
    EXPECT_EQ(test::placeOf(ground).right(), 700 - 24);
    EXPECT_EQ(place(u"Copy to Clipboard"_s).topLeft(),
              test::placeOf(ground).bottomLeft() + QPointF(0, 20));
    EXPECT_EQ(place(u"Copy to Clipboard"_s).bottom(), 500 - 24);
    EXPECT_EQ(place(u"text"_s).topLeft(), test::placeOf(ground).topLeft() + QPointF(16, 16));
}

TEST(ExportScreen, TabGoesFromDoneToTheTextToCopy) {
    ShownExport shown(u"text"_s);
    QStringList order;
    for (int i = 0; i < 3; ++i) {
        shown.ui.tab();
        order += shown.ui.focusedName();
    }
    EXPECT_THAT(order, testing::ElementsAre(u"Done"_s, u"Export Session History"_s,
                                            u"Copy to Clipboard"_s));
}
