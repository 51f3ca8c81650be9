#pragma once

#include "Pasteboard.h"

#include <QStringList>

namespace tarne::test {

/// A clipboard that notes what happens to it.
class RecordingPasteboard final : public Pasteboard {
public:
    void clearContents() override {
        calls += QStringLiteral("clear");
        text.clear();
    }
    void setString(const QString &newText) override {
        calls += QStringLiteral("set");
        text = newText;
    }

    QString text;
    QStringList calls; ///< "clear" and "set".
};

} // namespace tarne::test
