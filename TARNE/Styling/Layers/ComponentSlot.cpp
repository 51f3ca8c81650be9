#include "ComponentSlot.h"

#include "StyleLog.h"

#include <QQmlContext>
#include <QQmlEngine>

using namespace Qt::StringLiterals;

namespace tarne {

ComponentSlot::ComponentSlot(QQuickItem *parent) : QQuickItem(parent) {
    setFlag(ItemIsFocusScope);
}

ComponentSlot::~ComponentSlot() {
    // Later, the engine that both came from may be gone, and what the item has begun outlives it.
    delete m_item.release();
}

void ComponentSlot::DeleteLater::operator()(QQuickItem *item) const {
    item->setVisible(false);
    item->setParentItem(nullptr);
    item->deleteLater();
}

void ComponentSlot::setComponent(QQmlComponent *component) {
    if (m_component == component)
        return;
    m_component = component;
    m_item.reset();
    update();
    Q_EMIT componentChanged();
}

void ComponentSlot::setDocument(const QUrl &document) {
    if (m_document == document)
        return;
    m_document = document;
    m_item.reset();
    m_loaded.reset();
    update();
    Q_EMIT documentChanged();
}

void ComponentSlot::setView(QObject *view) {
    if (m_view == view)
        return;
    m_view = view;
    update();
    if (m_item && m_loaded)
        m_item->setProperty("view", QVariant::fromValue(view));
    Q_EMIT viewChanged();
}

void ComponentSlot::setActive(bool isActive) {
    if (m_isActive == isActive)
        return;
    m_isActive = isActive;
    update();
    Q_EMIT isActiveChanged();
}

void ComponentSlot::componentComplete() {
    QQuickItem::componentComplete();
    update();
}

void ComponentSlot::update() {
    if (!isComponentComplete())
        return;
    const bool isWanted =
        m_isActive && (m_document.isEmpty() ? m_component != nullptr : m_view != nullptr);
    if (isWanted == (m_item != nullptr))
        return;
    if (isWanted)
        make();
    else
        m_item.reset();
    Q_EMIT itemChanged();
}

void ComponentSlot::load() {
    m_loaded = std::make_unique<QQmlComponent>(qmlEngine(this), m_document);
    m_component = m_loaded.get();
}

void ComponentSlot::make() {
    if (!m_component)
        load();
    QQmlContext *const context = m_component->creationContext();
    QObject *const object =
        m_component->beginCreate(context ? context : qmlEngine(this)->rootContext());
    auto *const item = qobject_cast<QQuickItem *>(object);
    if (!item) {
        qCWarning(styleLog).noquote() << "no item:" << m_component->errorString();
        delete object;
        return;
    }
    QQmlEngine::setObjectOwnership(item, QQmlEngine::CppOwnership);
    m_item.reset(item);
    if (m_loaded)
        m_component->setInitialProperties(item, {{u"view"_s, QVariant::fromValue(m_view.get())}});
    item->setParentItem(this);
    m_component->completeCreate();
    connect(item, &QQuickItem::implicitWidthChanged, this, &ComponentSlot::adoptSize);
    connect(item, &QQuickItem::implicitHeightChanged, this, &ComponentSlot::adoptSize);
    connect(item, &QQuickItem::widthChanged, this, &ComponentSlot::adoptSize);
    connect(item, &QQuickItem::heightChanged, this, &ComponentSlot::adoptSize);
    // What asked for the focus inside the item is to have it, not the item around it.
    if (!scopedFocusItem())
        item->setFocus(true);
    adoptSize();
}

void ComponentSlot::adoptSize() {
    if (!m_item)
        return;
    if (widthValid())
        m_item->setWidth(width());
    if (heightValid())
        m_item->setHeight(height());
    setImplicitSize(m_item->width(), m_item->height());
}

void ComponentSlot::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    adoptSize();
}

} // namespace tarne
