#pragma once

#include "Bundle.h"

namespace tarne {

/// The folder of the executable stands for the bundle; `../lib/tarne/` beside it holds the
/// resources. Needs the application object.
class ExecutableBundle final : public Bundle {
public:
    QString path() const override;
    std::optional<QString> pathForResource(const QString &name) const override;
    QString currentDirectoryPath() const override;
    bool fileExists(const QString &path) const override;
};

} // namespace tarne
