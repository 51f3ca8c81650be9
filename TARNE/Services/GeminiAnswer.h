#pragma once

#include "HTTPClient.h"

#include <QByteArray>
#include <QString>

#include <variant>

namespace tarne {

/// A failed call to the model, told in one line for the user.
struct GeminiError {
    QString localizedDescription;

    friend bool operator==(const GeminiError &, const GeminiError &) = default;
};

/// The model's text, possibly empty, or why there is none.
using GeminiResult = std::variant<QString, GeminiError>;

/// The text of the first part of the first candidate in a response's body; without one, the
/// message that the service gave as its error. The HTTP status plays no part. Only a whole,
/// strictly valid JSON document in UTF-8 is read, nested no deeper than 1,024; duplicate keys: the
/// last counts.
[[nodiscard]] GeminiResult readGeminiAnswer(const QByteArray &body);

/// The outcome of the call: a transport failure as it is told, "No data received" for an answer
/// without a body, otherwise what the body says.
[[nodiscard]] GeminiResult readGeminiResponse(const HTTPResult &result);

} // namespace tarne
