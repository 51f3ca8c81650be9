#pragma once

#include "UpdaterController.h"

#include <QNetworkAccessManager>
#include <QObject>

#include <memory>
#include <vector>

class QNetworkReply;

namespace tarne {

/// Looks for updates in an appcast feed.
///
/// Construction starts it: a feed that is configured is looked into once right away, and checks
/// asked for meanwhile get the answer of that one look. The feed must come over TLS 1.2 or later,
/// or from a loopback address; redirects stay on its origin; a body beyond 64 MiB is a failure.
class AppcastUpdaterController final : public QObject, public UpdaterController {
    Q_OBJECT

public:
    /// An empty `feed` means there is none. `version` is the running program's; `foundAtStart` is
    /// called when the look at construction finds a newer one.
    AppcastUpdaterController(QUrl feed, QString version, Done foundAtStart = {});
    ~AppcastUpdaterController() override;

    /// The feed that this program was built with.
    [[nodiscard]] static QUrl builtInFeed();

    void checkForUpdates(Done done) override;

private:
    void fetch();
    void take(QNetworkReply &reply);
    void finish(const QNetworkReply &reply);
    void answer(const UpdateCheckResult &result);
    UpdateCheckResult resultOf(const QNetworkReply &reply) const;

    const QUrl m_feed;
    const QString m_version;
    std::unique_ptr<QNetworkAccessManager> m_network; ///< Made for the first look.
    bool m_isFetching = false;
    bool m_isTooLarge = false;
    QByteArray m_body;
    std::vector<Done> m_waiting;
};

} // namespace tarne
