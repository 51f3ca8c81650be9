#pragma once

#include <QObject>

namespace tarne {

/// A tab's screen. It is made when its tab is first shown, and then learns when it is shown and
/// when no longer; while it is not shown it neither observes nor animates anything.
class Screen : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    virtual void appear() = 0;
    virtual void disappear() = 0;
};

} // namespace tarne
