#pragma once

#include <QString>

#include <functional>
#include <variant>

namespace tarne {

/// Asks an HTTP server of this machine for one page.
class HealthProbe {
public:
    struct Failure {
        QString description; ///< Why there was no answer.
    };
    /// The status code of an answer, whatever it is, or why there was none.
    using Reply = std::variant<int, Failure>;

    virtual ~HealthProbe() = default;

    /// Starts a GET and returns; `done` is called once, on any thread. The body is not read.
    virtual void get(const QString &address, std::function<void(Reply)> done) = 0;
};

} // namespace tarne
