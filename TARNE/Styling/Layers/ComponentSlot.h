#pragma once

#include <QPointer>
#include <QQmlComponent>
#include <QQuickItem>
#include <QUrl>

#include <memory>

namespace tarne {

/// Holds one item made from `component` while `isActive`, in the context that the component was
/// written in. In place of Loader, which in this Qt makes a context of its own and then cannot make
/// what a document with bound components declares.
///
/// In place of `component` it takes the address of a `document`, and the `view` that the document's
/// item requires: there is no item without one. Then the document, and all that it is made of, is
/// loaded when it is first wanted, and not together with the document that holds the slot.
///
/// It is as large as the item asks to be; given a width, the item takes that.
class ComponentSlot : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QQmlComponent *component MEMBER m_component WRITE setComponent NOTIFY
                   componentChanged FINAL)
    Q_PROPERTY(QUrl document MEMBER m_document WRITE setDocument NOTIFY documentChanged FINAL)
    Q_PROPERTY(QObject *view READ view WRITE setView NOTIFY viewChanged FINAL)
    Q_PROPERTY(bool isActive MEMBER m_isActive WRITE setActive NOTIFY isActiveChanged FINAL)
    Q_PROPERTY(QQuickItem *item READ item NOTIFY itemChanged FINAL)

public:
    explicit ComponentSlot(QQuickItem *parent = nullptr);
    ~ComponentSlot() override;

    void setComponent(QQmlComponent *component);
    void setDocument(const QUrl &document);
    [[nodiscard]] QObject *view() const { return m_view; }
    void setView(QObject *view);
    void setActive(bool isActive);
    [[nodiscard]] QQuickItem *item() const { return m_item.get(); }

Q_SIGNALS:
    void componentChanged();
    void documentChanged();
    void viewChanged();
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
    void load();
    void make();
    void adoptSize();

    QPointer<QQmlComponent> m_component;
    QUrl m_document;
    std::unique_ptr<QQmlComponent> m_loaded; ///< What `m_component` is where there is a document.
    QPointer<QObject> m_view;
    bool m_isActive = false;
    std::unique_ptr<QQuickItem, DeleteLater> m_item;
};

} // namespace tarne
