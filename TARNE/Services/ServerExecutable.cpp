#include "ServerExecutable.h"

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

constexpr int maximumLevels = 10;

QString deletingLastPathComponent(const QString &path) {
    const auto slash = path.lastIndexOf(u'/');
    return slash > 0 ? path.left(slash) : slash == 0 ? u"/"_s : QString();
}

QString candidateIn(const QString &folder) {
    return folder + u'/' + serverExecutableName;
}

std::optional<QString> searchUpward(const Bundle &bundle, Log &log) {
    QString current = bundle.path();
    log.line(u"🔍 Starting search from: %1"_s.arg(current));
    for (int level = 0; level < maximumLevels; ++level) {
        const QString parent = deletingLastPathComponent(current);
        const QString candidate = candidateIn(parent);
        log.line(u"🔍 Checking [%1]: %2"_s.arg(QString::number(level), candidate));
        if (bundle.fileExists(candidate)) {
            log.line(u"🟡 Using development server at: %1"_s.arg(candidate));
            return candidate;
        }
        if (parent == "/"_L1 || parent == current) {
            log.line(u"🔍 Reached root or no change, stopping search"_s);
            return std::nullopt;
        }
        current = parent;
    }
    return std::nullopt;
}

} // namespace

std::optional<QString> findServerExecutable(const Bundle &bundle, Log &log) {
    if (const auto bundled = bundle.pathForResource(serverExecutableName)) {
        log.line(u"🟢 Using bundled server at: %1"_s.arg(*bundled));
        return bundled;
    }
    auto found = searchUpward(bundle, log);
    const QString candidate = candidateIn(bundle.currentDirectoryPath());
    log.line(u"🔍 Also checking working directory: %1"_s.arg(candidate));
    if (bundle.fileExists(candidate)) {
        log.line(u"🟡 Using server from working directory: %1"_s.arg(candidate));
        found = candidate;
    }
    return found;
}

} // namespace tarne
