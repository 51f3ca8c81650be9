#pragma once

#include "Keychain.h"

namespace tarne {

/// Keeps small text secrets, of which there is one: the user's Gemini API key.
///
/// Has no state. Callable from any thread; two racing saves are not protected against each other.
/// Nothing is logged: an absent key is one not yet entered.
class KeychainManager {
public:
    /// `keychain` outlives the manager.
    explicit KeychainManager(Keychain &keychain) : m_keychain(keychain) {}

    /// Replaces the secret. The old one is gone before the new one is added, so a failing add
    /// leaves none. True when stored. The empty text can be stored.
    bool save(const QString &key, const QString &data) const;
    [[nodiscard]] std::optional<QString> load(const QString &key) const;
    /// True when the secret is gone, also when there was none.
    bool delete_(const QString &key) const;

private:
    Keychain &m_keychain;
};

/// The account name of the Gemini API key.
inline constexpr QLatin1StringView geminiApiKeyName{"GeminiAPIKey"};

} // namespace tarne
