#pragma once

#include "Keychain.h"

#include <QStringList>

#include <functional>
#include <map>
#include <mutex>

namespace tarne::test {

/// A key store in memory that can refuse every operation.
class MemoryKeychain final : public Keychain {
public:
    using Address = std::pair<QString, QString>; ///< Service and account.

    bool add(const QString &service, const QString &account, const QByteArray &secret) override {
        const std::lock_guard lock(m_mutex);
        m_calls += QStringLiteral("add");
        if (beforeAdd)
            beforeAdd();
        return !failsToAdd && items.emplace(Address{service, account}, secret).second;
    }
    Removal remove(const QString &service, const QString &account) override {
        const std::lock_guard lock(m_mutex);
        m_calls += QStringLiteral("remove");
        if (failsToRemove)
            return Removal::Failed;
        return items.erase({service, account}) > 0 ? Removal::Removed : Removal::NotFound;
    }
    std::optional<QByteArray> copy(const QString &service, const QString &account) override {
        const std::lock_guard lock(m_mutex);
        m_calls += QStringLiteral("copy");
        if (beforeCopy)
            beforeCopy();
        const auto item = items.find({service, account});
        if (failsToCopy || item == items.end())
            return std::nullopt;
        return item->second;
    }

    QStringList calls() const {
        const std::lock_guard lock(m_mutex);
        return m_calls;
    }

    std::map<Address, QByteArray> items;
    // Look at what its user has done by then.
    std::function<void()> beforeAdd;
    std::function<void()> beforeCopy;
    bool failsToAdd = false;
    bool failsToRemove = false;
    bool failsToCopy = false;

private:
    mutable std::mutex m_mutex;
    QStringList m_calls;
};

} // namespace tarne::test
