#pragma once

#include <QPointer>
#include <QQuickItem>

namespace tarne {

/// Keeps the value of the text field `target` from assistive tools, shown or not. They see a
/// password field by its name and state, and none of the text that the stock interface of a field
/// hands out whatever its echo mode.
class SecretGuard : public QObject {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QQuickItem *target MEMBER m_target WRITE setTarget NOTIFY targetChanged FINAL)

public:
    using QObject::QObject;

    void setTarget(QQuickItem *target);

    /// Whether a guard has been set over the item.
    [[nodiscard]] static bool isSecret(const QQuickItem &item);

Q_SIGNALS:
    void targetChanged();

private:
    QPointer<QQuickItem> m_target;
};

} // namespace tarne
