#include "MainWindow.h"

#include <QCursor>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QScreen>

#include <utility>

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

/// How near to an edge, in logical pixels, a press resizes the window.
constexpr qreal resizeMargin = 5.0;

Qt::CursorShape cursorFor(Qt::Edges edges) {
    switch (edges.toInt()) {
    case Qt::LeftEdge:
    case Qt::RightEdge:
        return Qt::SizeHorCursor;
    case Qt::TopEdge:
    case Qt::BottomEdge:
        return Qt::SizeVerCursor;
    case Qt::TopEdge | Qt::LeftEdge:
    case Qt::BottomEdge | Qt::RightEdge:
        return Qt::SizeFDiagCursor;
    case Qt::TopEdge | Qt::RightEdge:
    case Qt::BottomEdge | Qt::LeftEdge:
        return Qt::SizeBDiagCursor;
    default:
        return Qt::ArrowCursor;
    }
}

} // namespace

MainWindow::MainWindow(QQmlEngine *engine) : QQuickView(engine, nullptr) {
    setTitle(u"TARNE"_s);
    setResizeMode(SizeRootObjectToView);
    applyProperties();
    followScreen(screen());
    connect(this, &QWindow::screenChanged, this, &MainWindow::followScreen);
    // Queued: a Wayland compositor's wish is told while Qt is still carrying it out, and would be
    // carried out to its end after the answer.
    connect(this, &QWindow::windowStateChanged, this, &MainWindow::undoZoom, Qt::QueuedConnection);
}

MainWindow::~MainWindow() {
    // The base class hides the window in its own destructor, when there is nobody left to tell.
    disconnect(this, nullptr, this, nullptr);
    disconnect(m_screenSize);
}

QRect MainWindow::placeWithin(const QRect &available, const QSize &size) {
    QRect place(QPoint(), size.boundedTo(available.size()));
    place.moveCenter(available.center());
    return place;
}

void MainWindow::applyProperties() {
    setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowMinimizeButtonHint |
             Qt::WindowCloseButtonHint);
    setColor(Qt::white);
    setMinimumSize(screen() ? minimumContentSize.boundedTo(screen()->availableSize())
                            : minimumContentSize);
}

void MainWindow::placeOnScreen() {
    resize(contentSize);
    if (const QScreen *const onScreen = screen())
        setGeometry(placeWithin(onScreen->availableGeometry(), contentSize));
}

void MainWindow::followScreen(QScreen *screen) {
    disconnect(m_screenSize);
    if (!screen)
        return;
    m_screenSize =
        connect(screen, &QScreen::availableGeometryChanged, this, &MainWindow::fitScreen);
    fitScreen();
}

void MainWindow::fitScreen() {
    applyProperties();
    // A hand that is at an edge may draw the window over several screens.
    const QRect available = screen()->availableGeometry();
    if (!m_pressedEdges && size() != size().boundedTo(available.size()))
        setGeometry(placeWithin(available, size()));
}

void MainWindow::present() {
    // Under Wayland nobody but the compositor knows whether a window is minimised, and none brings
    // one back that asks for it. A window that is mapped anew comes up in front.
    if (isVisible() && !isActive() && QGuiApplication::platformName().startsWith(u"wayland"_s))
        mapAnew();
    showNormal();
    requestActivate();
}

void MainWindow::mapAnew() {
    // To everybody else the window is neither closed nor shown again by this.
    m_isMappedAnew = true;
    hide();
    showNormal();
    m_isMappedAnew = false;
}

void MainWindow::undoZoom() {
    if (windowStates() & (Qt::WindowMaximized | Qt::WindowFullScreen))
        setWindowStates(windowStates() & ~(Qt::WindowMaximized | Qt::WindowFullScreen));
}

bool MainWindow::event(QEvent *event) {
    const bool result = QQuickView::event(event);
    if (m_isMappedAnew)
        return result;
    if (event->type() == QEvent::Show)
        Q_EMIT shown();
    else if (event->type() == QEvent::Hide)
        Q_EMIT closed();
    return result;
}

Qt::Edges MainWindow::edgesAt(QPointF position) const {
    Qt::Edges edges;
    edges.setFlag(Qt::LeftEdge, position.x() < resizeMargin);
    edges.setFlag(Qt::RightEdge, position.x() >= width() - resizeMargin);
    edges.setFlag(Qt::TopEdge, position.y() < resizeMargin);
    edges.setFlag(Qt::BottomEdge, position.y() >= height() - resizeMargin);
    return edges;
}

void MainWindow::mousePressEvent(QMouseEvent *event) {
    m_pressedEdges = event->button() == Qt::LeftButton ? edgesAt(event->position()) : Qt::Edges();
    if (!m_pressedEdges) {
        QQuickView::mousePressEvent(event);
        return;
    }
    // Input that waits comes before what is queued: were the button up again, a window manager
    // would resize the window until the next click.
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (m_pressedEdges)
                startSystemResize(m_pressedEdges);
        },
        Qt::QueuedConnection);
}

void MainWindow::mouseReleaseEvent(QMouseEvent *event) {
    m_pressedEdges = {};
    QQuickView::mouseReleaseEvent(event);
}

void MainWindow::mouseMoveEvent(QMouseEvent *event) {
    QQuickView::mouseMoveEvent(event);
    const Qt::Edges edges = event->buttons() ? Qt::Edges() : edgesAt(event->position());
    if (std::exchange(m_hoveredEdges, edges) == edges)
        return;
    // Between the edges the cursor belongs to the item below the pointer.
    if (edges)
        setCursor(cursorFor(edges));
    else
        unsetCursor();
}

} // namespace tarne
