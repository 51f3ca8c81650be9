#pragma once

#include <QPointer>
#include <QQmlComponent>
#include <QQuickItem>

#include <memory>

namespace tarne {

/// Holds one item made from `component` while `isActive`, in the context that the component was
/// written in. In place of Loader, which in this Qt makes a context of its own and then cannot make
/// what a document with bound components declares.
///
/// It is as large as the item asks to be; given a width, the item takes that.
class ComponentSlot : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QQmlComponent *component MEMBER m_component WRITE setComponent NOTIFY
                   componentChanged FINAL)
    Q_PROPERTY(bool isActive MEMBER m_isActive WRITE setActive NOTIFY isActiveChanged FINAL)
    Q_PROPERTY(QQuickItem *item READ item NOTIFY itemChanged FINAL)

public:
    explicit ComponentSlot(QQuickItem *parent = nullptr);
    ~ComponentSlot() override;

    void setComponent(QQmlComponent *component);
    void setActive(bool isActive);
    [[nodiscard]] QQuickItem *item() const { return m_item.get(); }

Q_SIGNALS:
    void componentChanged();
    void isActiveChanged();
    void itemChanged();

protected:
    void componentComplete() override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;

private:
    /// The item may be in the middle of one of its own handlers when it is dropped.
    struct DeleteLater {
        void operator()(QQuickItem *item) const;
    };

    void update();
    void make();
    void adoptSize();

    QPointer<QQmlComponent> m_component;
    bool m_isActive = false;
    std::unique_ptr<QQuickItem, DeleteLater> m_item;
};

} // namespace tarne
