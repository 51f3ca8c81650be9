#include "RequestText.h"

#include "NotifierInterface.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

using namespace Qt::StringLiterals;

namespace tarne::notifier {

QByteArray textOf(const NotificationSchedule::Pending &pending) {
    const auto &[request, added] = pending;
    QJsonObject document{{u"identifier"_s, request.identifier},
                         {u"title"_s, request.content.title},
                         {u"body"_s, request.content.body},
                         {u"added"_s, added.secondsSinceReferenceDate()}};
    if (request.trigger) {
        QJsonObject components;
        const Components wire = componentsOf(request.trigger);
        for (auto field = wire.cbegin(); field != wire.cend(); ++field)
            components.insert(field.key(), field.value());
        document.insert(u"components"_s, components);
    }
    return QJsonDocument(document).toJson(QJsonDocument::Compact);
}

std::optional<NotificationSchedule::Pending> pendingOf(const QByteArray &text) {
    const QJsonObject document = QJsonDocument::fromJson(text).object();
    const double added = document.value("added"_L1).toDouble();
    NotificationRequest request{
        document.value("identifier"_L1).toString(),
        {document.value("title"_L1).toString(), document.value("body"_L1).toString()},
        std::nullopt};
    Components wire;
    const QJsonObject components = document.value("components"_L1).toObject();
    for (auto field = components.begin(); field != components.end(); ++field)
        wire.insert(field.key(), field.value().toInt());
    const Trigger trigger = triggerOf(wire);
    request.trigger = trigger.components;
    NotificationSchedule::Pending pending{std::move(request), Date::fromReferenceSeconds(added)};
    // Qt's reader takes more than JSON, and an absent member for an empty one. What does not read
    // back as the same bytes was not written by us.
    if (!trigger.isValid || !std::isfinite(added) || textOf(pending) != text)
        return std::nullopt;
    return pending;
}

} // namespace tarne::notifier
