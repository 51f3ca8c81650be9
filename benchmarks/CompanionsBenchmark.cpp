// What a question costs the classification server, as its cache grows.

#include "QuestionDesk.h"

#include <benchmark/benchmark.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace tarne {
namespace {

/// Says at once that a page is off task.
class PromptModel final : public HTTPClient {
public:
    void post(const HTTPRequest &, Completion done) override {
        const QJsonObject part{
            {u"text"_s, uR"({"verdict":"off_task","confidence":0.9,"reason":"A film."})"_s}};
        const QJsonObject content{{u"parts"_s, QJsonArray{part}}};
        const QJsonObject candidate{{u"content"_s, content}};
        const QJsonObject answer{{u"candidates"_s, QJsonArray{candidate}}};
        done(HTTPResponse{.status = 200,
                          .body = QJsonDocument(answer).toJson(QJsonDocument::Compact)});
    }
};

/// A desk whose clock passes a minute with each question and a day with each hundred, so that the
/// quota is never used up.
class Desk {
public:
    QByteArray ask(qint64 page) {
        m_steady += std::chrono::minutes(1);
        if (++m_asked % 100 == 0)
            m_wall += std::chrono::days(1);
        QByteArray answer;
        m_desk.answer(R"({"v":1,"id":7,"op":"classify","goals":"Write the report","page":)"
                      R"({"origin":"https://example.org","path":"/watch","title":"Film )" +
                          QByteArray::number(page) + R"("}})",
                      [&answer](const QByteArray &line) { answer = line; });
        m_context.restart();
        m_context.poll();
        return answer;
    }

private:
    std::chrono::steady_clock::time_point m_steady{std::chrono::hours(1)};
    std::chrono::system_clock::time_point m_wall{std::chrono::hours(1)};
    int m_asked = 0;
    asio::io_context m_context{1};
    PromptModel m_model;
    QuotaGate m_quota{{},
                      {.steady = [this] { return m_steady; }, .wall = [this] { return m_wall; }}};
    Classifier m_classifier{m_context.get_executor(),
                            {.client = m_model, .address = QUrl(u"https://model.example"_s)},
                            m_quota};
    QuestionDesk m_desk{m_classifier};
};

void cachedQuestion(benchmark::State &state) {
    Desk desk;
    for (qint64 page = 0; page < state.range(0); ++page)
        desk.ask(page);
    qint64 page = 0;
    for (auto _ : state) {
        page = (page + 7919) % state.range(0);
        if (!desk.ask(page).contains("cache"))
            state.SkipWithError("not from the cache");
    }
}
BENCHMARK(cachedQuestion)->Arg(1)->Arg(100)->Arg(10'000)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace tarne

BENCHMARK_MAIN();
