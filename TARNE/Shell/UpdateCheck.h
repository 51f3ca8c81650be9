#pragma once

#include "UpdaterController.h"

#include <QObject>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

namespace tarne {

class Workspace;

/// "Check for Updates...": asks the updater and words its answer for the alert. It informs and
/// opens the download page; it installs nothing.
class UpdateCheck : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(bool isPresented READ isPresented NOTIFY changed FINAL)
    Q_PROPERTY(QString title READ title NOTIFY changed FINAL)
    Q_PROPERTY(QString message READ message NOTIFY changed FINAL)
    Q_PROPERTY(bool offersDownload READ offersDownload NOTIFY changed FINAL)

public:
    /// Both outlive the check.
    UpdateCheck(UpdaterController &updater, Workspace &workspace);

    /// Looks for a newer version; the answer is presented when it comes. A second request while one
    /// is under way is the same request.
    Q_INVOKABLE void checkForUpdates();
    /// Presents what the updater found by itself.
    void present(const UpdateCheckResult &result);
    Q_INVOKABLE void dismiss();
    /// Opens the page of the newer version in the browser and dismisses the alert.
    Q_INVOKABLE void download();

    [[nodiscard]] bool isPresented() const { return m_isPresented; }
    [[nodiscard]] QString title() const;
    [[nodiscard]] QString message() const;
    [[nodiscard]] bool offersDownload() const;

Q_SIGNALS:
    void changed();

private:
    UpdaterController &m_updaterController;
    Workspace &m_workspace;
    UpdateCheckResult m_result;
    bool m_isUnderWay = false;
    bool m_isPresented = false;
};

} // namespace tarne
