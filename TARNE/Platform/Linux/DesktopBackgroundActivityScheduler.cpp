#include "DesktopBackgroundActivityScheduler.h"

#include "DBusService.h"

#include <QDBusUnixFileDescriptor>

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

/// Holds an inhibitor lock from `begin` to `end`; the lock is an open file that logind watches.
class IdleInhibitor final : public QObject {
public:
    IdleInhibitor(QDBusConnection systemBus, QString identifier)
        : m_logind(std::move(systemBus), {u"org.freedesktop.login1"_s, u"/org/freedesktop/login1"_s,
                                          u"org.freedesktop.login1.Manager"_s}),
          m_identifier(std::move(identifier)) {
        connect(&m_logind, &DBusService::appeared, this, [this] {
            if (m_isWanted)
                take();
        });
    }

    void begin() {
        m_isWanted = true;
        take();
    }

    void end() {
        m_isWanted = false;
        m_lock = {};
    }

private:
    void take() {
        const auto handleAnswer = [this](const QDBusMessage &reply) {
            const bool taken =
                reply.type() == QDBusMessage::ReplyMessage && reply.signature() == "h"_L1;
            if (taken && m_isWanted)
                m_lock = reply.arguments().constFirst().value<QDBusUnixFileDescriptor>();
        };
        // A lock that comes late still keeps the machine awake for the rest of the activity.
        m_logind.call(u"Inhibit"_s, {u"idle"_s, u"TARNE"_s, m_identifier, u"block"_s}, this,
                      handleAnswer, DBusService::Patience::Endless);
    }

    DBusService m_logind;
    QString m_identifier;
    bool m_isWanted = false;
    QDBusUnixFileDescriptor m_lock;
};

class DesktopBackgroundActivity final : public BackgroundActivity {
public:
    DesktopBackgroundActivity(const QDBusConnection &systemBus, QString identifier,
                              RunLoop &runLoop)
        : m_inhibitor(std::make_shared<IdleInhibitor>(systemBus, std::move(identifier))),
          m_runLoop(runLoop) {}

    ~DesktopBackgroundActivity() override { invalidate(); }

    void schedule(std::function<void(Finished finished)> block) override {
        if (!m_inhibitor)
            return;
        m_inhibitor->begin();
        m_runLoop.async([weak = std::weak_ptr(m_inhibitor), block = std::move(block)] {
            if (weak.expired())
                return;
            block([weak] {
                if (const auto inhibitor = weak.lock())
                    inhibitor->end();
            });
        });
    }

    void invalidate() override { m_inhibitor.reset(); }

private:
    std::shared_ptr<IdleInhibitor> m_inhibitor; ///< None once invalidated.
    RunLoop &m_runLoop;
};

} // namespace

DesktopBackgroundActivityScheduler::DesktopBackgroundActivityScheduler(QDBusConnection systemBus,
                                                                       RunLoop &runLoop)
    : m_systemBus(std::move(systemBus)), m_runLoop(runLoop) {}

std::unique_ptr<BackgroundActivity>
DesktopBackgroundActivityScheduler::makeActivity(const QString &identifier) {
    return std::make_unique<DesktopBackgroundActivity>(m_systemBus, identifier, m_runLoop);
}

} // namespace tarne
