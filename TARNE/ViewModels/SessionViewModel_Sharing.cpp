// What the browser extension can learn of the session.

#include "SessionViewModel.h"

#include "Description.h"
#include "LocalHTTPServer.h"
#include "StoredKeys.h"
#include "UuidText.h"

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tarne {

bool SessionViewModel::isSessionActive() const {
    return m_currentSession && m_isTimerActive;
}

void SessionViewModel::setupSharedData() {
    updateSharedData();
    // Nobody ends this timer: it publishes for as long as the process lives.
    std::ignore = m_platform.runLoop.scheduleRepeating(1s, [self = QPointer(this)] {
        if (self)
            self->updateSharedData();
    });
}

void SessionViewModel::updateSharedData() {
    UserDefaults &defaults = m_platform.defaults;
    if (isSessionActive()) {
        const QString goals = m_currentSession->goalsDisplayString();
        defaults.setObject(keys::sessionActive, qint64{1});
        defaults.setObject(keys::sessionGoals, goals);
        defaults.setObject(keys::sessionId, uuidString(m_currentSession->id));
        defaults.setObject(keys::timeRemaining, m_timeRemaining);
        defaults.setObject(keys::sessionDuration, m_originalDuration);
        defaults.setObject(keys::sessionProgress, m_progress);
        defaults.setObject(keys::lastUpdate, m_platform.clock.now().secondsSince1970());
        m_platform.log.line(u"📱 Session data updated: Active=1, Goals="_s + goals +
                            u", TimeRemaining="_s + description(m_timeRemaining));
    } else {
        writeEmptySessionKeys();
        m_platform.log.line(u"📱 Session data cleared: Active=0, Goals='', TimeRemaining=0"_s);
    }
    defaults.synchronize();
}

void SessionViewModel::writeEmptySessionKeys() {
    UserDefaults &defaults = m_platform.defaults;
    defaults.setObject(keys::sessionActive, qint64{0});
    defaults.setObject(keys::sessionGoals, u""_s);
    defaults.setObject(keys::sessionId, u""_s);
    defaults.setObject(keys::timeRemaining, 0.0);
    defaults.setObject(keys::sessionDuration, 0.0);
    defaults.setObject(keys::sessionProgress, 0.0);
}

QVariantMap SessionViewModel::getCurrentSessionGoals() const {
    if (!isSessionActive()) {
        return {{u"active"_s, false},
                {u"goals"_s, u""_s},
                {u"sessionId"_s, u""_s},
                {u"timeRemaining"_s, 0},
                {u"duration"_s, 0}};
    }
    return {{u"active"_s, true},
            {u"goals"_s, m_currentSession->goalsDisplayString()},
            {u"sessionId"_s, uuidString(m_currentSession->id)},
            {u"timeRemaining"_s, m_timeRemaining},
            {u"duration"_s, m_originalDuration},
            {u"progress"_s, m_progress},
            {u"startTime"_s, m_currentSession->startTime.secondsSince1970()}};
}

void SessionViewModel::setupHTTPServer() {
    m_httpServer = std::make_unique<LocalHTTPServer>(m_platform.clock, m_platform.log, 8080);
    m_httpServer->getCurrentSessionData = [self = QPointer(this)] {
        return self ? self->getCurrentSessionGoals() : GoalsResponder::inactiveSession();
    };
    m_httpServer->start();
    m_platform.log.line(u"📡 TARNE Goals API available at: http://localhost:%1/goals"_s.arg(
        m_httpServer->getPort()));
}

} // namespace tarne
