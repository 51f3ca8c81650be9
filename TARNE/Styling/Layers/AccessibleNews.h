#pragma once

#include <QAccessible>
#include <QList>
#include <QObject>
#include <QPointer>

namespace tarne {

/// Passes on what assistive tools are told. Within one turn of the event loop the focus may move
/// several times, as when a layer covers the window, and a control may be disabled and enabled
/// again. A screen reader would begin to read what is over already. So of these two it is told how
/// they stand at the end of the turn; all else is passed on at once.
///
/// There is one of them, made by itself in every program that has this module.
class AccessibleNews : public QObject {
    Q_OBJECT

public:
    explicit AccessibleNews(QObject *application);
    ~AccessibleNews() override;

private:
    static void hear(QAccessibleEvent *event);

    void keep(const QAccessibleEvent &event);
    void tell();

    QPointer<QObject> m_focused;
    QList<QPointer<QObject>> m_changed;
    bool m_tellsSoon = false;
};

} // namespace tarne
