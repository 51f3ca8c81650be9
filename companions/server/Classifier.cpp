#include "Classifier.h"

#include "ClassificationPrompt.h"
#include "GeminiAnswer.h"

#include <algorithm>
#include <utility>

namespace tarne {

namespace {

constexpr int tooManyRequests = 429;

Unjudged quotaIsUsedUp(std::chrono::seconds retryAfter) {
    return {.reason = Unjudged::Reason::Quota, .retryAfter = retryAfter};
}

/// A length that the service tells in seconds. It may also tell a date, which is not read.
std::chrono::seconds retryAfterOf(const HTTPResponse &response) {
    bool isNumber = false;
    const int told = response.retryAfter.toInt(&isNumber);
    return isNumber && told > 0 ? std::chrono::seconds(told) : QuotaGate::pauseAfterRefusal;
}

} // namespace

/// One question to the model, and all who wait for its answer.
struct Classifier::Flight {
    Flight(const asio::any_io_executor &executor, QString itsGoals, PageFacts itsPage,
           QByteArray itsKey)
        : goals(std::move(itsGoals)),
          page(std::move(itsPage)),
          key(std::move(itsKey)),
          deadline(executor) {}

    QString goals;
    PageFacts page;
    QByteArray key;
    std::vector<Done> waiters;
    asio::steady_timer deadline;
    bool isPosted = false;
};

Classifier::Classifier(asio::any_io_executor executor, Model model, QuotaGate &quota)
    : m_executor(std::move(executor)), m_model(std::move(model)), m_quota(quota) {}

Classifier::~Classifier() = default;

void Classifier::classify(const QString &goals, const PageFacts &page, bool isFresh, Done done) {
    if (m_overrides.contains(goals, page)) {
        done(Judged{{Judgement::OnTask, 1.0, {}}, VerdictSource::Override});
        return;
    }
    const QByteArray key = questionKey(goals, page);
    if (const auto known = isFresh ? std::nullopt : m_cache.find(key)) {
        done(Judged{*known, VerdictSource::Cache});
        return;
    }
    if (const auto flight = m_flights.value(key)) {
        flight->waiters.push_back(std::move(done));
        return;
    }
    if (!hasKey()) {
        done(Unjudged{Unjudged::Reason::NoKey, {}});
        return;
    }
    if (const auto retryAfter = m_quota.admit()) {
        done(quotaIsUsedUp(*retryAfter));
        return;
    }
    begin(goals, page, key, std::move(done));
}

void Classifier::begin(const QString &goals, const PageFacts &page, const QByteArray &key,
                       Done done) {
    const auto flight = std::make_shared<Flight>(m_executor, goals, page, key);
    flight->waiters.push_back(std::move(done));
    m_flights.insert(key, flight);
    // Over the whole time, since a peer that sends a byte now and then is never silent.
    flight->deadline.expires_after(m_model.patience);
    flight->deadline.async_wait([this, weak = std::weak_ptr(flight)](std::error_code error) {
        const auto late = weak.lock();
        if (!error && late)
            finish(*late, Unjudged{Unjudged::Reason::Offline, {}});
    });
    m_waiting.push_back(flight);
    startWaiting();
}

void Classifier::startWaiting() {
    while (m_atOnce < mostAtOnce && !m_waiting.empty()) {
        const auto flight = std::move(m_waiting.front());
        m_waiting.pop_front();
        // One that was asked before may have been refused meanwhile.
        if (const auto left = m_quota.pause())
            finish(*flight, quotaIsUsedUp(*left));
        else
            post(flight);
    }
}

void Classifier::post(const std::shared_ptr<Flight> &flight) {
    ++m_atOnce;
    flight->isPosted = true;
    const HTTPRequest request{.url = *m_model.address,
                              .contentType = "application/json",
                              .body =
                                  classificationRequestBody(flight->goals, flight->page,
                                                            m_overrides.examples(flight->goals))};
    // What comes too late finds nobody: the flight is gone.
    m_model.client.post(request, [this, executor = m_executor,
                                  weak = std::weak_ptr(flight)](const HTTPResult &result) {
        asio::post(executor, [this, weak, result] {
            if (const auto landed = weak.lock())
                land(*landed, result);
        });
    });
}

void Classifier::land(Flight &flight, const HTTPResult &result) {
    finish(flight, judge(flight, result));
}

Judging Classifier::judge(const Flight &flight, const HTTPResult &result) {
    const auto *response = std::get_if<HTTPResponse>(&result);
    if (response == nullptr)
        return Unjudged{Unjudged::Reason::Offline, {}};
    if (response->status == tooManyRequests) {
        m_quota.beginPause(retryAfterOf(*response));
        return quotaIsUsedUp(*m_quota.pause());
    }
    const GeminiResult answer = readGeminiResponse(result);
    const auto *text = std::get_if<QString>(&answer);
    if (response->status != 200 || text == nullptr)
        return Unjudged{Unjudged::Reason::Model, {}};
    const Verdict verdict = readVerdict(*text);
    m_cache.insert(flight.key, verdict);
    return Judged{verdict, VerdictSource::Model};
}

void Classifier::finish(Flight &flight, const Judging &judging) {
    // Whoever is told may ask again at once, which is a new question.
    const auto finished = m_flights.take(flight.key);
    std::erase(m_waiting, finished);
    finished->deadline.cancel();
    if (finished->isPosted)
        --m_atOnce;
    for (const Done &done : finished->waiters)
        done(judging);
    startWaiting();
}

} // namespace tarne
