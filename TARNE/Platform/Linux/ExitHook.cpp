#include "ExitHook.h"

#include <cstdlib>
#include <utility>

namespace tarne {

namespace {

/// Never destroyed: the exit is not to find it gone.
std::function<void()> &lastOperation() {
    static auto &operation = *new std::function<void()>;
    return operation;
}

void runLastOperation() {
    if (const auto operation = std::exchange(lastOperation(), nullptr))
        operation();
}

} // namespace

ExitHook::ExitHook(std::function<void()> operation) {
    lastOperation() = std::move(operation);
    std::atexit(runLastOperation);
}

ExitHook::~ExitHook() {
    lastOperation() = nullptr;
}

} // namespace tarne
