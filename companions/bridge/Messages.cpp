#include "Messages.h"

#include "ProtocolLimits.h"

#include <algorithm>
#include <array>

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#include <simdjson.h>

namespace tarne {

namespace {

namespace dom = simdjson::dom;

constexpr std::int64_t version = 1;
constexpr std::array<std::string_view, 3> verdicts{"on_task", "off_task", "unsure"};
constexpr std::array<std::string_view, 3> sources{"override", "cache", "model"};
constexpr std::array<std::string_view, 5> errors{"no_key", "quota", "offline", "model",
                                                 "bad_request"};

/// One whole JSON object. Its values live as long as it does.
class Document {
public:
    explicit Document(std::string_view text) {
        dom::element root;
        m_isObject = !m_parser.parse(text.data(), text.size()).get(root) && !root.get(m_object);
    }

    [[nodiscard]] bool isOurs() const {
        std::int64_t told = 0;
        return m_isObject && !m_object["v"].get(told) && told == version;
    }
    [[nodiscard]] const dom::object &object() const { return m_object; }
    /// 0 where there is none that can be told.
    [[nodiscard]] MessageId id() const {
        std::uint64_t id = 0;
        const bool isId =
            m_isObject && !m_object["id"].get(id) && id <= static_cast<std::uint64_t>(limits::id);
        return isId ? id : 0;
    }

private:
    dom::parser m_parser;
    dom::object m_object;
    bool m_isObject = false;
};

bool isOneOf(std::string_view text, const auto &words) {
    return std::ranges::find(words, text) != words.end();
}

bool isAbsent(const dom::object &object, std::string_view name) {
    dom::element value;
    return object[name].get(value) != simdjson::SUCCESS || value.is_null();
}

bool readText(const dom::object &object, std::string_view name, std::string &result) {
    std::string_view text;
    if (object[name].get(text))
        return false;
    result = text;
    return true;
}

bool readText(const dom::object &object, std::string_view name,
              std::optional<std::string> &result) {
    return isAbsent(object, name) || readText(object, name, result.emplace());
}

bool readPage(const dom::object &object, AskedPage &page) {
    dom::object written;
    return !object["page"].get(written) && readText(written, "origin", page.origin) &&
           readText(written, "path", page.path) && readText(written, "title", page.title) &&
           readText(written, "description", page.description);
}

bool readQuestion(const dom::object &object, Question &question) {
    std::string_view op;
    if (object["op"].get(op))
        return false;
    if (op == "state")
        return true;
    question.kind = op == "override" ? Question::Kind::Override : Question::Kind::Classify;
    const bool isKnown = op == "override" || op == "classify";
    const bool hasFresh = isAbsent(object, "fresh") || !object["fresh"].get(question.isFresh);
    return isKnown && hasFresh && readPage(object, question.page);
}

std::optional<Answer> readVerdict(const dom::object &object) {
    PageVerdict verdict;
    const bool isWhole = readText(object, "verdict", verdict.verdict) &&
                         !object["confidence"].get(verdict.confidence) &&
                         readText(object, "reason", verdict.reason) &&
                         readText(object, "source", verdict.source);
    if (!isWhole || !isOneOf(verdict.verdict, verdicts) || !isOneOf(verdict.source, sources) ||
        verdict.confidence < 0.0 || verdict.confidence > 1.0)
        return std::nullopt;
    return verdict;
}

std::optional<Answer> readError(const dom::object &object) {
    NoAnswer error;
    std::int64_t retryAfter = 0;
    if (!readText(object, "error", error.error) || !isOneOf(error.error, errors))
        return std::nullopt;
    if (!object["retry_after"].get(retryAfter) && retryAfter > 0)
        error.retryAfter = retryAfter;
    return error;
}

std::optional<Answer> readContent(const dom::object &object) {
    if (!isAbsent(object, "error"))
        return readError(object);
    if (!isAbsent(object, "verdict"))
        return readVerdict(object);
    bool isNoted = false;
    if (!object["ok"].get(isNoted) && isNoted)
        return Noted();
    ServerState state;
    if (!object["key"].get(state.hasKey) && !object["left_today"].get(state.leftToday))
        return state;
    return std::nullopt;
}

/// Writes one object, member by member.
class ObjectWriter {
public:
    ObjectWriter() : m_writer(m_text) {
        m_writer.StartObject();
        member("v", version);
    }

    ObjectWriter &member(std::string_view name, std::string_view text) {
        key(name);
        m_writer.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
        return *this;
    }
    ObjectWriter &memberIfPresent(std::string_view name, const std::optional<std::string> &text) {
        return text ? member(name, *text) : *this;
    }
    ObjectWriter &member(std::string_view name, std::int64_t number) {
        key(name);
        m_writer.Int64(number);
        return *this;
    }
    ObjectWriter &member(std::string_view name, double number) {
        key(name);
        m_writer.Double(number);
        return *this;
    }
    ObjectWriter &flag(std::string_view name, bool value) {
        key(name);
        m_writer.Bool(value);
        return *this;
    }
    ObjectWriter &begin(std::string_view name) {
        key(name);
        m_writer.StartObject();
        return *this;
    }
    ObjectWriter &end() {
        m_writer.EndObject();
        return *this;
    }
    /// The whole text; the last call.
    std::string take() {
        m_writer.EndObject();
        return {m_text.GetString(), m_text.GetSize()};
    }

private:
    void key(std::string_view name) {
        m_writer.Key(name.data(), static_cast<rapidjson::SizeType>(name.size()));
    }

    rapidjson::StringBuffer m_text;
    rapidjson::Writer<rapidjson::StringBuffer> m_writer;
};

void writeContent(ObjectWriter &writer, const PageVerdict &verdict) {
    writer.member("verdict", verdict.verdict)
        .member("confidence", verdict.confidence)
        .member("reason", verdict.reason)
        .member("source", verdict.source);
}

void writeContent(ObjectWriter &writer, const Noted &) {
    writer.flag("ok", true);
}

void writeContent(ObjectWriter &writer, const ServerState &state) {
    writer.flag("key", state.hasKey).member("left_today", state.leftToday);
}

void writeContent(ObjectWriter &writer, const NoAnswer &error) {
    writer.member("error", error.error);
    if (error.retryAfter)
        writer.member("retry_after", *error.retryAfter);
}

} // namespace

ExtensionMessage readExtensionMessage(std::string_view text) {
    // A longer message could not become a line for the server.
    if (text.size() > limits::line)
        return Malformed{};
    const Document document(text);
    if (!document.isOurs())
        return Malformed{document.id()};
    std::string_view type;
    if (!document.object()["type"].get(type) && type == "hello")
        return Hello{};
    NumberedQuestion question{.id = document.id(), .question = {}};
    if (question.id == 0 || !readQuestion(document.object(), question.question))
        return Malformed{document.id()};
    return question;
}

std::optional<NumberedAnswer> readAnswer(std::string_view line) {
    const Document document(line);
    if (!document.isOurs())
        return std::nullopt;
    auto content = readContent(document.object());
    if (!content)
        return std::nullopt;
    return NumberedAnswer{document.id(), std::move(*content)};
}

std::string writtenQuestion(MessageId id, const Question &question, std::string_view goals) {
    ObjectWriter writer;
    writer.member("id", static_cast<std::int64_t>(id));
    if (question.kind == Question::Kind::State)
        return writer.member("op", "state").take();
    const bool isOverride = question.kind == Question::Kind::Override;
    writer.member("op", isOverride ? "override" : "classify");
    if (question.isFresh)
        writer.flag("fresh", true);
    return writer.member("goals", goals)
        .begin("page")
        .member("origin", question.page.origin)
        .memberIfPresent("path", question.page.path)
        .memberIfPresent("title", question.page.title)
        .memberIfPresent("description", question.page.description)
        .end()
        .take();
}

std::string writtenAnswer(MessageId id, const Answer &answer) {
    ObjectWriter writer;
    writer.member("id", static_cast<std::int64_t>(id));
    std::visit([&writer](const auto &content) { writeContent(writer, content); }, answer);
    return writer.take();
}

std::string writtenSession(const SessionState &state) {
    ObjectWriter writer;
    writer.member("type", "session");
    if (state.kind == SessionState::Kind::Unavailable)
        return writer.member("state", "unavailable").take();
    if (state.kind == SessionState::Kind::Inactive)
        return writer.member("state", "inactive").take();
    return writer.member("state", "active")
        .member("id", state.id)
        .member("goals", state.goals)
        .member("ends", state.ends)
        .member("duration", state.duration)
        .take();
}

std::string writtenServer(std::string_view state) {
    return ObjectWriter().member("type", "server").member("state", state).take();
}

} // namespace tarne
