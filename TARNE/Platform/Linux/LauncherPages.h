#pragma once

#include <QUrl>

namespace tarne {

/// Asks our launcher to open a page. The launcher stands outside our process namespace: a browser
/// that it starts does not end when we quit.
///
/// The launcher listens on a pipe, and gives us its writing end as standard input. Nothing else
/// starts a program like that, so it also tells whether there is such a launcher.
class LauncherPages {
public:
    /// `descriptor` may be of any kind; it stays the caller's.
    explicit LauncherPages(int descriptor);

    /// False when no launcher listens. Never waits.
    [[nodiscard]] bool open(const QUrl &url) const;

private:
    [[nodiscard]] bool isHeard() const;

    int m_descriptor;
};

} // namespace tarne
