#include "AnyButtonStyle.h"

#include "TARNEStyle.h"

#include <QCoreApplication>

// In Qt's documentation, but in none of its headers.
Q_GUI_EXPORT void qt_set_sequence_auto_mnemonic(bool enable);

namespace tarne {
namespace {

/// An ampersand in a button's text is a character: users' own words stand there, too. Otherwise it
/// would bind Alt and the character behind it to the button.
void bindNoMnemonics() {
    qt_set_sequence_auto_mnemonic(false);
}
Q_COREAPP_STARTUP_FUNCTION(bindNoMnemonics)

using Colors = TARNEStyle::Colors;

/// What both styles share.
ButtonLook label(const ButtonConfiguration &configuration) {
    ButtonLook look;
    look.cornerRadius = TARNEStyle::Layout::cornerRadius;
    look.horizontalPadding = 16;
    look.verticalPadding = 10;
    look.opacity = configuration.isPressed ? 0.9 : 1.0;
    return look;
}

} // namespace

ButtonLook PrimaryButtonStyle::operator()(const ButtonConfiguration &configuration) const {
    ButtonLook look = label(configuration);
    look.textColor = SystemColors::white;
    look.background = Colors::accent;
    return look;
}

ButtonLook SecondaryButtonStyle::operator()(const ButtonConfiguration &configuration) const {
    ButtonLook look = label(configuration);
    look.textColor = Colors::accent;
    look.background = Colors::background;
    look.outlineColor = Colors::accent;
    look.outlineWidth = 1;
    return look;
}

} // namespace tarne
