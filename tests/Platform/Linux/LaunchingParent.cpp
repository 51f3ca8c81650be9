// Launches a child that sleeps, writes the child's process number and waits to be killed.

#include "QProcessLauncher.h"

#include <QCoreApplication>

#include <cstdio>

#include <unistd.h>

using namespace Qt::StringLiterals;

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    tarne::QProcessLauncher launcher;
    tarne::ChildLaunch launch;
    launch.executable = u"/bin/sh"_s;
    launch.arguments = {u"-c"_s, u"echo $$; exec sleep 1000"_s};
    launch.standardOutput = [](const QByteArray &chunk) {
        std::fwrite(chunk.constData(), 1, static_cast<size_t>(chunk.size()), stdout);
        std::fflush(stdout);
    };
    const auto outcome = launcher.launch(launch);
    ::pause();
    return static_cast<int>(outcome.index());
}
