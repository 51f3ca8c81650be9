#include "QuestionDesk.h"

#include "JsonCoder.h"
#include "ProtocolLimits.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

/// The members of a question, as they stand in a line.
struct WrittenPage {
    QString origin;
    std::optional<QString> path;
    std::optional<QString> title;
    std::optional<QString> description;
};

struct WrittenQuestion {
    double v = 0.0;
    double id = 0.0;
    QString op;
    std::optional<QString> goals;
    std::optional<WrittenPage> page;
    std::optional<bool> fresh;
};

/// As much of a question as an answer needs.
struct WrittenId {
    double id = 0.0;
};

} // namespace

template <>
struct json::JsonForm<WrittenPage> {
    static constexpr std::tuple members{
        member("origin", &WrittenPage::origin), member("path", &WrittenPage::path),
        member("title", &WrittenPage::title), member("description", &WrittenPage::description)};
    static WrittenPage blank() { return {}; }
};

template <>
struct json::JsonForm<WrittenQuestion> {
    static constexpr std::tuple members{
        member("v", &WrittenQuestion::v),       member("id", &WrittenQuestion::id),
        member("op", &WrittenQuestion::op),     member("goals", &WrittenQuestion::goals),
        member("page", &WrittenQuestion::page), member("fresh", &WrittenQuestion::fresh)};
    static WrittenQuestion blank() { return {}; }
};

template <>
struct json::JsonForm<WrittenId> {
    static constexpr std::tuple members{member("id", &WrittenId::id)};
    static WrittenId blank() { return {}; }
};

namespace {

bool isId(double number) {
    return number >= 1.0 && number <= limits::id && number == std::floor(number);
}

QByteArray encoded(double id, QJsonObject answer) {
    answer.insert(u"v"_s, 1);
    answer.insert(u"id"_s, static_cast<qint64>(id));
    return QJsonDocument(answer).toJson(QJsonDocument::Compact);
}

QByteArray badRequest(double id) {
    return encoded(id, {{u"error"_s, u"bad_request"_s}});
}

QString wordFor(VerdictSource source) {
    switch (source) {
    case VerdictSource::Override:
        return u"override"_s;
    case VerdictSource::Cache:
        return u"cache"_s;
    case VerdictSource::Model:
        break;
    }
    return u"model"_s;
}

QString wordFor(Unjudged::Reason reason) {
    switch (reason) {
    case Unjudged::Reason::NoKey:
        return u"no_key"_s;
    case Unjudged::Reason::Quota:
        return u"quota"_s;
    case Unjudged::Reason::Offline:
        return u"offline"_s;
    case Unjudged::Reason::Model:
        break;
    }
    return u"model"_s;
}

QJsonObject written(const Judging &judging) {
    if (const auto *judged = std::get_if<Judged>(&judging))
        return {{u"verdict"_s, wordFor(judged->verdict.judgement)},
                {u"confidence"_s, judged->verdict.confidence},
                {u"reason"_s, judged->verdict.reason},
                {u"source"_s, wordFor(judged->source)}};
    const auto &unjudged = std::get<Unjudged>(judging);
    QJsonObject error{{u"error"_s, wordFor(unjudged.reason)}};
    if (unjudged.retryAfter)
        error.insert(u"retry_after"_s, qint64{unjudged.retryAfter->count()});
    return error;
}

std::optional<PageFacts> factsIn(const WrittenQuestion &question) {
    if (!question.page)
        return std::nullopt;
    const WrittenPage &page = *question.page;
    return checked({.origin = page.origin,
                    .path = page.path.value_or(u"/"_s),
                    .title = page.title.value_or(QString()),
                    .description = page.description.value_or(QString())});
}

bool hasGoals(const WrittenQuestion &question) {
    return question.goals && !question.goals->isEmpty() &&
           static_cast<std::size_t>(question.goals->size()) <= limits::goals;
}

} // namespace

void QuestionDesk::answer(const QByteArray &line, const Reply &reply) {
    const auto question = json::decode<WrittenQuestion>(line);
    if (!question || question->v != 1.0 || !isId(question->id)) {
        const auto readable = json::decode<WrittenId>(line);
        reply(badRequest(readable && isId(readable->id) ? readable->id : 0.0));
        return;
    }
    const double id = question->id;
    if (question->op == "state"_L1) {
        reply(encoded(
            id, {{u"key"_s, m_classifier.hasKey()}, {u"left_today"_s, m_classifier.leftToday()}}));
        return;
    }
    const auto page = factsIn(*question);
    const bool isOverride = question->op == "override"_L1;
    if (!page || !hasGoals(*question) || (!isOverride && question->op != "classify"_L1)) {
        reply(badRequest(id));
        return;
    }
    if (isOverride) {
        m_classifier.addOverride(*question->goals, *page);
        reply(encoded(id, {{u"ok"_s, true}}));
        return;
    }
    m_classifier.classify(
        *question->goals, *page, question->fresh.value_or(false),
        [id, reply](const Judging &judging) { reply(encoded(id, written(judging))); });
}

QByteArray QuestionDesk::tooLong() {
    return badRequest(0.0);
}

} // namespace tarne
