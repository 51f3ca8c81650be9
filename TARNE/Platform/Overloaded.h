#pragma once

namespace tarne {

/// One visitor of several functions, for `std::visit`.
template <class... Handlers>
struct Overloaded : Handlers... {
    using Handlers::operator()...;
};
// GCC does without; the analysers' compiler does not know the rule yet.
template <class... Handlers>
Overloaded(Handlers...) -> Overloaded<Handlers...>;

} // namespace tarne
