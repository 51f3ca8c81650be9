#pragma once

#include <QQuickView>

namespace tarne {

/// The application's one window: frameless, its title strip drawn by the shell, moved and resized
/// by the platform. It can be closed, which hides it, and minimised, but neither zoomed nor made
/// full screen: an attempt of the window manager is undone. It is never larger than its screen.
class MainWindow : public QQuickView {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")

public:
    static constexpr QSize minimumContentSize{800, 600}; ///< Logical pixels.
    static constexpr QSize contentSize{1000, 700};       ///< Logical pixels, at first.

    /// Where a window that would like to have `size` goes: in the middle of what is available of
    /// the screen, as large as that on a smaller one.
    [[nodiscard]] static QRect placeWithin(const QRect &available, const QSize &size);

    explicit MainWindow(QQmlEngine *engine);
    ~MainWindow() override;

    /// Frameless, white, at least 800 by 600 or the whole of a smaller screen. Setting what is
    /// there already changes nothing.
    void applyProperties();
    /// Gives the window its first size and place.
    void placeOnScreen();

    /// Brings a closed, minimised or covered window to the front.
    Q_INVOKABLE void present();

Q_SIGNALS:
    /// The window was shown, or shown again after it was closed.
    void shown();
    void closed();

protected:
    bool event(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;

private:
    [[nodiscard]] Qt::Edges edgesAt(QPointF position) const;
    void undoZoom();
    void followScreen(QScreen *screen);
    /// Keeps the window within its screen, which may have become another one or smaller.
    void fitScreen();
    void mapAnew();

    QMetaObject::Connection m_screenSize;
    bool m_isMappedAnew = false;
    Qt::Edges m_hoveredEdges;
    Qt::Edges m_pressedEdges;
};

} // namespace tarne
