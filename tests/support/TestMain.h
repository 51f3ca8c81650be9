#pragma once

#include <QString>

namespace tarne::test {

/// Announces a diagnostic that the test provokes: while it lives, messages that contain `part` are
/// expected, and its end fails the test when none came. Every other warning fails the running test.
class ExpectedWarning {
public:
    explicit ExpectedWarning(const QString &part);
    ~ExpectedWarning();
    /// Whether it has come.
    bool isMet() const;
    ExpectedWarning(const ExpectedWarning &) = delete;
    ExpectedWarning &operator=(const ExpectedWarning &) = delete;
};

} // namespace tarne::test
