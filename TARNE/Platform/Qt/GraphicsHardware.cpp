#include "GraphicsHardware.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace tarne {

bool hasGraphicsHardware() {
    const QDir devices(u"/dev/dri"_s);
    return !devices.entryList({u"renderD*"_s}, QDir::System).isEmpty();
}

} // namespace tarne
