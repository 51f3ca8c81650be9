#pragma once

#include <QObject>
#include <QQuickItem>

namespace tarne {

/// Tells assistive tools what was written into a field and what was taken away, so that a screen
/// reader can say it. The stock fields tell of the caret alone. A child of the field; of a secret
/// it tells nothing.
class AccessibleTyping : public QObject {
    Q_OBJECT

public:
    /// Makes one for a field, and none for any other item.
    static void follow(QQuickItem &item);

private:
    explicit AccessibleTyping(QQuickItem &field);

    [[nodiscard]] QString text() const;

    QQuickItem &m_field;
    QString m_text;

private Q_SLOTS:
    void tell();
};

} // namespace tarne
