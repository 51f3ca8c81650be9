#pragma once

#include <QString>
#include <QUrl>

#include <functional>

namespace tarne {

/// What a check for updates has found.
struct UpdateCheckResult {
    enum class Kind {
        NoFeed,       ///< This build has no feed to look into.
        UpToDate,     ///< The feed names nothing newer than the running program.
        NewerVersion, ///< `version` is newer; `downloadPage` is where to get it.
        Failure,      ///< The feed could not be read; `failure` says why.
    };

    Kind kind = Kind::NoFeed;
    QString version;   ///< As it is shown to users; plain text from outside.
    QUrl downloadPage; ///< http or https; to be handed to `Workspace::open`.
    QString failure;   ///< One sentence.

    friend bool operator==(const UpdateCheckResult &, const UpdateCheckResult &) = default;
};

/// Looks for newer versions of the program. Informs only: nothing is ever downloaded or installed.
/// A controller is started by its construction. Main thread only.
class UpdaterController {
public:
    using Done = std::function<void(const UpdateCheckResult &)>;

    virtual ~UpdaterController() = default;

    /// Starts a check and returns at once. `done` is called exactly once, later, on the main
    /// thread, unless the controller is destroyed before.
    virtual void checkForUpdates(Done done) = 0;
};

} // namespace tarne
