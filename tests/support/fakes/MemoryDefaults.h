#pragma once

#include "UserDefaults.h"

#include <QMap>
#include <QStringList>

namespace tarne::test {

/// A defaults store in memory that notes every call that writes, in order.
class MemoryDefaults final : public UserDefaults {
public:
    std::optional<DefaultsValue> objectForKey(const QString &key) const override {
        const auto found = m_values.constFind(key);
        return found == m_values.cend() ? std::nullopt : std::optional(*found);
    }
    void setObject(const QString &key, const DefaultsValue &value) override {
        m_writes += key;
        if (!failsWrites)
            m_values[key] = value;
    }
    void removeObjectForKey(const QString &key) override {
        m_writes += QStringLiteral("-") + key;
        if (!failsWrites)
            m_values.remove(key);
    }
    void synchronize() override { m_writes += QStringLiteral("synchronize"); }

    /// The keys written since the last call, a removed key with a leading "-", and "synchronize".
    QStringList takeWrites() { return std::exchange(m_writes, {}); }

    const QMap<QString, DefaultsValue> &values() const { return m_values; }

    /// A full or read-only disk: writes are noted and lost.
    bool failsWrites = false;

private:
    QMap<QString, DefaultsValue> m_values;
    QStringList m_writes;
};

} // namespace tarne::test
