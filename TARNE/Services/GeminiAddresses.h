#pragma once

#include <QLatin1StringView>

/// Where the Gemini service is found.
namespace tarne::gemini {

/// Scheme and host of the API.
inline constexpr QLatin1StringView endpoint{"https://generativelanguage.googleapis.com"};

/// The page on which a user gets a key.
inline constexpr QLatin1StringView keyPage{"https://aistudio.google.com/app/apikey"};

} // namespace tarne::gemini
