#pragma once

#include <QStringView>

#include <compare>

namespace tarne {

/// Orders two version texts such as "1.10" and "1.9b2".
///
/// A version is read as runs of digits and runs of letters; everything else separates. Numbers of
/// any length compare by value and missing ones count as 0, letters compare by code point. A
/// letter run makes a version earlier than a number or nothing in its place: 2.0rc1 comes before
/// 2.0. What follows a "+" or a white space is no part of the version.
[[nodiscard]] std::weak_ordering compareVersions(QStringView a, QStringView b);

} // namespace tarne
