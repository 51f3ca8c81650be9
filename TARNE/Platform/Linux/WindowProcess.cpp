#include "WindowProcess.h"

#include <QGuiApplication>
#include <QPlatformSurfaceEvent>
#include <QWindow>

#include <cstdlib>
#include <cstring>
#include <memory>

#include <xcb/xcb.h>

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

xcb_connection_t *displayConnection() {
    const auto *const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

xcb_atom_t processAtom(xcb_connection_t *display) {
    constexpr const char *name = "_NET_WM_PID";
    const auto asked =
        xcb_intern_atom(display, false, static_cast<uint16_t>(std::strlen(name)), name);
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
        xcb_intern_atom_reply(display, asked, nullptr), &std::free);
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

} // namespace

WindowProcess::WindowProcess(QWindow &window, const QDBusConnection &sessionBus)
    : m_window(window),
      m_bus(sessionBus,
            {u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s}) {
    m_window.installEventFilter(this);
    apply();
    if (!displayConnection())
        return;
    m_bus.call(u"GetConnectionUnixProcessID"_s, {sessionBus.baseService()}, this,
               [this](const QDBusMessage &reply) {
                   if (reply.type() != QDBusMessage::ReplyMessage)
                       return;
                   m_process = reply.arguments().value(0).toUInt();
                   apply();
               });
}

bool WindowProcess::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::PlatformSurface &&
        static_cast<QPlatformSurfaceEvent *>(event)->surfaceEventType() ==
            QPlatformSurfaceEvent::SurfaceCreated)
        apply();
    return QObject::eventFilter(watched, event);
}

void WindowProcess::apply() const {
    xcb_connection_t *const display = displayConnection();
    if (!display || !m_window.handle())
        return;
    const auto window = static_cast<xcb_window_t>(m_window.winId());
    const xcb_atom_t atom = processAtom(display);
    if (m_process == 0)
        xcb_delete_property(display, window, atom);
    else
        xcb_change_property(display, XCB_PROP_MODE_REPLACE, window, atom, XCB_ATOM_CARDINAL, 32, 1,
                            &m_process);
    xcb_flush(display);
}

} // namespace tarne
