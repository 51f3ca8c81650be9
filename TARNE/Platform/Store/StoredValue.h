#pragma once

#include "UserDefaults.h"

#include <QMap>

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace tarne {

using DefaultsValues = QMap<QString, DefaultsValue>;

/// A key's new value; none when the key was removed.
struct DefaultsChange {
    QString key;
    std::optional<DefaultsValue> value;
};

using DefaultsChanges = std::vector<DefaultsChange>;

/// Whether both would be stored alike: same type and same bits. Doubles that are no number are
/// alike. Cheap for data that shares its bytes.
[[nodiscard]] bool isSameValue(const DefaultsValue &a, const DefaultsValue &b);

/// A value as the columns `type` and `value` hold it.
///
/// The words of `type`, the form of each type and the checksum are read by other programs and by
/// later versions: they never change.
struct StoredValue {
    using Cell = std::variant<std::monostate, qint64, double, std::string, QByteArray>;

    std::string type;
    Cell cell; ///< By storage class: null, integer, real, text, blob.

    explicit StoredValue(const DefaultsValue &value);
    StoredValue(std::string typeWord, Cell content)
        : type(std::move(typeWord)), cell(std::move(content)) {}

    /// The value; none when the cell does not fit the type or the type is unknown.
    [[nodiscard]] std::optional<DefaultsValue> decoded() const;

    /// CRC-32 of the type's word followed by the value: text and data as their bytes, integers and
    /// reals as the eight bytes of their machine form, lowest first.
    [[nodiscard]] quint32 checksum() const;
};

} // namespace tarne
