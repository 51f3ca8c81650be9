#pragma once

#include <QString>

namespace tarne {

/// How a page stands to the goals of a session.
enum class Judgement { OnTask, OffTask, Unsure };

/// What is known of one page for one set of goals.
struct Verdict {
    Judgement judgement = Judgement::Unsure;
    double confidence = 0.0; ///< 0 to 1.
    QString reason; ///< The model's words, at most 120 characters. Plain text of a stranger.

    friend bool operator==(const Verdict &, const Verdict &) = default;
};

/// The word by which a judgement is told to others, and which the model uses.
[[nodiscard]] QString wordFor(Judgement judgement);

/// The verdict in the model's text, which has to be exactly what was asked for: one JSON object
/// with the members "verdict", "confidence" and "reason", each once and of its type and range.
/// Anything else is the verdict "unsure" with the confidence 0. A longer reason is cut off.
[[nodiscard]] Verdict readVerdict(const QString &text);

} // namespace tarne
