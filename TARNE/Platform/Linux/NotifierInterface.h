#pragma once

#include "Calendar.h"

#include <QMap>
#include <QString>

#include <optional>

/// The notifier as other programs see it on the session bus: docs/notifier.md.
namespace tarne::notifier {

inline constexpr QLatin1StringView service{"com.tarne.app.Notifier1"};
inline constexpr QLatin1StringView path{"/com/tarne/app/Notifier"};
inline constexpr QLatin1StringView interface { "com.tarne.app.Notifier1" };

/// Who may call it: the owner of this name.
inline constexpr QLatin1StringView clientService{"com.tarne.app"};

/// The wire's form of a request's moment, a{si}: "year", "month", "day", "hour", "minute" and
/// "second". It is empty for a request without a moment.
using Components = QMap<QString, int>;

/// Makes `Components` known to the bus. To be called before the first use.
void registerComponents();

[[nodiscard]] Components componentsOf(const std::optional<DateComponents> &trigger);

/// The moment that the wire's form names. Year, month and day are required, the others are 0 unless
/// told.
struct Trigger {
    bool isValid = false; ///< It is empty, or it names a day and a time of the years 1 to 9999.
    std::optional<DateComponents> components;
};
[[nodiscard]] Trigger triggerOf(const Components &components);

/// Whether there is such a day and time in the years 1 to 9999.
[[nodiscard]] bool isDayAndTime(const DateComponents &components);

} // namespace tarne::notifier
