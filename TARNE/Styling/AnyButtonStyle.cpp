#include "AnyButtonStyle.h"

#include "TARNEStyle.h"

namespace tarne {
namespace {

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
