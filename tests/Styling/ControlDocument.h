#pragma once

#include "UiDriver.h"

namespace tarne::test {

/// A document with the given controls in a column, which count presses and keep what is typed.
inline QString column(const QString &controls) {
    using namespace Qt::StringLiterals;
    return u"pragma ComponentBehavior: Bound\nimport QtQuick\nimport TARNE.Styling\nRectangle { "
           u"id: root; property int presses: 0; "
           "property string typed; Column { spacing: 10; "_s +
           controls + u" } }"_s;
}

/// How often its controls were pressed.
inline int presses(const UiDriver &ui) {
    return ui.root()->property("presses").toInt();
}
/// What its control told last.
inline QString typed(const UiDriver &ui) {
    return ui.root()->property("typed").toString();
}

} // namespace tarne::test
