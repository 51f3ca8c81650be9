#pragma once

#include <private/qaccessiblequickitem_p.h>

namespace tarne {

/// What assistive tools see of an item. The stock interface, which this one goes on from, does not
/// know that an item can be disabled: it tells and presses all alike. It also tells a field's
/// placeholder twice, and a sheet as focused while a button in it is. A control's role cannot be
/// changed there, since the control's template overwrites it: here an item's property
/// `accessibleRole` counts, where it has one. So does its property `accessibleExpanded`, of what
/// opens and closes something: the stock one knows nothing of the kind. It tells a text that is
/// read as one that takes the focus, a press of a button as two actions, and a field as
/// one that nothing but the keyboard writes in.
///
/// It takes the stock one's place by itself, in every program that has this module. There is no
/// public class to go on from, so it is built on a private one of the Qt that it is compiled with.
class AccessibleItem : public QAccessibleQuickItem, public QAccessibleEditableTextInterface {
public:
    explicit AccessibleItem(QQuickItem *item);

    [[nodiscard]] QAccessible::Role role() const override;
    [[nodiscard]] QAccessible::State state() const override;
    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    [[nodiscard]] QStringList actionNames() const override;
    void doAction(const QString &name) override;

    void *interface_cast(QAccessible::InterfaceType type) override;
    void insertText(int offset, const QString &text) override;
    void deleteText(int startOffset, int endOffset) override;
    void replaceText(int startOffset, int endOffset, const QString &text) override;
};

} // namespace tarne
