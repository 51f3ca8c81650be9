#pragma once

#include <QUrl>

namespace tarne {

/// The desktop around the program.
class Workspace {
public:
    virtual ~Workspace() = default;

    /// Opens a web page in the user's browser. Returns at once; a page that no program wants to
    /// open is reported on standard error only.
    virtual void open(const QUrl &url) = 0;
};

} // namespace tarne
