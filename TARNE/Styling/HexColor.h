#pragma once

#include <QColor>
#include <QStringView>

namespace tarne {

/// `Color(hex:)`: a colour in the sRGB space from 3 (RGB), 6 (RGB) or 8 (ARGB) characters.
///
/// Everything that is no letter and no number is trimmed from both ends first, so a leading "#" is
/// welcome. The number of characters left decides the form; the value is what a hexadecimal scan of
/// them yields before the first character that is no digit. It never fails: any other length gives
/// the fallback, a blue of 0 under an alpha of 1/255, which draws almost nothing.
[[nodiscard]] QColor colorFromHex(QStringView hex);

} // namespace tarne
