#pragma once

#include <QQuickItem>

namespace tarne {

/// Tells once that what it is part of stands on the screen. Work that blocks begins then, so that
/// the user sees what is waited for. Where no frame comes, as on a screen that is turned off, it is
/// told after two seconds.
class FirstFrame : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT

public:
    explicit FirstFrame(QQuickItem *parent = nullptr);

Q_SIGNALS:
    void drawn();

protected:
    void itemChange(ItemChange change, const ItemChangeData &value) override;

private:
    void watch(QQuickWindow &window);
    void countFrame();
    void finish();

    bool m_isWatching = false;
    bool m_isDrawn = false;
    int m_frames = 0;
};

} // namespace tarne
