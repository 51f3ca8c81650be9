#include "SystemProcessTools.h"

#include "StandardDescriptors.h"

#include <QProcess>

#include <csignal>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

/// A tool names us where a connection of ours has one of its ends on the port it looks at.
QByteArray withoutOwnProcess(const QByteArray &output) {
    const QByteArray own = QByteArray::number(::getpid());
    QList<QByteArray> lines = output.split('\n');
    lines.removeAll(own);
    return lines.join('\n');
}

} // namespace

std::optional<ProcessTools::Result> SystemProcessTools::run(const QString &path,
                                                            const QStringList &arguments) {
    QProcess tool;
    tool.setProgram(path);
    // Without this pkill would end the shell or terminal that started us, if its command line
    // matches.
    tool.setArguments(path.endsWith("/pkill"_L1) ? QStringList{u"--ignore-ancestors"_s} + arguments
                                                 : arguments);
    tool.setStandardErrorFile(QProcess::nullDevice());
    tool.setChildProcessModifier(keepOtherDescriptorsToOurselves);
    tool.start(QIODevice::ReadOnly);
    if (!tool.waitForStarted(-1))
        return std::nullopt;
    tool.waitForFinished(-1);
    return Result{tool.exitCode(), withoutOwnProcess(tool.readAllStandardOutput())};
}

void SystemProcessTools::sendSignal(qint32 process, int signal) {
    if (process > 0 && process != ::getpid())
        ::kill(process, signal);
}

} // namespace tarne
