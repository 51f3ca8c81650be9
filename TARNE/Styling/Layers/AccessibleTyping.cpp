#include "AccessibleTyping.h"

#include "SecretGuard.h"

#include <QAccessible>

#include <algorithm>
#include <utility>

namespace tarne {

void AccessibleTyping::follow(QQuickItem &item) {
    if (item.inherits("QQuickTextInput") || item.inherits("QQuickTextEdit"))
        new AccessibleTyping(item);
}

AccessibleTyping::AccessibleTyping(QQuickItem &field)
    : QObject(&field), m_field(field), m_text(text()) {
    // By name: neither class has a public header.
    connect(&field, SIGNAL(textChanged()), this, SLOT(tell()));
}

QString AccessibleTyping::text() const {
    return SecretGuard::isSecret(m_field) ? QString() : m_field.property("text").toString();
}

void AccessibleTyping::tell() {
    const QString before = std::exchange(m_text, text());
    const auto [left, right] =
        std::mismatch(before.cbegin(), before.cend(), m_text.cbegin(), m_text.cend());
    const auto [lastLeft, lastRight] =
        std::mismatch(before.crbegin(), std::make_reverse_iterator(left), m_text.crbegin(),
                      std::make_reverse_iterator(right));
    const int start = static_cast<int>(left - before.cbegin());
    const QString removed(left, lastLeft.base() - left);
    const QString added(right, lastRight.base() - right);
    if (!removed.isEmpty()) {
        QAccessibleTextRemoveEvent event(&m_field, start, removed);
        QAccessible::updateAccessibility(&event);
    }
    if (!added.isEmpty()) {
        QAccessibleTextInsertEvent event(&m_field, start, added);
        QAccessible::updateAccessibility(&event);
    }
}

} // namespace tarne
