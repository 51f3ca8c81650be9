#pragma once

#include <QString>

namespace tarne {

/// The system's log: standard output, one line an event. The wording of a line is part of the
/// behaviour. Diagnostics of our own do not go here but to standard error.
class Log {
public:
    virtual ~Log() = default;

    /// Writes one line. `text` carries no line end of its own. Callable from any thread.
    virtual void line(const QString &text) = 0;
};

} // namespace tarne
