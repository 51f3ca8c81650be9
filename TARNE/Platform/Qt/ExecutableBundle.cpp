#include "ExecutableBundle.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace tarne {

QString ExecutableBundle::path() const {
    return QCoreApplication::applicationDirPath();
}

std::optional<QString> ExecutableBundle::pathForResource(const QString &name) const {
    QString resource = QDir::cleanPath(path() + u"/../lib/tarne/"_s + name);
    return fileExists(resource) ? std::optional(std::move(resource)) : std::nullopt;
}

QString ExecutableBundle::currentDirectoryPath() const {
    return QDir::currentPath();
}

bool ExecutableBundle::fileExists(const QString &path) const {
    return QFileInfo::exists(path);
}

} // namespace tarne
