#include "KeychainManager.h"

#include "Utf8.h"

#include <QUtf8StringView>

using namespace Qt::StringLiterals;

namespace tarne {

namespace {
constexpr auto bundleIdentifier = "com.tarne.app"_L1;
}

bool KeychainManager::save(const QString &key, const QString &data) const {
    if (!data.isValidUtf16())
        return false;
    m_keychain.remove(bundleIdentifier, key);
    return m_keychain.add(bundleIdentifier, key, data.toUtf8());
}

std::optional<QString> KeychainManager::load(const QString &key) const {
    const auto secret = m_keychain.copy(bundleIdentifier, key);
    if (!secret || !QUtf8StringView(*secret).isValidUtf8())
        return std::nullopt;
    return textOfUtf8(*secret);
}

bool KeychainManager::delete_(const QString &key) const {
    return m_keychain.remove(bundleIdentifier, key) != Keychain::Removal::Failed;
}

} // namespace tarne
