#pragma once

#include <QChar>

namespace tarne {

/// Whether Unicode ends a line at `c`. CR LF counts as two of them here.
[[nodiscard]] constexpr bool isLineBreak(QChar c) {
    return (c >= u'\n' && c <= u'\r') || c == u'\u0085' || c == u'\u2028' || c == u'\u2029';
}

} // namespace tarne
