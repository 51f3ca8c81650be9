#pragma once

#include "Log.h"

#include <mutex>

namespace tarne {

/// Writes each line to standard output, unbuffered, so that nothing is lost when the process is
/// killed. Lines of different threads never mix, however long. An output that is closed or full
/// costs the line only.
class StandardOutputLog final : public Log {
public:
    void line(const QString &text) override;

private:
    std::mutex m_mutex; ///< A pipe takes a long line in pieces.
};

} // namespace tarne
