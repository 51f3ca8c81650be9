#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QVariantMap>

#include <functional>

namespace tarne {

/// What the bus is told of the session.
struct SessionOnBus {
    QString state;
    qint64 secondsLeft = 0;
    qint64 duration = 0; ///< Seconds; 0 without a session.
    qint64 endsAt = 0;   ///< Seconds since 1970; 0 without a session.

    friend bool operator==(const SessionOnBus &, const SessionOnBus &) = default;
};

/// The interface com.tarne.app.Session1, by which a status bar or a script sees the time left and
/// pauses and resumes. docs/control.md describes it. Main thread only.
class SessionInterface final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.tarne.app.Session1")
    // The seconds left change without a signal.
    Q_CLASSINFO("D-Bus Introspection",
                "  <interface name=\"com.tarne.app.Session1\">\n"
                "    <property name=\"State\" type=\"s\" access=\"read\"/>\n"
                "    <property name=\"SecondsLeft\" type=\"x\" access=\"read\">\n"
                "      <annotation name=\"org.freedesktop.DBus.Property.EmitsChangedSignal\""
                " value=\"false\"/>\n"
                "    </property>\n"
                "    <property name=\"Duration\" type=\"x\" access=\"read\"/>\n"
                "    <property name=\"EndsAt\" type=\"x\" access=\"read\"/>\n"
                "    <method name=\"Pause\"/>\n"
                "    <method name=\"Resume\"/>\n"
                "    <method name=\"Show\">\n"
                "      <arg name=\"options\" type=\"a{sv}\" direction=\"in\"/>\n"
                "      <annotation name=\"org.qtproject.QtDBus.QtTypeName.In0\""
                " value=\"QVariantMap\"/>\n"
                "    </method>\n"
                "  </interface>\n")
    Q_PROPERTY(QString State READ state FINAL)
    Q_PROPERTY(qlonglong SecondsLeft READ secondsLeft FINAL)
    Q_PROPERTY(qlonglong Duration READ duration FINAL)
    Q_PROPERTY(qlonglong EndsAt READ endsAt FINAL)

public:
    /// What stands behind the interface.
    struct Session {
        std::function<SessionOnBus()> status;
        std::function<bool()> pause;  ///< False: no session runs.
        std::function<bool()> resume; ///< False: no session is paused.
        std::function<void(const QString &activationToken)> show;
    };

    /// Adds the interface to an object that stands on the bus under `path`, and belongs to it.
    SessionInterface(QObject *object, QDBusConnection bus, QString path, Session session);

    /// Tells the bus what has changed since the last time, but for the seconds left, which are only
    /// called out of date. Tells nothing where nothing else has changed.
    void publish();

    [[nodiscard]] QString state() const { return m_session.status().state; }
    [[nodiscard]] qlonglong secondsLeft() const { return m_session.status().secondsLeft; }
    [[nodiscard]] qlonglong duration() const { return m_session.status().duration; }
    [[nodiscard]] qlonglong endsAt() const { return m_session.status().endsAt; }

public Q_SLOTS:
    void Pause(const QDBusMessage &call);
    void Resume(const QDBusMessage &call);
    void Show(const QVariantMap &options);

private:
    void refuse(const QDBusMessage &call, const QString &reason);

    QDBusConnection m_bus;
    QString m_path;
    Session m_session;
    SessionOnBus m_told;
};

} // namespace tarne
