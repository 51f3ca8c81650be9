#include "MainWindow.h"

#include <QCursor>
#include <QMouseEvent>
#include <QScreen>

#include <algorithm>
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
    connect(this, &QWindow::windowStateChanged, this, &MainWindow::undoZoom);
}

MainWindow::~MainWindow() {
    // The base class hides the window in its own destructor, when there is nobody left to tell.
    disconnect(this, nullptr, this, nullptr);
}

void MainWindow::applyProperties() {
    setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowMinimizeButtonHint |
             Qt::WindowCloseButtonHint);
    setColor(Qt::white);
    setMinimumSize(minimumContentSize);
}

QPoint MainWindow::firstPosition(const QRect &available) {
    const QPoint centred = available.center() - QRect(QPoint(), contentSize).center();
    // The title strip is the one place to move the window by.
    return {centred.x(), std::max(centred.y(), available.top())};
}

void MainWindow::placeOnScreen() {
    resize(contentSize);
    if (const QScreen *onScreen = screen())
        setPosition(firstPosition(onScreen->availableGeometry()));
}

void MainWindow::present() {
    showNormal();
    requestActivate();
}

void MainWindow::undoZoom() {
    if (windowStates() & (Qt::WindowMaximized | Qt::WindowFullScreen))
        setWindowStates(windowStates() & ~(Qt::WindowMaximized | Qt::WindowFullScreen));
}

bool MainWindow::event(QEvent *event) {
    const bool result = QQuickView::event(event);
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
