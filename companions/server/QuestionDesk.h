#pragma once

#include "Classifier.h"

#include <QByteArray>

#include <functional>

namespace tarne {

/// Reads the lines of docs/companions-protocol.md, has them answered by the classifier and writes
/// the answers. It outlives no classifier.
class QuestionDesk {
public:
    /// Takes one answer, a line without its line feed.
    using Reply = std::function<void(const QByteArray &line)>;

    explicit QuestionDesk(Classifier &classifier) : m_classifier(classifier) {}

    /// Calls `reply` once, at once or later, whatever the line holds. The line is without its line
    /// feed.
    void answer(const QByteArray &line, const Reply &reply);

    /// The answer to a line that is longer than lines may be.
    [[nodiscard]] static QByteArray tooLong();

private:
    Classifier &m_classifier;
};

} // namespace tarne
