#pragma once

#include "Pasteboard.h"

namespace tarne {

/// The clipboard of the desktop, reached through the GUI application that must exist by then. What
/// was put there is gone with the process unless the desktop keeps a copy.
class ClipboardPasteboard final : public Pasteboard {
public:
    void clearContents() override;
    void setString(const QString &text) override;
};

} // namespace tarne
