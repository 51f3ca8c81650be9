#pragma once

#include <QString>

namespace tarne {

/// The system's clipboard. Main thread only.
class Pasteboard {
public:
    virtual ~Pasteboard() = default;

    virtual void clearContents() = 0;
    /// Offers one plain text, in place of what the clipboard holds.
    virtual void setString(const QString &text) = 0;
};

} // namespace tarne
