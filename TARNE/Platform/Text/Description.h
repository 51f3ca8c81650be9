#pragma once

#include <QString>
#include <QStringList>

namespace tarne {

/// A number as it stands in log lines: the shortest decimal text that reads back as the same
/// double, with ".0" when it is whole, e.g. "1500.0", "299.98", "1e-05", "nan".
[[nodiscard]] QString description(double value);

/// A list of texts as it stands in log lines, e.g. `["3000"]`; quotes, backslashes and line ends
/// inside an element are escaped.
[[nodiscard]] QString description(const QStringList &texts);

} // namespace tarne
