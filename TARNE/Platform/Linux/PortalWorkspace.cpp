#include "PortalWorkspace.h"

#include "DesktopLog.h"
#include "LauncherPages.h"

#include <QDesktopServices>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tarne {

PortalWorkspace::PortalWorkspace(QDBusConnection sessionBus)
    : PortalWorkspace(std::move(sessionBus), [](const QUrl &url) {
          return LauncherPages(STDIN_FILENO).open(url) || QDesktopServices::openUrl(url);
      }) {}

PortalWorkspace::PortalWorkspace(QDBusConnection sessionBus, Opener fallback)
    : m_portal(std::move(sessionBus),
               {u"org.freedesktop.portal.Desktop"_s, u"/org/freedesktop/portal/desktop"_s,
                u"org.freedesktop.portal.OpenURI"_s}),
      m_fallback(std::move(fallback)) {}

void PortalWorkspace::open(const QUrl &url) {
    const QVariantList arguments{
        QString(), // No parent window.
        QString::fromLatin1(url.toEncoded()),
        QVariantMap(), // No options.
    };
    m_portal.call(u"OpenURI"_s, arguments, this, [this, url](const QDBusMessage &reply) {
        if (reply.type() == QDBusMessage::ErrorMessage && !m_fallback(url))
            qCWarning(desktopLog, "nothing opens pages of %s", qPrintable(url.host()));
    });
}

} // namespace tarne
