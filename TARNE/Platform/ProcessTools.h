#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

namespace tarne {

/// The tools that find and end stray processes.
///
/// Whatever is asked, the own process is never signalled and never among those that a tool names.
class ProcessTools {
public:
    struct Result {
        int status = 0; ///< Exit status; of a tool ended by a signal, the signal's number.
        QByteArray output;

        bool operator==(const Result &) const = default;
    };

    virtual ~ProcessTools() = default;

    /// Runs the tool at `path` to its end; absent when it could not be launched. Blocks.
    [[nodiscard]] virtual std::optional<Result> run(const QString &path,
                                                    const QStringList &arguments) = 0;

    virtual void sendSignal(qint32 process, int signal) = 0;
};

} // namespace tarne
