// Whatever the store's file holds: it is refused as a whole, or its values are ones that the store
// could have written.

#include "DefaultsFault.h"
#include "FuzzTargets.h"
#include "SQLiteFile.h"

#include <QLoggingCategory>
#include <QTemporaryFile>

using namespace Qt::StringLiterals;

namespace tarne::fuzz {

namespace {

DefaultsValues load(const QString &path) {
    try {
        return SQLiteFile(path, SQLiteFile::Access::Immutable).load();
    } catch (const DefaultsFault &) {
        return {};
    }
}

} // namespace

void sqliteFile(Input input) {
    // Values that do not fit their type are told on standard error; here most are such.
    QLoggingCategory::setFilterRules(u"tarne.store.warning=false"_s);
    QTemporaryFile file;
    if (!file.open() || file.write(input.data(), input.size()) != input.size() || !file.flush())
        throw std::runtime_error("the input could not be stored");
    for (const DefaultsValue &value : load(file.fileName())) {
        const auto again = StoredValue(value).decoded();
        require(again && isSameValue(*again, value), "a loaded value can be stored");
    }
}

} // namespace tarne::fuzz
