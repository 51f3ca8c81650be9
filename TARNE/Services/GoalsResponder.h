#pragma once

#include "Clock.h"
#include "Log.h"

#include <QByteArray>
#include <QVariantMap>

#include <functional>

namespace tarne {

/// The goals API without its transport: turns what was received into the response to send.
///
/// Only a request's first line matters, and every received chunk counts as a whole request.
class GoalsResponder {
public:
    using Source = std::function<QVariantMap()>;

    /// Both outlive the responder.
    GoalsResponder(const Clock &clock, Log &log) : m_clock(clock), m_log(log) {}

    /// The response to one chunk. `source`, if there is one, is called for `/goals`.
    [[nodiscard]] QByteArray processRequest(const QByteArray &data, const Source &source) const;

    /// What `/goals` answers without a session: `active` false, `goals` and `sessionId` empty.
    [[nodiscard]] static QVariantMap inactiveSession();

private:
    [[nodiscard]] QByteArray handleGoalsRequest(const Source &source) const;
    [[nodiscard]] QByteArray handleHealthRequest() const;
    [[nodiscard]] QByteArray handleOptionsRequest() const;
    [[nodiscard]] QByteArray sendJSONResponse(const QVariantMap &data) const;

    const Clock &m_clock;
    Log &m_log;
};

} // namespace tarne
