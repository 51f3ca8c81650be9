#include "SecretGuard.h"

#include "AccessibleWindow.h"

#include <QAccessible>
#include <QAccessibleObject>
#include <QCoreApplication>
#include <QQuickWindow>

namespace tarne {
namespace {

/// Marks a guarded field.
constexpr const char *secretProperty = "tarne_isSecret";

class SecretFieldInterface : public QAccessibleObject, public QAccessibleActionInterface {
public:
    explicit SecretFieldInterface(QQuickItem *item) : QAccessibleObject(item) {}

    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::EditableText; }

    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state;
        state.passwordEdit = true;
        state.editable = true;
        state.focusable = item()->isEnabled();
        state.focused = item()->hasActiveFocus();
        state.disabled = !item()->isEnabled();
        state.invisible =
            !item()->isVisible() || !item()->window() || !item()->window()->isVisible();
        return state;
    }

    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? item()->property("placeholderText").toString()
                                         : QString();
    }

    [[nodiscard]] QRect rect() const override {
        if (!item()->window())
            return {};
        const QRectF inScene = item()->mapRectToScene(item()->boundingRect());
        return inScene.translated(item()->window()->position()).toRect();
    }

    [[nodiscard]] QAccessibleInterface *parent() const override {
        return AccessibleWindow::parentOf(*item());
    }

    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] QAccessibleInterface *child(int) const override { return nullptr; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    [[nodiscard]] QWindow *window() const override { return item()->window(); }

    void *interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface
                   ? static_cast<QAccessibleActionInterface *>(this)
                   : nullptr;
    }
    [[nodiscard]] QStringList actionNames() const override { return {setFocusAction()}; }
    void doAction(const QString &name) override {
        if (name == setFocusAction())
            item()->forceActiveFocus();
    }
    [[nodiscard]] QStringList keyBindingsForAction(const QString &) const override { return {}; }

private:
    [[nodiscard]] QQuickItem *item() const { return static_cast<QQuickItem *>(object()); }
};

/// Asked for every class of an object, the most derived first: well before the stock interface,
/// which answers for QQuickItem.
QAccessibleInterface *makeSecretFieldInterface(const QString &, QObject *object) {
    if (!object || !object->property(secretProperty).toBool())
        return nullptr;
    return new SecretFieldInterface(static_cast<QQuickItem *>(object));
}

void installSecretFieldInterface() {
    QAccessible::installFactory(makeSecretFieldInterface);
}
Q_COREAPP_STARTUP_FUNCTION(installSecretFieldInterface)

} // namespace

void SecretGuard::setTarget(QQuickItem *target) {
    if (m_target == target)
        return;
    m_target = target;
    if (target) {
        target->setProperty(secretProperty, true);
        // A tool that is running has had the stock interface made already.
        if (QAccessibleInterface *const stock = QAccessible::queryAccessibleInterface(target))
            QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(stock));
    }
    Q_EMIT targetChanged();
}

} // namespace tarne
