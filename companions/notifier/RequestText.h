#pragma once

#include "NotificationSchedule.h"

#include <QByteArray>

#include <optional>

namespace tarne::notifier {

/// A request as the notifier's file holds it: a JSON document with all that is known of it.
/// Later versions read it: its keys never change.
[[nodiscard]] QByteArray textOf(const NotificationSchedule::Pending &pending);

/// The request; none unless the text is, byte for byte, one that `textOf` makes.
[[nodiscard]] std::optional<NotificationSchedule::Pending> pendingOf(const QByteArray &text);

} // namespace tarne::notifier
