#pragma once

#include "DefaultsSaver.h"
#include "NotificationSchedule.h"

#include <QString>

#include <memory>
#include <vector>

namespace tarne::notifier {

/// The requests on the disk: the file `requests.sqlite` in a folder of the notifier's own.
///
/// It is a file of the store's kind, with the store's rules: a save is on the disk when it returns,
/// a damaged file is set aside, a full or read-only disk costs the save, which is made up for
/// later. A request is the value of its identifier. One process at a time may have the file open.
class RequestFile {
public:
    /// `$XDG_DATA_HOME/com.tarne.app/notifier`.
    [[nodiscard]] static QString standardFolder();

    /// Where the files lie and what they are called.
    [[nodiscard]] static DefaultsFolder filesIn(const QString &folder);

    /// Opens the file, and makes it if need be. None when it is not ours to write: it cannot be
    /// read, or a newer version has written it. Standard error was told.
    [[nodiscard]] static std::unique_ptr<RequestFile> open(const QString &folder, Date now);

    /// The requests that the file held when it was opened, in the order in which they were added.
    [[nodiscard]] std::vector<NotificationSchedule::Pending> requests() const;

    /// The changes reach the disk together, with the next save.
    void put(const NotificationSchedule::Pending &pending);
    void remove(const QString &identifier);

    /// Waits for the disk where something was changed. False when it refuses: then the changes are
    /// kept for the next attempt.
    bool save(Date now);

private:
    RequestFile(DefaultsFolder folder, OpenedDefaults opened, Date now);

    DefaultsSaver m_saver;
    DefaultsChanges m_changes;
};

} // namespace tarne::notifier
