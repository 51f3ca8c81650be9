#pragma once

#include <QUuid>

namespace tarne {

/// A new random UUID (version 4), for every identity that the program makes. Identities need
/// uniqueness, not secrecy: they come from a generator of this thread that the system seeded once,
/// since asking the system each time takes longer than all else that making a goal takes. Callable
/// from any thread.
[[nodiscard]] QUuid randomUuid();

} // namespace tarne
