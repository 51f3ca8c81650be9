#pragma once

#include <QAccessible>
#include <QQuickItem>
#include <QQuickView>
#include <QString>
#include <QStringList>

#include <memory>

namespace tarne::test {

/// Shows a piece of QML in a window and uses it as a person does: it finds controls by accessible
/// name and role, presses them with real mouse events, types, and moves on with Tab. What it finds
/// is what an assistive tool finds, so a control that cannot be reached by one fails its test.
///
/// The window is real to Qt but lies on the offscreen platform and is drawn in software.
class UiDriver {
public:
    /// Loads `qml`, a document's text, with the modules of the program at hand. Its root is resized
    /// to `size`. Errors fail the test as any warning does.
    explicit UiDriver(const QString &qml, const QSize &size = QSize(1000, 700));
    /// Loads the document at `url`; `properties` are the root's required properties.
    explicit UiDriver(const QUrl &url, const QVariantMap &properties = {},
                      const QSize &size = QSize(1000, 700));
    ~UiDriver();

    [[nodiscard]] QQuickView &view() { return *m_view; }
    [[nodiscard]] QQuickItem *root() const;

    /// The item with this accessible name (and role), or null. Only what is visible, enabled and
    /// not covered counts.
    [[nodiscard]] QQuickItem *find(const QString &name,
                                   QAccessible::Role role = QAccessible::NoRole) const;
    [[nodiscard]] bool has(const QString &name, QAccessible::Role role = QAccessible::NoRole) const;
    /// The text that reads `text`, a heading or any other, or null.
    [[nodiscard]] QQuickItem *findText(const QString &text) const;
    /// What can be read, headings included, in the order of the tree.
    [[nodiscard]] QStringList texts() const;
    /// Whether an assistive tool is told that the named control can be used.
    [[nodiscard]] bool isEnabled(const QString &name,
                                 QAccessible::Role role = QAccessible::NoRole) const;
    /// The names of all that can be found, in the order of the tree.
    [[nodiscard]] QStringList names(QAccessible::Role role = QAccessible::NoRole) const;
    /// The accessible interface of what `find` finds, or null.
    [[nodiscard]] QAccessibleInterface *accessible(const QString &name) const;

    /// The middle of the named control.
    [[nodiscard]] QPointF middleOf(const QString &name,
                                   QAccessible::Role role = QAccessible::NoRole) const;
    /// Presses and releases the left button on the middle of the named control. False when there is
    /// none.
    [[nodiscard]] bool click(const QString &name, QAccessible::Role role = QAccessible::NoRole);
    void clickAt(const QPointF &position);
    void press(const QPointF &position);
    void release(const QPointF &position);
    /// The second click of a double click whose first click came last.
    void clickAgainAt(const QPointF &position);
    void hover(const QPointF &position);
    void wheel(const QPointF &position, int degrees);
    /// The shape that the pointer has over the middle of the named control.
    [[nodiscard]] Qt::CursorShape cursorOver(const QString &name);

    /// Types into what has the focus.
    void type(const QString &text);
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    /// Presses a key and holds it until it has repeated itself so many times.
    void holdKey(Qt::Key key, int repeats);
    /// What a key that is held sends further on.
    void repeatKey(Qt::Key key, int repeats);
    void releaseKey(Qt::Key key);
    /// The letters and digits that, pressed together with Alt, trigger something in the window.
    [[nodiscard]] QString mnemonics();
    void tab();
    void backtab();
    /// The accessible name of what has the focus, or an empty text.
    [[nodiscard]] QString focusedName() const;

    /// Puts another window in front, as Alt+Tab does: this one stays visible and is not active. X11
    /// and Wayland give different reasons for that; a test may name one.
    void leaveWindow(Qt::FocusReason reason = Qt::ActiveWindowFocusReason);
    /// Brings the window back to the front, also where it was hidden.
    void returnToWindow(Qt::FocusReason reason = Qt::ActiveWindowFocusReason);

    /// Handles what is pending until `condition` holds, and lays out what has changed; false when
    /// it does not within twenty seconds.
    [[nodiscard]] bool waitUntil(const std::function<bool()> &condition);
    /// Handles all events.
    void settle();
    /// What the window shows.
    [[nodiscard]] QImage picture();
    /// Saves what the window shows, to be looked at.
    bool grab(const QString &path);

private:
    /// Gives all items the places that they would have in the next frame, which is slow to come on
    /// a busy machine: a press would miss what it was meant for.
    void layOut() const;
    void show(const QSize &size);
    void activate(QWindow &window, Qt::FocusReason reason);
    void sendKey(Qt::Key key, QEvent::Type type, bool isRepeat);
    [[nodiscard]] QStringList namesOf(std::initializer_list<QAccessible::Role> roles) const;

    std::unique_ptr<QQuickView> m_view;
    /// The window of another program.
    std::unique_ptr<QWindow> m_otherWindow;
};

} // namespace tarne::test
