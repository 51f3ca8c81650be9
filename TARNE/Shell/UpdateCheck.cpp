#include "UpdateCheck.h"

#include "Workspace.h"

#include <QPointer>

using namespace Qt::StringLiterals;

namespace tarne {

UpdateCheck::UpdateCheck(UpdaterController &updater, Workspace &workspace)
    : m_updaterController(updater), m_workspace(workspace) {}

void UpdateCheck::checkForUpdates() {
    if (std::exchange(m_isUnderWay, true))
        return;
    m_updaterController.checkForUpdates([self = QPointer(this)](const UpdateCheckResult &result) {
        if (!self)
            return;
        self->m_isUnderWay = false;
        self->present(result);
    });
}

void UpdateCheck::present(const UpdateCheckResult &result) {
    m_result = result;
    m_isPresented = true;
    Q_EMIT changed();
}

void UpdateCheck::dismiss() {
    m_isPresented = false;
    Q_EMIT changed();
}

void UpdateCheck::download() {
    if (offersDownload())
        m_workspace.open(m_result.downloadPage);
    dismiss();
}

bool UpdateCheck::offersDownload() const {
    return m_result.kind == UpdateCheckResult::Kind::NewerVersion;
}

QString UpdateCheck::title() const {
    switch (m_result.kind) {
    case UpdateCheckResult::Kind::NoFeed:
        return u"Updates Are Not Set Up"_s;
    case UpdateCheckResult::Kind::UpToDate:
        return u"You're Up to Date"_s;
    case UpdateCheckResult::Kind::NewerVersion:
        return u"A New Version Is Available"_s;
    case UpdateCheckResult::Kind::Failure:
        return u"Update Check Failed"_s;
    }
    Q_UNREACHABLE();
}

QString UpdateCheck::message() const {
    switch (m_result.kind) {
    case UpdateCheckResult::Kind::NoFeed:
        return u"This build of TARNE has no address to look for updates."_s;
    case UpdateCheckResult::Kind::UpToDate:
        return u"There is no version newer than yours."_s;
    case UpdateCheckResult::Kind::NewerVersion:
        return u"TARNE %1 is ready to download."_s.arg(m_result.version);
    case UpdateCheckResult::Kind::Failure:
        return m_result.failure;
    }
    Q_UNREACHABLE();
}

} // namespace tarne
