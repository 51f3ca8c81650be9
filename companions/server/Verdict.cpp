#include "Verdict.h"

#include "JsonCoder.h"
#include "ProtocolLimits.h"

#include <QTextBoundaryFinder>

#include <array>

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

/// What the model was asked to say.
struct Answer {
    std::optional<QString> verdict;
    std::optional<double> confidence;
    std::optional<QString> reason;
};

template <class Type>
bool readOnce(json::Value value, std::optional<Type> &result) {
    if (result)
        return false;
    result.emplace();
    return json::read(value, *result);
}

bool readMember(json::Key &key, json::Value value, Answer &answer) {
    const std::optional<std::string_view> name = key.text();
    if (!name)
        return false;
    if (*name == "verdict")
        return readOnce(value, answer.verdict);
    if (*name == "confidence")
        return readOnce(value, answer.confidence);
    return *name == "reason" && readOnce(value, answer.reason);
}

bool readAnswer(json::Value value, Answer &answer) {
    simdjson::ondemand::object object;
    if (value.get_object().get(object))
        return false;
    for (auto item : object) {
        simdjson::ondemand::field field;
        if (std::move(item).get(field))
            return false;
        json::Key key(field);
        if (!readMember(key, field.value(), answer))
            return false;
    }
    return answer.verdict && answer.confidence && answer.reason;
}

std::optional<Judgement> judgementFor(const QString &word) {
    for (const Judgement judgement : {Judgement::OnTask, Judgement::OffTask, Judgement::Unsure}) {
        if (wordFor(judgement) == word)
            return judgement;
    }
    return std::nullopt;
}

QString shortened(const QString &reason) {
    constexpr auto longest = static_cast<qsizetype>(limits::reason);
    if (reason.size() <= longest)
        return reason;
    QTextBoundaryFinder graphemes(QTextBoundaryFinder::Grapheme, reason);
    graphemes.setPosition(longest);
    if (!graphemes.isAtBoundary())
        graphemes.toPreviousBoundary();
    return reason.first(std::max<qsizetype>(graphemes.position(), 0));
}

} // namespace

QString wordFor(Judgement judgement) {
    switch (judgement) {
    case Judgement::OnTask:
        return u"on_task"_s;
    case Judgement::OffTask:
        return u"off_task"_s;
    case Judgement::Unsure:
        break;
    }
    return u"unsure"_s;
}

Verdict readVerdict(const QString &text) {
    Answer answer;
    const bool isWhole = json::readDocument(
        text.toUtf8(), [&answer](json::Value value) { return readAnswer(value, answer); });
    if (!isWhole || *answer.confidence < 0.0 || *answer.confidence > 1.0)
        return {};
    const auto judgement = judgementFor(*answer.verdict);
    if (!judgement)
        return {};
    return {.judgement = *judgement,
            .confidence = *answer.confidence,
            .reason = shortened(*answer.reason)};
}

} // namespace tarne
