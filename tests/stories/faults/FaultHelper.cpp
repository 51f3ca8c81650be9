// One run of the store, or of the notifier's file, whose calls of the system are made to fail.
//
//   fault_helper store FOLDER NUMBER      sets values of NUMBER + 1, + 2, ... one moment after the
//                                         other; a byte on standard input asks for the next one
//   fault_helper requests FOLDER NUMBER   puts requests of NUMBER + 1, + 2, ..., and tries again
//                                         where the disk refuses, as the notifier does
//
// Prints, one a line:
//
//   found NUMBER HISTORY   what the file held: of the values, and of those that come from a copy
//   set NUMBER             the store was handed values of this number
//   saved NUMBER           the notifier's file says that it holds this number
//   closed                 all is over

#include "FaultValues.h"
#include "FixedClock.h"
#include "QtRunLoop.h"
#include "RequestFile.h"
#include "StoredUserDefaults.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <array>
#include <cstdio>

#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace tarne;
using namespace tarne::test;

namespace {

constexpr int moments = 4;

void tell(const QByteArray &line) {
    std::puts(line.constData());
    std::fflush(stdout);
}

int runStore(const QString &folder, qint64 number) {
    const FixedClock clock;
    QtRunLoop runLoop;
    StoredUserDefaults defaults(folder, faultStoreKeys(), clock, runLoop,
                                std::chrono::milliseconds(20));
    tell("found " + QByteArray::number(static_cast<qint64>(defaults.doubleForKey(numberKey))) +
         ' ' +
         QByteArray::number(
             numberOfHistory(defaults.dataForKey(historyKey).value_or(QByteArray()))));
    int moment = 0;
    const auto setNext = [&] {
        ++moment;
        ++number;
        defaults.setObject(passingKey, static_cast<double>(number));
        if (moment != momentOfPassing)
            setLastingValues(defaults, number);
        defaults.synchronize();
        tell("set " + QByteArray::number(number));
    };
    QSocketNotifier questions(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&questions, &QSocketNotifier::activated, [&] {
        std::array<char, 16> bytes{};
        const bool isAsked = ::read(STDIN_FILENO, bytes.data(), bytes.size()) > 0;
        if (!isAsked || moment == moments)
            QCoreApplication::quit();
        else
            setNext();
    });
    setNext();
    QCoreApplication::exec();
    defaults.close();
    tell("closed");
    return EXIT_SUCCESS;
}

int runRequests(const QString &folder, qint64 number) {
    constexpr int attempts = 3;
    const Date now = FixedClock().moment;
    const auto file = notifier::RequestFile::open(folder, now);
    if (!file)
        return EXIT_FAILURE;
    tell("found " + QByteArray::number(numberOfRequests(file->requests())) + " 0");
    for (int moment = 0; moment < moments; ++moment) {
        ++number;
        tell("set " + QByteArray::number(number));
        putRequests(*file, number, now);
        for (int attempt = 0; attempt < attempts; ++attempt) {
            if (file->save(now)) {
                tell("saved " + QByteArray::number(number));
                break;
            }
        }
    }
    tell("closed");
    return EXIT_SUCCESS;
}

} // namespace

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 4)
        return 2;
    const qint64 number = arguments[3].toLongLong();
    return arguments[1] == u"store"_s ? runStore(arguments[2], number)
                                      : runRequests(arguments[2], number);
}
