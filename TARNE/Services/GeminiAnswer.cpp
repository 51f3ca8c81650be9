#include "GeminiAnswer.h"

#include "Utf8.h"

#include <optional>
#include <string_view>

#include <simdjson.h>

using namespace Qt::StringLiterals;

namespace tarne {
namespace {

namespace dom = simdjson::dom;

using Value = std::optional<dom::element>;

// The steps of a walk. A step from nothing, or from a value of another type, leads to nothing.

Value member(const Value &object, std::string_view name) {
    Value found;
    if (object && object->is_object()) {
        for (const auto &[key, value] : dom::object(object->get_object())) {
            if (key == name)
                found = value;
        }
    }
    return found;
}

/// The first element of an array that holds nothing but objects.
Value firstObject(const Value &array) {
    if (!array || !array->is_array())
        return {};
    Value first;
    for (const dom::element element : dom::array(array->get_array())) {
        if (!element.is_object())
            return {};
        if (!first)
            first = element;
    }
    return first;
}

std::optional<QString> text(const Value &value) {
    if (!value || !value->is_string())
        return {};
    return textOfUtf8(std::string_view(value->get_string()));
}

/// Where the number ends that begins at `begin`; `begin` itself where there is none by JSON's
/// grammar.
const char *endOfNumber(const char *begin, const char *end) {
    const char *at = begin;
    const auto digits = [&] {
        const char *const first = at;
        while (at != end && *at >= '0' && *at <= '9')
            ++at;
        return at - first;
    };
    if (at != end && *at == '-')
        ++at;
    if (at != end && *at == '0')
        ++at;
    else if (digits() == 0)
        return begin;
    if (at != end && *at == '.') {
        ++at;
        if (digits() == 0)
            return begin;
    }
    if (at != end && (*at == 'e' || *at == 'E')) {
        ++at;
        if (at != end && (*at == '+' || *at == '-'))
            ++at;
        if (digits() == 0)
            return begin;
    }
    return at;
}

/// The body with a zero in place of every number. The reader refuses numbers that it cannot hold,
/// which are valid JSON, and none is ever read here.
QByteArray withoutNumbers(QByteArray body) {
    char *at = body.data();
    char *const end = at + body.size();
    bool isInText = false;
    while (at != end) {
        const char c = *at;
        if (isInText) {
            if (c == '\\' && end - at > 1)
                ++at;
            isInText = c != '"';
        } else if (c == '"') {
            isInText = true;
        } else if (const char *const behind = endOfNumber(at, end); behind != at) {
            if (*at == '-')
                ++at;
            *at++ = '0';
            while (at != behind)
                *at++ = ' ';
            continue;
        }
        ++at;
    }
    return body;
}

simdjson::error_code parse(dom::parser &parser, const QByteArray &body, dom::element &document) {
    return parser.parse(body.constData(), static_cast<std::size_t>(body.size())).get(document);
}

GeminiError noJson() {
    return {u"The service's answer is not valid JSON."_s};
}

} // namespace

GeminiResult readGeminiAnswer(const QByteArray &body) {
    dom::parser parser;
    dom::element document;
    simdjson::error_code error = parse(parser, body, document);
    if (error == simdjson::NUMBER_ERROR)
        error = parse(parser, withoutNumbers(body), document);
    if (error != simdjson::SUCCESS)
        return noJson();
    if (!document.is_object() && !document.is_array())
        return noJson();

    const Value content = member(firstObject(member(document, "candidates")), "content");
    if (const auto answer = text(member(firstObject(member(content, "parts")), "text")))
        return *answer;
    if (const auto message = text(member(member(document, "error"), "message")))
        return GeminiError{*message};
    return GeminiError{u"Invalid response format"_s};
}

GeminiResult readGeminiResponse(const HTTPResult &result) {
    if (const auto *error = std::get_if<TransportError>(&result))
        return GeminiError{error->localizedDescription};
    const QByteArray &body = std::get<HTTPResponse>(result).body;
    if (body.isEmpty())
        return GeminiError{u"No data received"_s};
    return readGeminiAnswer(body);
}

} // namespace tarne
