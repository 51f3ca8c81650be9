#pragma once

#include "DefaultsFolder.h"
#include "SQLiteFile.h"
#include "StoredValue.h"

#include <QStringList>

#include <memory>

namespace tarne {

/// How the writer is to go on with a store that was opened.
enum class Saving {
    Changes,   ///< Each batch goes into the file; without a connection the writer opens one.
    WholeFile, ///< The damaged file could not be replaced yet: all values go into a new one.
    Nothing,   ///< The file is not ours to touch.
};

struct OpenedDefaults {
    DefaultsValues values;
    Saving saving = Saving::Changes;
    std::unique_ptr<SQLiteFile> file; ///< The only writing connection; none when it failed.
};

/// Opens the store and loads all of it, whatever state it is in; never fails.
///
/// A damaged file is set aside, and `keysToRestore` come back from the latest copy that is whole. A
/// file that cannot be written is read, and saved to when that is possible again. A file that
/// cannot even be read, or that a newer version wrote, is never written. What was not in order is
/// told in one line on standard error.
[[nodiscard]] OpenedDefaults openDefaults(const DefaultsFolder &folder,
                                          const QStringList &keysToRestore, Date now);

/// Puts a new file with these values in the place of a damaged one and opens it. Returns the
/// connection, null where the new file cannot be opened now, and the name under which the damaged
/// file is kept. Throws DefaultsFault.
[[nodiscard]] std::pair<std::unique_ptr<SQLiteFile>, QString>
replaceDamagedFile(const DefaultsFolder &folder, const DefaultsValues &values, Date now);

/// All values, as the changes that write them.
[[nodiscard]] DefaultsChanges changesThatWrite(const DefaultsValues &values);

} // namespace tarne
