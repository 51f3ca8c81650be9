#pragma once

#include <QEventPoint>
#include <QMouseEvent>
#include <QObject>
#include <QSet>
#include <QTouchEvent>

#include <optional>

class QQuickWindow;

namespace tarne {

/// Keeps a press from reaching what it has itself brought up or uncovered.
///
/// When what lies over a window changes, a key that is held by then reaches nothing more until it
/// is released, and the second click of a double click whose first click came before the change is
/// dropped: the user has aimed it at something that is gone. A press in another place, of another
/// button or of another key counts at once. A mouse button that is held needs no care: what comes
/// up has not had its press. One for each window, whose child it is; main thread only.
class PressGuard final : public QObject {
    Q_OBJECT

public:
    /// The window's guard, made when it is first asked for. It knows what was pressed since then.
    static PressGuard &of(QQuickWindow &window);

    /// Other things than before lie under the pointer or have the focus from now on.
    void coverChanged();

Q_SIGNALS:
    /// Told before other things than before have the focus.
    void coverChanging();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// What a second click has to repeat.
    struct Press {
        bool isTouch;
        Qt::MouseButton button; ///< None for a touch.
        QPointF position;       ///< On the screen.
        quint64 timestamp;      ///< Milliseconds.
    };

    explicit PressGuard(QQuickWindow &window);

    /// Each of these is told of one kind of event and returns whether it is to be dropped.
    bool pressed(const Press &press);
    bool mousePressed(const QMouseEvent &event);
    bool mouseReleased(const QMouseEvent &event);
    bool touched(const QTouchEvent &event);
    bool keyPressed(const QKeyEvent &event);
    bool keyReleased(const QKeyEvent &event);

    /// The last one that was not dropped.
    std::optional<Press> m_lastPress;
    /// The last one before the cover changed, until another one counts.
    std::optional<Press> m_spentPress;
    Qt::MouseButtons m_droppedButtons;
    bool m_isTouchDropped = false;
    QSet<int> m_heldKeys;
    QSet<int> m_spentKeys;
};

} // namespace tarne
