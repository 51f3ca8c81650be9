#include "RequestFile.h"

#include "RequestText.h"
#include "StoreLog.h"

#include <QStandardPaths>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace tarne::notifier {

QString RequestFile::standardFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           u"/com.tarne.app/notifier"_s;
}

DefaultsFolder RequestFile::filesIn(const QString &folder) {
    return DefaultsFolder(folder, u"requests"_s, u"the file of pending notifications"_s);
}

std::unique_ptr<RequestFile> RequestFile::open(const QString &folder, Date now) {
    const DefaultsFolder files = filesIn(folder);
    OpenedDefaults opened = openDefaults(files, {}, now);
    if (opened.saving == Saving::Nothing)
        return nullptr;
    return std::unique_ptr<RequestFile>(new RequestFile(files, std::move(opened), now));
}

RequestFile::RequestFile(DefaultsFolder folder, OpenedDefaults opened, Date now)
    : m_saver(std::move(folder), std::move(opened), now) {}

std::vector<NotificationSchedule::Pending> RequestFile::requests() const {
    std::vector<NotificationSchedule::Pending> requests;
    const DefaultsValues &values = m_saver.values();
    for (auto value = values.cbegin(); value != values.cend(); ++value) {
        const auto *text = std::get_if<QByteArray>(&value.value());
        auto pending = text ? pendingOf(*text) : std::nullopt;
        if (pending && pending->request.identifier == value.key())
            requests.push_back(*std::move(pending));
        else
            qCWarning(storeLog).noquote()
                << "ignoring" << value.key()
                << "in the file of pending notifications: it is no request";
    }
    std::ranges::stable_sort(requests,
                             [](const auto &a, const auto &b) { return a.added < b.added; });
    return requests;
}

void RequestFile::put(const NotificationSchedule::Pending &pending) {
    m_changes.push_back({pending.request.identifier, DefaultsValue(textOf(pending))});
}

void RequestFile::remove(const QString &identifier) {
    m_changes.push_back({identifier, std::nullopt});
}

bool RequestFile::save(Date now) {
    if (!m_changes.empty())
        m_saver.keep({std::exchange(m_changes, {}), now});
    m_saver.save();
    if (SQLiteFile *file = m_saver.file()) {
        file->mergeLongLog();
        file->releaseMemory();
    }
    return !m_saver.isRefused();
}

} // namespace tarne::notifier
