#pragma once

#include "Log.h"

namespace tarne {

/// Writes each line to standard output with one unbuffered write, so that lines of different
/// threads never mix and nothing is lost when the process is killed. A closed output costs the
/// line only.
class StandardOutputLog final : public Log {
public:
    void line(const QString &text) override;
};

} // namespace tarne
