#include "DefaultsStartup.h"

#include "DailyCopies.h"
#include "DefaultsFault.h"
#include "StoreLog.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

using Access = SQLiteFile::Access;
using Kind = DefaultsFault::Kind;

struct Restored {
    DefaultsValues values;
    QString copy; ///< The file name of the copy they come from; empty when there is none.
};

/// The values of `keys` in the latest copy that is whole.
Restored restoredFromCopies(const DefaultsFolder &folder, const QStringList &keys, Date now) {
    for (const QString &path : DailyCopies(folder).latestFirst(now)) {
        try {
            const DefaultsValues all = SQLiteFile(path, Access::Immutable).load();
            Restored restored{{}, QFileInfo(path).fileName()};
            for (const QString &key : keys) {
                if (const auto found = all.constFind(key); found != all.cend())
                    restored.values.insert(key, *found);
            }
            return restored;
        } catch (const DefaultsFault &) {
            // The next older one, then.
        }
    }
    return {};
}

OpenedDefaults openDamaged(const DefaultsFolder &folder, const QStringList &keysToRestore, Date now,
                           const QString &reason) {
    const Restored restored = restoredFromCopies(folder, keysToRestore, now);
    const QString keys = QStringList(restored.values.keys()).join(", "_L1);
    const QString source = restored.copy.isEmpty() ? u"there is no good copy to restore from"_s
                           : keys.isEmpty()        ? u"nothing to restore in "_s + restored.copy
                                            : u"%1 restored from %2"_s.arg(keys, restored.copy);
    OpenedDefaults opened{restored.values, Saving::WholeFile, nullptr};
    QString fate;
    try {
        auto [file, name] = replaceDamagedFile(folder, restored.values, now);
        opened.file = std::move(file);
        opened.saving = Saving::Changes;
        fate = u"set aside as "_s + name;
    } catch (const DefaultsFault &fault) {
        fate = u"not set aside yet (%1)"_s.arg(fault.reason());
    }
    qCWarning(storeLog).noquote() << u"%1 is damaged (%2): %3; %4"_s.arg(folder.title(), reason,
                                                                         fate, source);
    return opened;
}

OpenedDefaults openNewer(const DefaultsFolder &folder, const DefaultsFault &newer) {
    OpenedDefaults opened{{}, Saving::Nothing, nullptr};
    QString values = u"its values are read"_s;
    try {
        opened.values = SQLiteFile(folder.file(), Access::ReadOnly).load();
    } catch (const DefaultsFault &) {
        values = u"its values cannot be read"_s;
    }
    qCWarning(storeLog).noquote()
        << u"%1 is from a newer version of TARNE (%2): %3, nothing is saved in this run"_s.arg(
               folder.title(), newer.reason(), values);
    return opened;
}

/// Reads what another process holds or the disk does not let us write.
OpenedDefaults openUnwritable(const DefaultsFolder &folder, const QStringList &keysToRestore,
                              Date now, const DefaultsFault &reason) {
    if (!QFileInfo::exists(folder.file()))
        return {};
    const bool fileIsWhole =
        reason.kind() == Kind::Unavailable && !DefaultsFolder::hasLog(folder.file());
    try {
        SQLiteFile file(folder.file(), fileIsWhole ? Access::Immutable : Access::ReadOnly);
        return {file.load(), Saving::Changes, nullptr};
    } catch (const DefaultsFault &fault) {
        if (fault.kind() == Kind::Damaged)
            return openDamaged(folder, keysToRestore, now, fault.reason());
        // To save into what could not be read would overwrite a history with an empty one.
        qCWarning(storeLog).noquote()
            << u"%1 cannot be read (%2): nothing is saved in this run"_s.arg(folder.title(),
                                                                             fault.reason());
        return {{}, Saving::Nothing, nullptr};
    }
}

} // namespace

OpenedDefaults openDefaults(const DefaultsFolder &folder, const QStringList &keysToRestore,
                            Date now) {
    folder.create();
    // SQLite takes an empty file for a new database; where there are copies it has lost its
    // content.
    const QFileInfo info(folder.file());
    if (info.exists() && info.size() == 0 && !DefaultsFolder::hasLog(folder.file()) &&
        !DailyCopies(folder).latestFirst(now).isEmpty())
        return openDamaged(folder, keysToRestore, now, u"it is empty"_s);
    try {
        auto file = std::make_unique<SQLiteFile>(folder.file(), Access::ReadWrite);
        DefaultsValues values = file->load();
        return {std::move(values), Saving::Changes, std::move(file)};
    } catch (const DefaultsFault &fault) {
        switch (fault.kind()) {
        case Kind::Damaged:
            return openDamaged(folder, keysToRestore, now, fault.reason());
        case Kind::Newer:
            return openNewer(folder, fault);
        case Kind::Locked:
        case Kind::Unavailable:
            break;
        }
        return openUnwritable(folder, keysToRestore, now, fault);
    }
}

std::pair<std::unique_ptr<SQLiteFile>, QString>
replaceDamagedFile(const DefaultsFolder &folder, const DefaultsValues &values, Date now) {
    DefaultsFolder::removeFile(folder.scratchFile());
    DefaultsFolder::createPrivateFile(folder.scratchFile());
    // Closed before it is moved: its log is merged, and no connection knows it by its first name.
    SQLiteFile(folder.scratchFile(), Access::ReadWrite)
        .write(changesThatWrite(values), SQLiteFile::Commit::Durable);
    if (DefaultsFolder::hasLog(folder.scratchFile())) // It would stay behind.
        throw DefaultsFault(Kind::Unavailable, "the log of the new file cannot be merged");
    const QString name = folder.setAsideAndReplace(now);
    try {
        return {std::make_unique<SQLiteFile>(folder.file(), Access::ReadWrite), name};
    } catch (const DefaultsFault &) {
        return {nullptr, name}; // All is done; the next save opens it.
    }
}

DefaultsChanges changesThatWrite(const DefaultsValues &values) {
    DefaultsChanges changes;
    for (auto value = values.cbegin(); value != values.cend(); ++value)
        changes.push_back({value.key(), value.value()});
    return changes;
}

} // namespace tarne
