#include "Version.h"

namespace tarne {

QString programVersion() {
    return QStringLiteral(TARNE_VERSION);
}

} // namespace tarne
