#pragma once

#include "SessionWatch.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

/// The messages of docs/companions-protocol.md, as values. What is read holds no more than the
/// members that are told there, so nothing else is ever passed on.
namespace tarne {

using MessageId = std::uint64_t;

struct AskedPage {
    std::string origin;
    std::optional<std::string> path;
    std::optional<std::string> title;
    std::optional<std::string> description;
};

/// A question, of the extension's or for the server.
struct Question {
    enum class Kind { Classify, Override, State };

    Kind kind = Kind::State;
    AskedPage page{}; ///< Not of a question for the state.
    bool isFresh = false;
};

// What the extension says.

struct Hello {};
struct NumberedQuestion {
    MessageId id = 0;
    Question question;
};
/// What is no message; the id is 0 where there is none.
struct Malformed {
    MessageId id = 0;
};
using ExtensionMessage = std::variant<Hello, NumberedQuestion, Malformed>;

[[nodiscard]] ExtensionMessage readExtensionMessage(std::string_view text);

// What the server says, and what the bridge says in its place.

struct PageVerdict {
    std::string verdict;
    double confidence = 0.0;
    std::string reason;
    std::string source;
};
struct Noted {};
struct ServerState {
    bool hasKey = false;
    std::int64_t leftToday = 0;
};
struct NoAnswer {
    std::string error;
    std::optional<std::int64_t> retryAfter; ///< In seconds.
};
using Answer = std::variant<PageVerdict, Noted, ServerState, NoAnswer>;

struct NumberedAnswer {
    MessageId id = 0;
    Answer answer;
};

/// None for a line that is no answer.
[[nodiscard]] std::optional<NumberedAnswer> readAnswer(std::string_view line);

// Written without a frame, and without a line feed.

/// The line that asks the server. `goals` are those of the session.
[[nodiscard]] std::string writtenQuestion(MessageId id, const Question &question,
                                          std::string_view goals);
[[nodiscard]] std::string writtenAnswer(MessageId id, const Answer &answer);
[[nodiscard]] std::string writtenSession(const SessionState &state);
/// `state`: "ready", "no_key" or "absent".
[[nodiscard]] std::string writtenServer(std::string_view state);

} // namespace tarne
