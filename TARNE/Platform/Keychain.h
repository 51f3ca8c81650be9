#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace tarne {

/// The platform's key store: secrets addressed by service and account.
///
/// Every operation is one synchronous sequence that ends within five seconds, whatever the store's
/// state. Callable from any thread.
class Keychain {
public:
    enum class Removal { Removed, NotFound, Failed };

    virtual ~Keychain() = default;

    /// Creates an item; false when there is one already or the store refuses.
    [[nodiscard]] virtual bool add(const QString &service, const QString &account,
                                   const QByteArray &secret) = 0;
    /// Removes every item with this address.
    virtual Removal remove(const QString &service, const QString &account) = 0;
    /// The secret's bytes; absent when there is no such item or the store does not answer.
    [[nodiscard]] virtual std::optional<QByteArray> copy(const QString &service,
                                                         const QString &account) = 0;
};

} // namespace tarne
