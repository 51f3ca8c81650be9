#pragma once

#include "EventLoop.h"
#include "FixedClock.h"
#include "Notifier.h"
#include "PrivateBus.h"
#include "TestMain.h"

#include <QDBusArgument>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <memory>
#include <optional>

namespace tarne::test {

/// The notifier's parts over a real file, a real bus and a notification daemon. Time alone is the
/// test's: a process that ends is parts that are made anew over the same folder.
class NotifierTest : public testing::Test {
protected:
    void startDaemon(const QString &capabilities = QStringLiteral("body")) {
        m_daemon = MockService::fromTemplate(
            m_bus, QStringLiteral("notification_daemon"),
            QStringLiteral("org.freedesktop.Notifications"),
            QStringLiteral(R"({"capabilities": "%1"})").arg(capabilities));
    }

    /// A daemon that does this, in Python, with every notification.
    void startDaemonThat(const QString &code) {
        const QString name = QStringLiteral("org.freedesktop.Notifications");
        m_daemon =
            MockService::bare(m_bus, name, QStringLiteral("/org/freedesktop/Notifications"), name);
        m_daemon->addMethod(QStringLiteral("GetCapabilities"), {}, QStringLiteral("as"),
                            QStringLiteral("ret = []"));
        m_daemon->addMethod(QStringLiteral("Notify"), QStringLiteral("susssasa{sv}i"),
                            QStringLiteral("u"), code);
    }
    void startRefusingDaemon(const QString &error) {
        startDaemonThat(
            QStringLiteral("raise dbus.exceptions.DBusException('no', name='%1')").arg(error));
    }

    /// Starts the notifier, or ends it and starts it again.
    void start() {
        end();
        m_file = notifier::RequestFile::open(folder(), m_clock.moment);
        ASSERT_TRUE(m_file);
        m_notifier = std::make_unique<notifier::Notifier>(*m_file, m_connection, m_clock,
                                                          [this] { return m_calendar; });
        QObject::connect(m_notifier.get(), &notifier::Notifier::nextMomentChanged,
                         [this](std::optional<Date> moment) { m_next = moment; });
        QObject::connect(m_notifier.get(), &notifier::Notifier::activated,
                         [this](const QString &token) { m_tokens += token; });
        m_notifier->review();
    }
    void end() {
        m_notifier.reset();
        m_file.reset();
    }
    notifier::Notifier &subject() {
        if (!m_notifier)
            start();
        return *m_notifier;
    }

    Date at(int month, int day, int hour, int minute = 0, int second = 0) const {
        return m_calendar.date({2026, month, day, hour, minute, second}).value();
    }
    void add(const QString &identifier, std::optional<DateComponents> trigger,
             const QString &body = {}) {
        subject().add({identifier, {identifier, body}, trigger});
        subject().commit();
    }
    void add(const QString &identifier, Date moment, const QString &body = {}) {
        add(identifier, m_calendar.dateComponents(moment), body);
    }
    void remove(const QStringList &identifiers) {
        subject().remove(identifiers);
        subject().commit();
    }
    /// The clock gets there, and the alarm rings.
    void arriveAt(Date moment) {
        m_clock.moment = moment;
        subject().review();
    }

    /// The titles of the notifications that the daemon has got, after all that is under way.
    QStringList shown() {
        EXPECT_TRUE(serveUntil([&] { return subject().pending().isEmpty() || !isDelivering(); }));
        settle();
        QStringList titles;
        for (const QVariantList &call : m_daemon->calls(QStringLiteral("Notify"))) {
            if (call.at(3) != QStringLiteral("marker"))
                titles += call.at(3).toString();
        }
        return titles;
    }
    QVariantList notification(int index = 0) {
        EXPECT_TRUE(m_daemon->waitForCalls(QStringLiteral("Notify"), index + 1));
        return m_daemon->calls(QStringLiteral("Notify")).value(index, QVariantList(8));
    }

    QString folder() const { return m_folder.filePath(QStringLiteral("notifier")); }
    QString filePath() const { return notifier::RequestFile::filesIn(folder()).file(); }

    /// The identifiers in the file, as the next process finds them.
    QStringList stored() {
        QStringList identifiers;
        const auto values = SQLiteFile(filePath(), SQLiteFile::Access::ReadOnly).load();
        for (auto value = values.cbegin(); value != values.cend(); ++value)
            identifiers += value.key();
        return identifiers;
    }

    bool comesToStoreNothing() {
        return serveUntil([&] { return stored().isEmpty(); });
    }

    FixedClock m_clock;
    Calendar m_calendar{QTimeZone::utc(), QLocale::c()};
    QTemporaryDir m_folder;
    PrivateBus m_bus;
    QDBusConnection m_connection = m_bus.connect();
    std::unique_ptr<MockService> m_daemon;
    std::unique_ptr<notifier::RequestFile> m_file;
    std::unique_ptr<notifier::Notifier> m_notifier;
    std::optional<Date> m_next;
    QStringList m_tokens;

private:
    bool isDelivering() const { return m_next && *m_next <= m_clock.moment; }

    /// Everything that was asked of the daemon so far has been answered, and the file knows it.
    void settle() {
        const qsizetype before = m_daemon->calls(QStringLiteral("Notify")).size();
        subject().add({QStringLiteral("marker"), {QStringLiteral("marker"), {}}, std::nullopt});
        subject().commit();
        EXPECT_TRUE(serveUntil([&] {
            const auto calls = m_daemon->calls(QStringLiteral("Notify"));
            return calls.size() > before && calls.constLast().at(3) == QStringLiteral("marker");
        }));
        EXPECT_TRUE(serveUntil([&] { return !stored().contains(QStringLiteral("marker")); }));
    }
};

} // namespace tarne::test
