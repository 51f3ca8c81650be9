#include "AccessibleNews.h"

#include <private/qquickaccessibleattached_p.h>

#include <utility>

namespace tarne {
namespace {

AccessibleNews *news = nullptr;

/// What can be disabled and enabled, as AccessibleItem tells of it.
QAccessible::State availability() {
    QAccessible::State state;
    state.disabled = true;
    state.focusable = true;
    return state;
}

bool tellsOfAvailability(const QAccessibleEvent &event) {
    return event.type() == QAccessible::StateChanged &&
           static_cast<const QAccessibleStateChangeEvent &>(event).changedStates().disabled;
}

/// Of an item with a property "value" the stock attached object tells, whatever it is to assistive
/// tools; the platform asks for the number then, and warns where there is none.
bool tellsOfNoValue(const QAccessibleEvent &event) {
    if (event.type() != QAccessible::ValueChanged)
        return false;
    QAccessibleInterface *const item = event.accessibleInterface();
    return !item || !item->valueInterface();
}

bool isIgnored(const QObject &item) {
    const auto *const told = QQuickAccessibleAttached::attachedProperties(&item);
    return told && told->ignored();
}

} // namespace

AccessibleNews::AccessibleNews(QObject *application) : QObject(application) {
    news = this;
    QAccessible::installUpdateHandler(hear);
}

AccessibleNews::~AccessibleNews() {
    QAccessible::installUpdateHandler(nullptr);
    news = nullptr;
}

void AccessibleNews::hear(QAccessibleEvent *event) {
    if (event->object() && (event->type() == QAccessible::Focus || tellsOfAvailability(*event))) {
        news->keep(*event);
        return;
    }
    if (tellsOfNoValue(*event))
        return;
    // Without a handler it goes to the platform.
    QAccessible::installUpdateHandler(nullptr);
    QAccessible::updateAccessibility(event);
    QAccessible::installUpdateHandler(hear);
}

void AccessibleNews::keep(const QAccessibleEvent &event) {
    if (event.type() == QAccessible::Focus)
        m_focused = event.object();
    else if (!m_changed.contains(event.object()))
        m_changed.append(event.object());
    if (!std::exchange(m_tellsSoon, true))
        QMetaObject::invokeMethod(this, &AccessibleNews::tell, Qt::QueuedConnection);
}

void AccessibleNews::tell() {
    m_tellsSoon = false;
    QAccessible::installUpdateHandler(nullptr);
    for (const QPointer<QObject> &item : std::exchange(m_changed, {})) {
        if (!item || isIgnored(*item))
            continue;
        QAccessibleStateChangeEvent event(item, availability());
        QAccessible::updateAccessibility(&event);
    }
    if (QObject *const focused = std::exchange(m_focused, nullptr)) {
        QAccessibleEvent event(focused, QAccessible::Focus);
        QAccessible::updateAccessibility(&event);
    }
    QAccessible::installUpdateHandler(hear);
}

} // namespace tarne
