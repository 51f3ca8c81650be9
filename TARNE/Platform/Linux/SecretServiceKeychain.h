#pragma once

#include "Keychain.h"

#include <chrono>
#include <memory>

namespace tarne {

/// The desktop's Secret Service, through libsecret, with the attributes `service` and `account`.
///
/// The store may hang, ask the user for a password or be gone, and the caller may be the main
/// thread. So all work is done one after the other on a thread of its own, and a caller that has
/// waited for the limit gets the answer of a failing store. While a prompt is up, and within a
/// second of such an answer, no caller waits at all.
///
/// A reading ends when its caller gives up. A prompt stays up: the user may be typing into it.
/// A change is never given up: it is done when the store can do it or the user allows it. A removal
/// drops the changes to the same item that still wait. So the last of several saves wins.
class SecretServiceKeychain final : public Keychain {
public:
    explicit SecretServiceKeychain(std::chrono::milliseconds limit = std::chrono::seconds{5});
    /// Does not wait for work that hangs.
    ~SecretServiceKeychain() override;

    bool add(const QString &service, const QString &account, const QByteArray &secret) override;
    Removal remove(const QString &service, const QString &account) override;
    std::optional<QByteArray> copy(const QString &service, const QString &account) override;

private:
    class Worker;

    std::chrono::milliseconds m_limit;
    std::shared_ptr<Worker> m_worker;
};

} // namespace tarne
