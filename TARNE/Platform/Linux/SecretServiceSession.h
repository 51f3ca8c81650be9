#pragma once

#include "Keychain.h"

#include <functional>
#include <memory>

#include <gio/gio.h>

namespace tarne {

/// One synchronous conversation with the Secret Service.
///
/// Every call but a prompt ends early when `cancellable` is cancelled. `prompt` is called around
/// what may ask the user for a password, which is never cancelled; it answers false when nobody
/// waits for the result any more.
class SecretServiceSession {
public:
    using Prompt = std::function<bool(const std::function<void()> &ask)>;

    SecretServiceSession(GCancellable *cancellable, Prompt prompt);
    ~SecretServiceSession();

    [[nodiscard]] bool add(const QString &service, const QString &account,
                           const QByteArray &secret);
    [[nodiscard]] Keychain::Removal remove(const QString &service, const QString &account);
    [[nodiscard]] std::optional<QByteArray> copy(const QString &service, const QString &account);

private:
    class Private;

    std::unique_ptr<Private> d;
};

} // namespace tarne
