#include "SilentBuses.h"

#include "DesktopLog.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace tarne {

namespace {

constexpr std::string_view greeting{"\0AUTH\r\n", 7};

struct Bus {
    const char *name;
    const char *variable;
    QByteArray standardAddress; ///< Where it is without the variable.
};

/// The path of the first address in a list; empty when it has none.
QByteArray pathOf(const QByteArray &addresses) {
    const QByteArray first = addresses.split(';').constFirst();
    if (!first.startsWith("unix:"))
        return {};
    for (const QByteArray &field : first.mid(5).split(',')) {
        if (field.startsWith("path="))
            return QByteArray::fromPercentEncoding(field.mid(5));
    }
    return {};
}

QByteArray addressOf(const Bus &bus) {
    const QByteArray told = qgetenv(bus.variable);
    return told.isEmpty() ? bus.standardAddress : told;
}

/// Any answer will do: what it says is for those who come to stay.
bool isAnswered(int socket, std::chrono::milliseconds patience) {
    if (::send(socket, greeting.data(), greeting.size(), MSG_NOSIGNAL) < 0)
        return true;
    pollfd answer{socket, POLLIN, 0};
    return ::poll(&answer, 1, static_cast<int>(patience.count())) != 0;
}

} // namespace

bool busAnswers(const QByteArray &address, std::chrono::milliseconds patience) {
    const QByteArray path = pathOf(address);
    sockaddr_un place{};
    place.sun_family = AF_UNIX;
    if (path.isEmpty() || static_cast<std::size_t>(path.size()) >= sizeof place.sun_path)
        return true;
    std::memcpy(place.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (socket < 0)
        return true;
    // One that has left many waiting takes nobody any more.
    const bool isTaken =
        ::connect(socket, reinterpret_cast<const sockaddr *>(&place), sizeof place) == 0;
    const bool answers = isTaken ? isAnswered(socket, patience) : errno != EAGAIN;
    ::close(socket);
    return answers;
}

void doWithoutSilentBuses(std::chrono::milliseconds patience) {
    const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
    const std::array buses{
        Bus{"session", "DBUS_SESSION_BUS_ADDRESS",
            runtime.isEmpty() ? QByteArray() : "unix:path=" + runtime + "/bus"},
        Bus{"system", "DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/run/dbus/system_bus_socket"}};
    for (const Bus &bus : buses) {
        if (busAnswers(addressOf(bus), patience))
            continue;
        qCWarning(desktopLog, "the %s bus does not answer: this run does without it", bus.name);
        qputenv(bus.variable, "unix:path=/nonexistent");
    }
}

} // namespace tarne
