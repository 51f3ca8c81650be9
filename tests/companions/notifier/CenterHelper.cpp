// TARNE's side of the notifications, to be ended by a kill.
//
//   center_helper ADDRESS NAME   takes TARNE's name on the bus of that address and adds requests
//
// Prints the identifier of each request that was accepted, one a line: "NAME-1" and so on.

#include "NotifierUserNotificationCenter.h"
#include "SystemClock.h"

#include <QCoreApplication>
#include <QDBusConnection>

#include <cstdio>

using namespace Qt::StringLiterals;
using namespace tarne;

namespace {

void addNext(NotifierUserNotificationCenter &center, const QString &name, int number) {
    const QString identifier = u"%1-%2"_s.arg(name).arg(number);
    center.add({identifier, {u"Title"_s, u"Body"_s}, DateComponents{2999, 12, 31, 23, 59, 59}},
               [&center, name, number, identifier](const std::optional<QString> &error) {
                   if (error)
                       return;
                   std::printf("%s\n", qPrintable(identifier));
                   std::fflush(stdout);
                   addNext(center, name, number + 1);
               });
}

} // namespace

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3)
        return 2;
    QDBusConnection bus = QDBusConnection::connectToBus(arguments[1], u"center"_s);
    if (!bus.registerService(u"com.tarne.app"_s))
        return 1;
    const SystemClock clock;
    NotifierUserNotificationCenter center(bus, clock, &Calendar::current);
    addNext(center, arguments[2], 1);
    addNext(center, arguments[2] + u"b"_s, 1);
    return QCoreApplication::exec();
}
