#pragma once

#include "UiDriver.h"

#include <QFont>
#include <QQuickItem>
#include <QQuickWindow>

#include <vector>

namespace tarne::test {

/// Finds what of a window's texts cannot be read as it stands: elided, larger than its place, cut
/// off by something around it that does not scroll, out of its button or of the window, or over
/// another text or a symbol.
class ClippedTexts {
public:
    /// One line for each such text, with the reason; empty where all is well.
    static QStringList in(QQuickWindow &window) {
        ClippedTexts found(window);
        for (const QQuickItem *const layer : window.contentItem()->childItems()) {
            found.m_layer.clear();
            found.m_symbols.clear();
            found.walk(*layer);
            found.lookAtSymbols();
        }
        return found.m_lines;
    }

private:
    struct Written {
        const QQuickItem *text;
        QRectF place;
    };

    explicit ClippedTexts(const QQuickWindow &window)
        : m_window(QPointF(), QSizeF(window.size())) {}

    void walk(const QQuickItem &item) {
        if (!item.isVisible() || item.opacity() == 0)
            return;
        if (item.inherits("QQuickText") && !textOf(item).isEmpty())
            look(item);
        if (item.inherits("tarne::SymbolIcon"))
            m_symbols.push_back({&item, seenOf(item, placeOf(item))});
        for (const QQuickItem *const child : item.childItems())
            walk(*child);
    }

    void look(const QQuickItem &text) {
        const QSizeF content(text.property("contentWidth").toReal(),
                             text.property("contentHeight").toReal());
        // A line's own room above and below its letters may be cut.
        const double leading = text.property("font").value<QFont>().pixelSize() * 0.3;
        if (text.property("truncated").toBool())
            report(text, QStringLiteral("is elided"));
        if (content.width() > text.width() + 0.5)
            report(text, QStringLiteral("is %1 wide in a place of %2")
                             .arg(content.width())
                             .arg(text.width()));
        // Below the last line the space between two lines is not there.
        const double spacing = text.property("lineSpacing").toReal();
        if (content.height() - spacing > text.height() + leading)
            report(text, QStringLiteral("is %1 high in a place of %2")
                             .arg(content.height())
                             .arg(text.height()));
        const QRectF shown = placeOf(text).adjusted(0.5, leading, -0.5, -leading);
        bool scrolls = false;
        for (const QQuickItem *around = text.parentItem(); around; around = around->parentItem()) {
            const QRectF edges = placeOf(*around);
            if (around->inherits("QQuickAbstractButton") &&
                (edges.left() > shown.left() || edges.right() < shown.right()))
                report(text, QStringLiteral("stands out from its button"));
            scrolls = scrolls || around->property("contentY").isValid();
            if (!around->clip())
                continue;
            if (edges.left() > shown.left() || edges.right() < shown.right())
                report(text, QStringLiteral("is cut off at a side"));
            else if (!scrolls && (edges.top() > shown.top() || edges.bottom() < shown.bottom()))
                report(text, QStringLiteral("is cut off above or below"));
        }
        if (shown.left() < 0 || shown.right() > m_window.right() ||
            (!scrolls && (shown.top() < 0 || shown.bottom() > m_window.bottom())))
            report(text, QStringLiteral("is out of the window"));
        const QRectF seen = seenOf(text, shown);
        if (seen.isEmpty())
            return;
        for (const Written &other : m_layer) {
            if (other.place.intersects(seen))
                report(text, QStringLiteral("lies over \"%1\"").arg(textOf(*other.text)));
        }
        m_layer.push_back({&text, seen});
    }

    void lookAtSymbols() {
        for (const Written &symbol : m_symbols) {
            for (const Written &other : m_layer) {
                if (other.place.intersects(symbol.place))
                    report(*other.text, QStringLiteral("lies over the symbol ") +
                                            symbol.text->property("symbol").toString());
            }
        }
    }

    static QRectF placeOf(const QQuickItem &item) {
        return item.mapRectToScene(QRectF(QPointF(), item.size()));
    }

    /// What of an item's place is not cut off by what is around it.
    static QRectF seenOf(const QQuickItem &item, QRectF place) {
        for (const QQuickItem *around = item.parentItem(); around; around = around->parentItem()) {
            if (around->clip())
                place &= placeOf(*around);
        }
        return place;
    }

    static QString textOf(const QQuickItem &item) { return item.property("text").toString(); }

    void report(const QQuickItem &text, const QString &what) {
        m_lines += QStringLiteral("\"%1\" %2").arg(textOf(text), what);
    }

    const QRectF m_window;
    std::vector<Written> m_layer; ///< Of one layer of the window, which may lie over others.
    std::vector<Written> m_symbols;
    QStringList m_lines;
};

} // namespace tarne::test
