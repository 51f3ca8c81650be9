#pragma once

#include "ProcessTools.h"

namespace tarne {

/// Runs the system's own lsof and pkill.
class SystemProcessTools final : public ProcessTools {
public:
    std::optional<Result> run(const QString &path, const QStringList &arguments) override;
    /// Signals one process; the own one, process groups and "everybody" are left alone.
    void sendSignal(qint32 process, int signal) override;
};

} // namespace tarne
