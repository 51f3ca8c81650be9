#include "FirstFrame.h"

#include <QQuickWindow>
#include <QTimer>

#include <chrono>
#include <utility>

using namespace std::chrono_literals;

namespace tarne {

namespace {

constexpr auto longestWait = 2s;
/// The first frame may have been on its way already, without the item.
constexpr int framesNeeded = 2;

} // namespace

FirstFrame::FirstFrame(QQuickItem *parent) : QQuickItem(parent) {}

void FirstFrame::itemChange(ItemChange change, const ItemChangeData &value) {
    if (change == ItemSceneChange && value.window && !std::exchange(m_isWatching, true))
        watch(*value.window);
    QQuickItem::itemChange(change, value);
}

void FirstFrame::watch(QQuickWindow &window) {
    // Frames are told on the thread that draws.
    connect(&window, &QQuickWindow::frameSwapped, this, &FirstFrame::countFrame,
            Qt::QueuedConnection);
    window.update();
    QTimer::singleShot(longestWait, this, &FirstFrame::finish);
}

void FirstFrame::countFrame() {
    if (++m_frames == framesNeeded)
        finish();
    else if (window())
        window()->update();
}

void FirstFrame::finish() {
    // What was taken off the screen before it was drawn has nothing to tell.
    if (m_isDrawn || !window())
        return;
    m_isDrawn = true;
    disconnect(window(), nullptr, this, nullptr);
    Q_EMIT drawn();
}

} // namespace tarne
