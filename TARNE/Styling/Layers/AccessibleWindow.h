#pragma once

#include <QAccessibleObject>
#include <QQuickWindow>

namespace tarne {

/// What assistive tools see of a window: while a modal layer covers it, that layer and nothing
/// behind it. The stock interface of a window shows everything, covered or not.
///
/// It takes the stock one's place by itself, in every program that has this module.
class AccessibleWindow : public QAccessibleObject {
public:
    explicit AccessibleWindow(QQuickWindow *window);

    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::Window; }
    [[nodiscard]] QAccessible::State state() const override;
    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    [[nodiscard]] QRect rect() const override { return window()->geometry(); }
    [[nodiscard]] QAccessibleInterface *parent() const override;
    [[nodiscard]] int childCount() const override;
    [[nodiscard]] QAccessibleInterface *child(int index) const override;
    int indexOfChild(const QAccessibleInterface *child) const override;
    QAccessibleInterface *childAt(int x, int y) const override;
    [[nodiscard]] QAccessibleInterface *focusChild() const override;
    [[nodiscard]] QQuickWindow *window() const override;

private:
    [[nodiscard]] QList<QAccessibleInterface *> children() const;
};

} // namespace tarne
