#pragma once

#include <QString>

#include <stdexcept>
#include <string>

namespace tarne {

/// Why the store's file cannot be read or written. Thrown inside the store only: its startup and
/// its writer turn it into a way of going on.
class DefaultsFault final : public std::runtime_error {
public:
    enum class Kind {
        Damaged,     ///< SQLite refuses the file, or a value is not what we wrote.
        Newer,       ///< A later version of the program has written it.
        Locked,      ///< Another process holds it.
        Unavailable, ///< The disk is full or read-only, or access is denied.
    };

    DefaultsFault(Kind kind, const std::string &reason)
        : std::runtime_error(reason), m_kind(kind) {}

    Kind kind() const { return m_kind; }
    QString reason() const { return QString::fromLocal8Bit(what()); }

private:
    Kind m_kind;
};

} // namespace tarne
