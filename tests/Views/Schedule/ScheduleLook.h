#pragma once

#include "ItemLook.h"
#include "RoundedBox.h"
#include "ShadowImage.h"
#include "TARNEStyle.h"
#include "UiDriver.h"

#include <gmock/gmock.h>

#include <functional>

namespace tarne::test {

/// A text's font in the system's family, and its colour as six hexadecimal digits.
struct TextLook {
    QString text;
    double size;
    QFont::Weight weight;
    QString hex;
};

/// Words to ask the schedule's window how its texts and controls look.
class ScheduleLook {
protected:
    explicit ScheduleLook(std::function<UiDriver &()> ui) : m_window(std::move(ui)) {}

    static QColor color(const QString &hex) { return QColor(u'#' + hex); }
    static QColor pale(const QString &hex, float opacity) {
        QColor pale = color(hex);
        pale.setAlphaF(opacity);
        return pale;
    }

    const QQuickItem &text(const QString &words) {
        return found(m_window().findText(words), words);
    }
    const QQuickItem &button(const QString &name) {
        return found(m_window().find(name, QAccessible::Button), name);
    }
    const QQuickItem &background(const QString &name) {
        return found(button(name).property("background").value<QQuickItem *>(), name);
    }
    /// What a button shows of its name.
    const QQuickItem &textOfButton(const QString &name) {
        return found(textBelow(button(name), name), name);
    }

    /// The place of a text or, where no text reads so, of a button.
    QRectF place(const QString &name) {
        const QQuickItem *const words = m_window().findText(name);
        return place(words ? *words : button(name));
    }
    static QRectF place(const QQuickItem &item) {
        return item.mapRectToScene(QRectF(QPointF(), item.size()));
    }
    static QRectF placeOf(const QQuickItem &item) { return place(item); }

    SymbolLook mark(const QString &words) { return markBeside(&text(words)); }
    std::vector<SymbolLook> marksOf(const QString &name) {
        return looksOf(symbolsIn(&button(name)));
    }

    void expectText(const QString &words, const QFont &font, const QColor &expected) {
        expectLook(text(words), font, expected);
    }
    void expectTextOfButton(const QString &name, const QFont &font, const QColor &expected) {
        expectLook(textOfButton(name), font, expected);
    }
    /// The square close button that the screen and its sheet share.
    void expectCloseButton(const QString &name) {
        EXPECT_EQ(button(name).size(), QSizeF(44, 44));
        EXPECT_EQ(groundOf(background(name)), std::pair(color(QStringLiteral("F9FAFB")), 10.0));
        EXPECT_EQ(outlineOf(background(name)), std::pair(color(QStringLiteral("E5E7EB")), 1.0));
    }
    /// A vertical gradient from one indigo to a darker one, and its shadow.
    void expectGradient(const QString &name, double radius) {
        const RoundedBox *gradient = nullptr;
        const ShadowImage *shadow = nullptr;
        for (const QQuickItem *item : background(name).childItems()) {
            if (item->opacity() < 1)
                continue;
            if (const auto *const box = qobject_cast<const RoundedBox *>(item))
                gradient = box; // The last lies on top.
            else if (const auto *const image = qobject_cast<const ShadowImage *>(item))
                shadow = image;
        }
        ASSERT_TRUE(gradient && shadow) << qPrintable(name);
        EXPECT_EQ(groundOf(*gradient), std::pair(color(QStringLiteral("4F46E5")), radius));
        EXPECT_EQ(gradient->property("bottomColor").value<QColor>(),
                  color(QStringLiteral("4338CA")));
        EXPECT_EQ(shadow->property("color").value<QColor>().name(QColor::HexArgb),
                  pale(QStringLiteral("4F46E5"), 0.25F).name(QColor::HexArgb));
        EXPECT_EQ(shadow->property("cornerRadius"), radius);
        EXPECT_EQ(shadow->property("blurRadius"), 8);
        EXPECT_EQ(shadow->property("offsetX"), 0);
        EXPECT_EQ(shadow->property("offsetY"), 4);
    }

private:
    static void expectLook(const QQuickItem &item, const QFont &font, const QColor &expected) {
        const QByteArray words = item.property("text").toString().toUtf8();
        const auto actual = item.property("font").value<QFont>();
        EXPECT_EQ(actual.family(), font.families().constFirst()) << words.constData();
        EXPECT_EQ(actual.pixelSize(), font.pixelSize()) << words.constData();
        EXPECT_EQ(actual.weight(), font.weight()) << words.constData();
        EXPECT_EQ(item.property("color").value<QColor>(), expected) << words.constData();
    }
    static const QQuickItem *textBelow(const QQuickItem &item, const QString &words) {
        if (item.inherits("QQuickText") && item.property("text") == words)
            return &item;
        for (const QQuickItem *child : item.childItems()) {
            if (const QQuickItem *const found = textBelow(*child, words))
                return found;
        }
        return nullptr;
    }
    const QQuickItem &found(const QQuickItem *item, const QString &name) {
        EXPECT_TRUE(item) << "nothing is " << qPrintable(name);
        return item ? *item : *m_window().root();
    }

    std::function<UiDriver &()> m_window;
};

} // namespace tarne::test
