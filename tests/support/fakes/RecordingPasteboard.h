#pragma once

#include "Pasteboard.h"

#include <QStringList>

#include <functional>

namespace tarne::test {

/// A clipboard that notes what happens to it.
class RecordingPasteboard final : public Pasteboard {
public:
    void clearContents() override {
        calls += QStringLiteral("clear");
        text.clear();
    }
    void setString(const QString &newText) override {
        if (whenSetting)
            whenSetting();
        calls += QStringLiteral("set");
        text = newText;
    }

    QString text;
    QStringList calls;                 ///< "clear" and "set".
    std::function<void()> whenSetting; ///< What a test looks at before the text is there.
};

} // namespace tarne::test
