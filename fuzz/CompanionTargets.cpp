// What the programs beside TARNE read: each other's messages, the model's verdict, the store.

#include "FuzzTargets.h"

#include "GoalsText.h"
#include "Messages.h"
#include "NativeMessages.h"
#include "ProtocolLimits.h"
#include "QuestionDesk.h"
#include "SessionWatch.h"
#include "Verdict.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <cmath>

using namespace Qt::StringLiterals;

namespace tarne::fuzz {

namespace {

std::string_view viewOf(Input input) {
    return {input.data(), static_cast<std::size_t>(input.size())};
}

/// Answers nothing: what is asked of it is still open when the input is over.
class SilentModel final : public HTTPClient {
public:
    void post(const HTTPRequest &request, Completion) override {
        require(QJsonDocument::fromJson(request.body).isObject(), "a request is JSON");
    }
};

/// Binds a value of the kind that a row's letter tells.
void bindValue(SQLite::Statement &insert, char kind, const std::string &value) {
    if (kind == 'i')
        insert.bind(2, static_cast<std::int64_t>(std::atoll(value.c_str())));
    else if (kind == 'd')
        insert.bind(2, std::atof(value.c_str()));
    else if (kind == 'b')
        insert.bind(2, value.data(), static_cast<int>(value.size()));
    else
        insert.bind(2, value);
}

/// A store of one row for each line of the input: a letter for the kind, the key, "=", the value.
void writeStore(const std::string &file, std::string_view lines) {
    SQLite::Database store(file, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    store.exec("PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF; PRAGMA user_version = 1;"
               "CREATE TABLE defaults (key TEXT PRIMARY KEY, value ANY) STRICT");
    while (!lines.empty()) {
        const std::string_view line = lines.substr(0, lines.find('\n'));
        lines.remove_prefix(std::min(lines.size(), line.size() + 1));
        const std::size_t sign = line.find('=');
        if (sign == std::string_view::npos || sign == 0)
            continue;
        SQLite::Statement insert(store, "INSERT OR REPLACE INTO defaults VALUES (?, ?)");
        insert.bind(1, std::string(line.substr(1, sign - 1)));
        bindValue(insert, line[0], std::string(line.substr(sign + 1)));
        insert.exec();
    }
}

void requireTold(const SessionState &state) {
    const QJsonDocument told =
        QJsonDocument::fromJson(QByteArray::fromStdString(writtenSession(state)));
    require(told.isObject(), "a session is told in JSON");
    if (state.kind != SessionState::Kind::Active)
        return;
    require(std::isfinite(state.ends), "an end is a moment");
    require(static_cast<std::size_t>(told[u"goals"].toString().size()) <= limits::goals,
            "goals have an end");
    require(toldGoals(state.goals) == state.goals, "told goals stay as they are");
}

} // namespace

void question(Input input) {
    asio::io_context context;
    SilentModel model;
    QuotaGate quota({});
    Classifier classifier(context.get_executor(),
                          {.client = model, .address = QUrl(u"https://model.example"_s)}, quota);
    QuestionDesk desk(classifier);
    int answers = 0;
    desk.answer(input.toByteArray(), [&answers](const QByteArray &line) {
        ++answers;
        require(!line.contains('\n'), "an answer is one line");
        require(readAnswer({line.constData(), static_cast<std::size_t>(line.size())}).has_value(),
                "an answer is one for the bridge");
    });
    require(answers <= 1, "a question has one answer");
}

void nativeMessages(Input input) {
    FrameReader reader;
    reader.add(viewOf(input));
    while (const auto message = reader.next()) {
        require(message->size() <= longestMessage, "a message has an end");
        const auto read = readExtensionMessage(*message);
        if (const auto *asked = std::get_if<NumberedQuestion>(&read)) {
            const std::string line = writtenQuestion(asked->id, asked->question, "Write");
            require(line.find('\n') == std::string::npos, "a question is one line");
            require(QJsonDocument::fromJson(QByteArray::fromStdString(line)).isObject(),
                    "a question is JSON");
        }
    }
}

void serverAnswer(Input input) {
    const auto answer = readAnswer(viewOf(input));
    if (!answer)
        return;
    const std::string written = writtenAnswer(answer->id, answer->answer);
    const auto again = readAnswer(written);
    require(again.has_value() && writtenAnswer(again->id, again->answer) == written,
            "an answer is told as it was read");
}

void modelVerdict(Input input) {
    const Verdict verdict = readVerdict(QString::fromUtf8(input));
    require(verdict.confidence >= 0.0 && verdict.confidence <= 1.0, "a confidence is a share");
    require(static_cast<std::size_t>(verdict.reason.size()) <= limits::reason,
            "a reason has an end");
}

void storeRows(Input input) {
    const QTemporaryDir folder;
    const std::string file = folder.filePath(u"defaults.sqlite"_s).toStdString();
    writeStore(file, viewOf(input));
    const auto stored = readStoredSession(file);
    SessionWatch watch;
    SessionWatch::Moment now{};
    for (int reading = 0; reading < 3; ++reading) {
        now += std::chrono::seconds(1);
        requireTold(watch.take(stored, reading != 1, now));
    }
}

} // namespace tarne::fuzz
