#include "NotifierUserNotificationCenter.h"

#include "DesktopLog.h"

#include <QDBusError>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

/// A notifier that ends with every call is not called for ever.
constexpr int maximumAttempts = 3;

/// A request that is about to be shown here stays here: the notifier could show it as well before
/// it is taken away.
constexpr double shortestHandOverSeconds = 5.0;

bool isRefusal(const QDBusMessage &reply) {
    return reply.type() == QDBusMessage::ErrorMessage;
}

/// The notifier has ended with the call in its hands.
bool hasDied(const QDBusMessage &reply) {
    return reply.errorName() == QDBusError::errorString(QDBusError::NoReply);
}

QVariantList argumentsOf(const NotificationRequest &request) {
    return {plainNotificationText(request.identifier), plainNotificationText(request.content.title),
            plainNotificationText(request.content.body),
            QVariant::fromValue(notifier::componentsOf(request.trigger))};
}

} // namespace

NotifierUserNotificationCenter::NotifierUserNotificationCenter(QDBusConnection sessionBus,
                                                               const Clock &clock,
                                                               CurrentCalendar calendar,
                                                               std::chrono::milliseconds patience)
    : m_clock(clock),
      m_calendar(std::move(calendar)),
      m_patience(patience),
      m_here(sessionBus, clock, m_calendar),
      m_notifier(std::move(sessionBus), {notifier::service, notifier::path, notifier::interface}) {
    notifier::registerComponents();
    connect(&m_here, &FreedesktopUserNotificationCenter::activated, this,
            &NotifierUserNotificationCenter::activated);
    connect(&m_notifier, &DBusService::appeared, this, &NotifierUserNotificationCenter::handOver);
    connect(&m_notifier, &DBusService::vanished, this,
            &NotifierUserNotificationCenter::lookAfterAccepted);
}

void NotifierUserNotificationCenter::requestAuthorization(
    std::function<void(bool granted, std::optional<QString> error)> done) {
    m_here.requestAuthorization(std::move(done));
}

void NotifierUserNotificationCenter::add(const NotificationRequest &request, Completion done) {
    if (!m_notifier.isBusConnected()) {
        m_here.add(request, std::move(done));
        return;
    }
    withdraw([&](const QString &identifier) { return identifier == request.identifier; });
    m_here.removePendingNotificationRequests({request.identifier});
    const Number number = post({.method = u"Add"_s,
                                .arguments = argumentsOf(request),
                                .request = request,
                                .made = m_clock.now(),
                                .done = std::move(done)});
    QTimer::singleShot(m_patience, this, [this, number] {
        if (const auto call = m_calls.find(number); call != m_calls.end()) {
            keepHere(call->second, u"no answer"_s);
            complete(call->second);
        }
    });
}

void NotifierUserNotificationCenter::removePendingNotificationRequests(
    const QStringList &identifiers) {
    withdraw([&](const QString &identifier) { return identifiers.contains(identifier); });
    m_here.removePendingNotificationRequests(identifiers);
    post({.method = u"Remove"_s, .arguments = {identifiers}});
}

void NotifierUserNotificationCenter::removeAllPendingNotificationRequests() {
    withdraw([](const QString &) { return true; });
    m_here.removeAllPendingNotificationRequests();
    post({.method = u"RemoveAll"_s});
}

void NotifierUserNotificationCenter::withdraw(
    const std::function<bool(const QString &identifier)> &isMeant) {
    for (auto &[number, call] : m_calls) {
        // What has no moment was never pending: it is shown in any case.
        if (call.request && call.request->trigger && isMeant(call.request->identifier))
            call.isWithdrawn = true;
    }
    m_accepted.removeIf([&](const auto &accepted) { return isMeant(accepted.key()); });
}

NotifierUserNotificationCenter::Number NotifierUserNotificationCenter::post(Call call) {
    m_calls.emplace(++m_lastNumber, std::move(call));
    send(m_lastNumber);
    return m_lastNumber;
}

void NotifierUserNotificationCenter::send(Number number) {
    Call &call = m_calls.at(number);
    ++call.attempts;
    m_notifier.call(
        call.method, call.arguments, this,
        [this, number, generation = m_generation](const QDBusMessage &reply) {
            if (generation == m_generation)
                takeAnswer(number, reply);
        },
        DBusService::Patience::Endless);
}

void NotifierUserNotificationCenter::takeAnswer(Number number, const QDBusMessage &reply) {
    if (isRefusal(reply) && hasDied(reply) && sendAgain())
        return;
    auto node = m_calls.extract(number);
    Call &call = node.mapped();
    if (call.request && call.done && !m_notifier.isBusConnected())
        m_here.add(*call.request, std::exchange(call.done, {})); // Reports that there is no bus.
    else if (call.request && isRefusal(reply))
        keepHere(call, reply.errorName());
    else if (call.request)
        accept(call);
    else if (call.method == "Pending"_L1 && !isRefusal(reply))
        m_accepted.removeIf([pending = reply.arguments().value(0).toStringList()](const auto &one) {
            return !pending.contains(one.key());
        });
    complete(call);
}

/// The order of the calls must hold, so all that are open go together. False when the oldest has
/// been tried too often.
bool NotifierUserNotificationCenter::sendAgain() {
    if (!m_notifier.isBusConnected() || m_calls.begin()->second.attempts >= maximumAttempts)
        return false;
    ++m_generation;
    for (const auto &[number, call] : m_calls)
        send(number);
    return true;
}

void NotifierUserNotificationCenter::accept(const Call &call) {
    m_hasToldWhy = false;
    if (call.isWithdrawn)
        return;
    if (call.isKept)
        m_here.removePendingNotificationRequests({call.request->identifier});
    if (isAhead(*call.request, 0.0))
        m_accepted.insert(call.request->identifier, *call.request);
}

void NotifierUserNotificationCenter::keepHere(Call &call, const QString &reason) {
    if (!call.request || call.isKept || call.isWithdrawn)
        return;
    if (!std::exchange(m_hasToldWhy, true))
        qCWarning(desktopLog,
                  "the notifier does not answer (%s): notifications are kept in this process and "
                  "end with it",
                  qPrintable(reason));
    call.isKept = true;
    if (call.request->trigger) {
        m_here.addMadeAt(call.made, *call.request);
        return;
    }
    m_here.add(*call.request, {});
    // It is shown now; a notifier that wakes up later finds this behind the request.
    post({.method = u"Remove"_s, .arguments = {QStringList{call.request->identifier}}});
}

void NotifierUserNotificationCenter::handOver() {
    const auto pending = m_here.pending(); // A copy: answers take from it.
    for (const auto &[request, added] : pending) {
        if (!isAhead(request, shortestHandOverSeconds))
            continue;
        post({.method = u"Add"_s,
              .arguments = argumentsOf(request),
              .request = request,
              .made = added,
              .isKept = true});
    }
}

/// A notifier that ends has shown all that it had, unless it was killed. Then the question alone
/// brings it up again.
void NotifierUserNotificationCenter::lookAfterAccepted() {
    m_accepted.removeIf([&](const auto &accepted) { return !isAhead(accepted.value(), 0.0); });
    if (!m_accepted.isEmpty() && m_notifier.isBusConnected())
        post({.method = u"Pending"_s});
}

bool NotifierUserNotificationCenter::isAhead(const NotificationRequest &request,
                                             double seconds) const {
    if (!request.trigger)
        return false;
    const auto moments = momentsOf(*request.trigger, m_calendar());
    return !moments.empty() && moments.back() > m_clock.now() + seconds;
}

void NotifierUserNotificationCenter::complete(Call &call) {
    if (const Completion done = std::exchange(call.done, {}))
        done(std::nullopt);
}

} // namespace tarne
