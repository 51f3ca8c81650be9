// tarne-server PORT: the classification server that TARNE starts, watches and stops.
//
// Environment: PORT, if it is there, agrees with the argument; GEMINI_API_KEY pays for the model
// and may be absent. Standard output gets one line when the port is bound. TARNE copies both
// streams into its log, so nothing else is ever written to either. SIGTERM ends it with 0.

#include "Classifier.h"
#include "CompanionsFolder.h"
#include "GeminiAddresses.h"
#include "GeminiRequest.h"
#include "HealthListener.h"
#include "NetworkHTTPClient.h"
#include "QuestionDesk.h"
#include "QuestionSocket.h"
#include "StandardDescriptors.h"
#include "UnixSignals.h"

#include <QCoreApplication>

#include <charconv>
#include <csignal>
#include <optional>
#include <string>
#include <string_view>

#include <sys/stat.h>
#include <unistd.h>

using namespace tarne;

namespace {

enum Status { Ended = 0, NoPort = 1, BadUse = 2 };

constexpr qint64 largestAnswer = 1'048'576; // Bytes; a verdict has some hundred.

std::optional<std::uint16_t> portIn(std::string_view text) {
    std::uint16_t port = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
    if (error != std::errc() || end != text.data() + text.size() || port == 0)
        return std::nullopt;
    return port;
}

/// The port that arguments and environment agree on.
std::optional<std::uint16_t> toldPort(int argc, char **argv) {
    const auto port = argc == 2 ? portIn(argv[1]) : std::nullopt;
    const char *variable = std::getenv("PORT");
    return variable == nullptr || portIn(variable) == port ? port : std::nullopt;
}

/// A key that no address can carry is no key.
std::optional<QUrl> modelAddress() {
    const QString key = qEnvironmentVariable("GEMINI_API_KEY");
    return key.isEmpty() ? std::nullopt : carriedGeminiAddress(gemini::endpoint, key);
}

void announce(std::uint16_t port) {
    const std::string line =
        "TARNE Classification Server running on port " + std::to_string(port) + '\n';
    [[maybe_unused]] const auto written = ::write(STDOUT_FILENO, line.data(), line.size());
}

} // namespace

int main(int argc, char **argv) {
    openStandardDescriptors();
    asio::io_context context(1);
    asio::signal_set ends(context, SIGTERM, SIGINT);
    std::signal(SIGPIPE, SIG_IGN);
    // With the key in it.
    disableCoreDumps();
    ::umask(S_IRWXG | S_IRWXO);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    const auto port = toldPort(argc, argv);
    if (!port)
        return BadUse;
    argc = 1;
    const QCoreApplication application(argc, argv);

    HealthListener health(context);
    if (!health.listen(*port))
        return NoPort;
    const std::string folder = companionsFolder();
    const bool hasFolder = !folder.empty() && makePrivateFolder(folder);
    QuotaGate quota(hasFolder ? folder + "/questions-today" : std::string());
    NetworkHTTPClient client({.idle = Classifier::patience, .body = largestAnswer}, {});
    Classifier classifier(context.get_executor(), {.client = client, .address = modelAddress()},
                          quota);
    QuestionDesk desk(classifier);
    std::optional<QuestionSocket> questions(
        std::in_place, context,
        QuestionSocket::Answerer{.answer = [&desk](const QByteArray &line,
                                                   const auto &reply) { desk.answer(line, reply); },
                                 .tooLong = QuestionDesk::tooLong()});
    // Without it the server is healthy all the same, and nobody can ask it.
    if (hasFolder)
        std::ignore = questions->listen(folder + '/' + questionSocketName(*port));
    announce(*port);

    ends.async_wait([&questions](std::error_code, int) {
        questions.reset();
        // A look-up of a name that is under way cannot be called off, and would be waited for.
        ::_exit(Ended);
    });
    context.run();
    return Ended;
}
