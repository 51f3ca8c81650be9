#pragma once

#include "Date.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <variant>

namespace tarne {

/// A value of the defaults store, one alternative for each stored type.
using DefaultsValue = std::variant<bool, qint64, double, QString, Date, QByteArray>;

/// The defaults store: typed values under text keys, shared by all keys of the system.
///
/// Reads come from memory. A write that changes nothing is no write. Main thread only. A failing
/// disk costs the write and is reported on standard error, never to the caller.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;

    [[nodiscard]] virtual std::optional<DefaultsValue> objectForKey(const QString &key) const = 0;
    virtual void setObject(const QString &key, const DefaultsValue &value) = 0;
    virtual void removeObjectForKey(const QString &key) = 0;

    /// Asks for what was written so far to reach the disk soon. Does not wait for it.
    virtual void synchronize() = 0;

    // Reads that coerce as the original store does; an absent or unfit value is the zero value of
    // the result, or none.

    /// True for true, a number other than 0, and a text that begins, after white space, with "Y" or
    /// "T" (in either case) or with a number other than 0.
    [[nodiscard]] bool boolForKey(const QString &key) const;
    /// The number, 1.0 for true, or the number that a text begins with.
    [[nodiscard]] double doubleForKey(const QString &key) const;
    /// The text, or the text of a number.
    [[nodiscard]] std::optional<QString> stringForKey(const QString &key) const;
    [[nodiscard]] std::optional<QByteArray> dataForKey(const QString &key) const;
    [[nodiscard]] std::optional<Date> dateForKey(const QString &key) const;
};

} // namespace tarne
