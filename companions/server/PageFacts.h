#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace tarne {

/// What is known of a page: no more than this leaves the machine. Texts have no control characters.
struct PageFacts {
    QString origin;      ///< "https://host", with its port if it has one of its own.
    QString path;        ///< Begins with "/"; without query and fragment.
    QString title;       ///< May be empty.
    QString description; ///< May be empty.

    friend bool operator==(const PageFacts &, const PageFacts &) = default;
};

/// The same facts with control characters as blanks; none where one of them is not what its comment
/// says or is too long.
[[nodiscard]] std::optional<PageFacts> checked(PageFacts facts);

/// Host and path, by which a page is an example for the model.
[[nodiscard]] QString hostAndPath(const PageFacts &facts);

/// By what two questions are the same: a hash of the goals and of everything about the page.
[[nodiscard]] QByteArray questionKey(const QString &goals, const PageFacts &facts);
/// By what an override is found: as above without the description, which changes by itself.
[[nodiscard]] QByteArray overrideKey(const QString &goals, const PageFacts &facts);

} // namespace tarne
