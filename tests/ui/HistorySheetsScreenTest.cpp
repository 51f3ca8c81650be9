#include "EditReflectionSheet.h"
#include "ExportSheet.h"
#include "RecordingPasteboard.h"
#include "TARNEStyle.h"
#include "TextLook.h"
#include "UiDriver.h"

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
    QStringList saved;
    EditReflectionSheet sheet{{.sessionDate = *calendar.date({2026, 3, 2, 12})},
                              u"before"_s,
                              calendar,
                              [this](const QString &text) { saved += text; }};
    test::UiDriver ui{document(u"EditReflectionPanel.qml"_s),
                      {{u"view"_s, QVariant::fromValue(&sheet)}},
                      QSize(500, 300)};
};

struct ShownExport {
    explicit ShownExport(const QString &text) : sheet(text, pasteboard) {}

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
    EXPECT_FALSE(edited.sheet.isPresented());
}

TEST(EditReflectionScreen, CancelSavesNothing) {
    EditedSheet edited;
    ASSERT_TRUE(edited.ui.click(prompt, QAccessible::EditableText));
    edited.ui.type(u"x"_s);
    ASSERT_TRUE(edited.ui.click(u"Cancel"_s));
    EXPECT_EQ(edited.saved, QStringList());
    EXPECT_FALSE(edited.sheet.isPresented());
}

TEST(EditReflectionScreen, HasItsSizeItsTextsAndTheirLook) {
    const EditedSheet edited;
    using Type = TARNEStyle::Typography;
    EXPECT_EQ(edited.ui.root()->implicitWidth(), 500);
    EXPECT_EQ(edited.ui.root()->property("ownHeight").toDouble(), 300);
    test::expectLook(edited.ui, u"Edit Reflection"_s, Type::system(17, QFont::DemiBold),
                     TARNEStyle::Colors::primaryText);
    test::expectLook(edited.ui, u"Monday, March 2, 2026 at 12:00 PM"_s, Type::system(11),
                     SystemColors::secondaryLabel);
    test::expectLook(edited.ui, prompt, Type::system(13, QFont::Bold),
                     TARNEStyle::Colors::primaryText);
    const QQuickItem *const editor =
        edited.ui.find(prompt, QAccessible::EditableText)->parentItem()->parentItem();
    EXPECT_GE(editor->height(), 120);
    for (const QString &button : {u"Cancel"_s, u"Save"_s})
        EXPECT_LE(test::placeOf(*edited.ui.find(button)).bottom(), 300) << qPrintable(button);
}

TEST(EditReflectionScreen, TabGoesFromTheEditorToTheButtons) {
    EditedSheet edited;
    ASSERT_TRUE(edited.ui.click(prompt, QAccessible::EditableText));
    QStringList order;
    for (int i = 0; i < 3; ++i) {
        edited.ui.tab();
        order += edited.ui.focusedName();
    }
    EXPECT_THAT(order, testing::IsSupersetOf({u"Save"_s, u"Cancel"_s}));
}

TEST(ExportScreen, ShowsAndCopiesItsText) {
    ShownExport shown(u"# <i>History</i>"_s);
    EXPECT_TRUE(shown.ui.has(u"# <i>History</i>"_s));
    ASSERT_TRUE(shown.ui.click(u"Copy to Clipboard"_s));
    EXPECT_EQ(shown.pasteboard.text, u"# <i>History</i>"_s);
    EXPECT_TRUE(shown.sheet.isPresented());
    ASSERT_TRUE(shown.ui.click(u"Done"_s));
    EXPECT_FALSE(shown.sheet.isPresented());
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
