#pragma once

#include "Log.h"

#include <QStringList>

#include <mutex>

namespace tarne::test {

/// Keeps the log's lines.
class RecordingLog final : public Log {
public:
    void line(const QString &text) override {
        const std::lock_guard lock(m_mutex);
        m_lines += text;
    }

    QStringList lines() const {
        const std::lock_guard lock(m_mutex);
        return m_lines;
    }

    /// The lines since the last call.
    QStringList takeLines() {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_lines, {});
    }

private:
    mutable std::mutex m_mutex;
    QStringList m_lines;
};

} // namespace tarne::test
