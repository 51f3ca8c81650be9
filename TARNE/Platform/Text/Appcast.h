#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <optional>
#include <vector>

namespace tarne {

/// One release of an update feed.
struct AppcastRelease {
    QString version;        ///< What is compared; never empty.
    QString displayVersion; ///< What is shown; `version` where the feed has nothing else.
    QUrl page;              ///< http or https; empty where the feed names none.

    friend bool operator==(const AppcastRelease &, const AppcastRelease &) = default;
};

/// Reads an appcast: RSS whose items carry `version` and `shortVersionString`, as elements or as
/// attributes of `enclosure`, in any XML namespace. The page of a release is its `link`, else its
/// enclosure's address, else the channel's `link`.
///
/// Items without a version are left out. Nothing is returned for a document that is not
/// well-formed, is no RSS, has a document type, or goes beyond the limits: 10,000 items, 4,096
/// characters in a field, 32 levels.
[[nodiscard]] std::optional<std::vector<AppcastRelease>> parseAppcast(const QByteArray &document);

/// The greatest version of the releases, the first of equals; nothing for none.
[[nodiscard]] std::optional<AppcastRelease>
newestRelease(const std::vector<AppcastRelease> &releases);

} // namespace tarne
