#pragma once

#include "Classifier.h"
#include "QueuedHTTPClient.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarne::test {

/// The body of the service's answer that holds this text of the model's.
inline QByteArray serviceAnswer(const QString &text) {
    const QJsonObject part{{QStringLiteral("text"), text}};
    const QJsonObject content{{QStringLiteral("parts"), QJsonArray{part}}};
    const QJsonObject candidate{{QStringLiteral("content"), content}};
    return QJsonDocument(QJsonObject{{QStringLiteral("candidates"), QJsonArray{candidate}}})
        .toJson(QJsonDocument::Compact);
}

inline QByteArray serviceVerdict(const QString &verdict, double confidence = 0.9) {
    const QJsonObject answer{{QStringLiteral("verdict"), verdict},
                             {QStringLiteral("confidence"), confidence},
                             {QStringLiteral("reason"), QStringLiteral("A reason.")}};
    return serviceAnswer(QString::fromUtf8(QJsonDocument(answer).toJson(QJsonDocument::Compact)));
}

inline PageFacts pageNamed(const QString &title) {
    return {.origin = QStringLiteral("https://example.org"),
            .path = QStringLiteral("/watch"),
            .title = title,
            .description = {}};
}

/// A classifier over a model that answers when the test says so, with clocks that the test moves.
class ClassifierTest : public testing::Test {
protected:
    ClassifierTest() { make(true); }

    void make(bool hasKey, std::chrono::milliseconds patience = Classifier::patience) {
        const std::optional<QUrl> address(QStringLiteral("https://model.example/ask?key=KEY"));
        m_classifier.emplace(context.get_executor(),
                             Classifier::Model{.client = model,
                                               .address = hasKey ? address : std::nullopt,
                                               .patience = patience},
                             m_quota);
    }

    Classifier &classifier() { return *m_classifier; }

    void classify(const PageFacts &page, bool isFresh = false,
                  const QString &goals = QStringLiteral("Write the report")) {
        classifier().classify(goals, page, isFresh,
                              [this](const Judging &judging) { judgings.push_back(judging); });
    }

    void answer(const HTTPResult &result) {
        model.answer(result);
        runPosted();
    }
    void answer(const QByteArray &body, int status = 200) {
        answer(HTTPResponse{.status = status, .body = body});
    }

    /// Runs what is due now, and waits for nothing.
    void runPosted() {
        context.restart();
        context.poll();
    }

    Judgement judgement(std::size_t index) const {
        const auto *judged = std::get_if<Judged>(&judgings.at(index));
        EXPECT_NE(judged, nullptr) << "no verdict";
        return judged != nullptr ? judged->verdict.judgement : Judgement::Unsure;
    }
    VerdictSource source(std::size_t index) const {
        const auto *judged = std::get_if<Judged>(&judgings.at(index));
        EXPECT_NE(judged, nullptr) << "no verdict";
        return judged != nullptr ? judged->source : VerdictSource::Model;
    }
    Unjudged unjudged(std::size_t index) const {
        const auto *unjudged = std::get_if<Unjudged>(&judgings.at(index));
        EXPECT_NE(unjudged, nullptr) << "a verdict";
        return unjudged != nullptr ? *unjudged : Unjudged();
    }

    asio::io_context context{1};
    QueuedHTTPClient model;
    std::vector<Judging> judgings;
    std::chrono::steady_clock::time_point now{std::chrono::hours(1)};
    std::chrono::system_clock::time_point wall{
        std::chrono::sys_days(std::chrono::year(2026) / std::chrono::November / 22)};

private:
    QuotaGate m_quota{{}, {.steady = [this] { return now; }, .wall = [this] { return wall; }}};
    std::optional<Classifier> m_classifier;
};

} // namespace tarne::test
