#pragma once

#include <QString>

#include <optional>

namespace tarne {

/// The application as it lies on the disk, and what surrounds it.
class Bundle {
public:
    virtual ~Bundle() = default;

    /// The absolute path of the folder that stands for the application.
    [[nodiscard]] virtual QString path() const = 0;
    /// The path of one of the application's own resources, if there is such a file.
    [[nodiscard]] virtual std::optional<QString> pathForResource(const QString &name) const = 0;
    [[nodiscard]] virtual QString currentDirectoryPath() const = 0;
    /// Whether there is anything at `path`; links are followed.
    [[nodiscard]] virtual bool fileExists(const QString &path) const = 0;
};

} // namespace tarne
