#pragma once

#include <functional>

namespace tarne {

/// Has a last operation run when a library ends the process from below, as Qt does when the display
/// server has gone: nothing on main's stack is destroyed then. For as long as it lives; one at a
/// time.
class ExitHook final {
public:
    /// `operation` runs on the thread that calls exit(), before static objects that are older than
    /// the hook are destroyed. What it needs must stand on main's stack or be older than the hook.
    explicit ExitHook(std::function<void()> operation);
    ~ExitHook();
    ExitHook(const ExitHook &) = delete;
    ExitHook &operator=(const ExitHook &) = delete;
};

} // namespace tarne
