#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

namespace tarne {

/// Tells when the machine's time zone may have been changed, by watching the folder in which the
/// system keeps it. Costs nothing while nothing happens there.
class TimeZoneWatch final : public QObject {
    Q_OBJECT

public:
    /// `folder` is where the file or link `localtime` lies. A folder that cannot be watched costs a
    /// line on standard error.
    explicit TimeZoneWatch(const QString &folder = QStringLiteral("/etc"));
    ~TimeZoneWatch() override;

Q_SIGNALS:
    void changed();

private:
    void readEvents();

    int m_events;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace tarne
