#include "SecretGuard.h"

#include "AccessibleItem.h"

#include <QAccessible>
#include <QCoreApplication>

namespace tarne {
namespace {

/// Marks a guarded field.
constexpr const char *secretProperty = "tarne_isSecret";

/// Of what an item tells, this is what does not depend on the text in it.
class SecretFieldInterface : public AccessibleItem {
public:
    using AccessibleItem::AccessibleItem;

    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::EditableText; }

    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state = AccessibleItem::state();
        state.passwordEdit = true;
        state.editable = true;
        return state;
    }

    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        // The attached name of a password field is always told as empty.
        if (kind == QAccessible::Name)
            return item()->property("placeholderText").toString();
        return kind == QAccessible::Description ? AccessibleItem::text(kind) : QString();
    }
    void setText(QAccessible::Text, const QString &) override {}

protected:
    void *interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? AccessibleItem::interface_cast(type)
                                                    : nullptr;
    }
};

/// Asked for every class of an object, the most derived first: well before the stock interface,
/// which answers for QQuickItem.
QAccessibleInterface *makeSecretFieldInterface(const QString &, QObject *object) {
    auto *const item = qobject_cast<QQuickItem *>(object);
    return item && SecretGuard::isSecret(*item) ? new SecretFieldInterface(item) : nullptr;
}

void installSecretFieldInterface() {
    QAccessible::installFactory(makeSecretFieldInterface);
}
Q_COREAPP_STARTUP_FUNCTION(installSecretFieldInterface)

} // namespace

bool SecretGuard::isSecret(const QQuickItem &item) {
    return item.property(secretProperty).toBool();
}

void SecretGuard::setTarget(QQuickItem *target) {
    if (m_target == target)
        return;
    m_target = target;
    if (target) {
        target->setProperty(secretProperty, true);
        // A tool that is running has had another interface made already.
        if (QAccessibleInterface *const other = QAccessible::queryAccessibleInterface(target))
            QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(other));
    }
    Q_EMIT targetChanged();
}

} // namespace tarne
