#include "ComposingInputMethod.h"
#include "ControlDocument.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QQmlProperty>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace tarne::test {
namespace {

TEST(TextField, IsNamedByItsPlaceholderAndTakesWhatIsTyped) {
    UiDriver ui(
        column(u"TextField { placeholderText: '5-180'; onTextEdited: root.typed = text }"_s));
    EXPECT_TRUE(ui.click(u"5-180"_s, QAccessible::EditableText));
    ui.type(u"90"_s);
    EXPECT_EQ(typed(ui), u"90"_s);
}

const QString secureField = u"SecureField { width: 300; placeholderText: 'Enter your key'; "
                            "onTextEdited: text => root.typed = text; "
                            "onVisibilityToggled: isValueVisible = !isValueVisible }"_s;

TEST(SecureField, IsAPasswordFieldThatNeverTellsItsValue) {
    UiDriver ui(column(secureField));
    EXPECT_TRUE(ui.click(u"Enter your key"_s));
    ui.type(u"sesame"_s);
    EXPECT_EQ(typed(ui), u"sesame"_s);
    QAccessibleInterface *const field = ui.accessible(u"Enter your key"_s);
    EXPECT_TRUE(field->state().passwordEdit);
    EXPECT_FALSE(field->text(QAccessible::Value).contains(u"sesame"_s));
    EXPECT_FALSE(field->textInterface()) << "which tells how long it is";
    EXPECT_FALSE(field->valueInterface());
}

TEST(SecureField, TakesAllOfALongKeyThatIsPasted) {
    UiDriver ui(column(secureField));
    EXPECT_TRUE(ui.click(u"Enter your key"_s, QAccessible::EditableText));
    const QString key(100'000, u'k');
    QGuiApplication::clipboard()->setText(key);
    ui.key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_TRUE(typed(ui) == key);
    QGuiApplication::clipboard()->clear();
}

TEST(SecureField, TellsInputMethodsThatItHoldsASecretShownOrNot) {
    UiDriver ui(column(secureField));
    const auto hints = [&] {
        QInputMethodQueryEvent query(Qt::ImHints);
        QCoreApplication::sendEvent(ui.find(u"Enter your key"_s), &query);
        return Qt::InputMethodHints(query.value(Qt::ImHints).toInt());
    };
    const Qt::InputMethodHints secret =
        Qt::ImhSensitiveData | Qt::ImhNoPredictiveText | Qt::ImhNoAutoUppercase;
    EXPECT_EQ(hints(), secret | Qt::ImhHiddenText);
    EXPECT_TRUE(ui.click(u"Show key"_s));
    EXPECT_EQ(hints(), secret);
}

TEST(SecureField, ItsDotsAndAKeyAreNotShaped) {
    UiDriver ui(column(secureField));
    const auto font = ui.find(u"Enter your key"_s)->property("font").value<QFont>();
    EXPECT_TRUE(font.styleStrategy() & QFont::PreferNoShaping) << "which takes seconds for 1 MB";
    EXPECT_EQ(font.family(), u"Inter"_s);
}

TEST(SecureField, ItsEyeIsCrossedOutWhileTheValueIsVisible) {
    UiDriver ui(column(secureField));
    EXPECT_EQ(ui.find(u"Show key"_s)->property("symbol"), u"eye"_s);
    EXPECT_TRUE(ui.click(u"Show key"_s));
    EXPECT_EQ(ui.find(u"Hide key"_s)->property("symbol"), u"eye.slash"_s);
}

TEST(SecureField, ItsEyeShowsAndHidesTheValueOnScreenOnly) {
    UiDriver ui(column(secureField));
    EXPECT_TRUE(ui.click(u"Enter your key"_s));
    ui.type(u"sesame"_s);
    QQuickItem *const field = ui.find(u"Enter your key"_s);
    EXPECT_EQ(field->property("displayText").toString(), u"••••••"_s);
    EXPECT_TRUE(ui.click(u"Show key"_s));
    EXPECT_EQ(field->property("displayText").toString(), u"sesame"_s);
    EXPECT_FALSE(
        ui.accessible(u"Enter your key"_s)->text(QAccessible::Value).contains(u"sesame"_s));
    EXPECT_TRUE(ui.click(u"Hide key"_s));
    EXPECT_EQ(field->property("displayText").toString(), u"••••••"_s);
}

TEST(TextField, TellsWhatAnInputMethodCommits) {
    ComposingInputMethod inputMethod;
    UiDriver ui(column(
        u"TextField { placeholderText: 'words'; onTextEdited: root.typed = text } "
        "SecureField { width: 300; placeholderText: 'key'; onTextEdited: text => root.typed = text }"_s));
    for (const QString &field : {u"words"_s, u"key"_s}) {
        EXPECT_TRUE(ui.click(field));
        inputMethod.compose(u"本"_s);
        inputMethod.commit();
        EXPECT_EQ(typed(ui), u"本"_s) << qPrintable(field);
        ui.root()->setProperty("typed", QString());
    }
}

} // namespace
} // namespace tarne::test
