#include "LightAppearance.h"

#include "TARNEStyle.h"

#include <QGuiApplication>
#include <QPalette>

namespace tarne {

void useLightAppearance() {
    using Colors = TARNEStyle::Colors;
    QPalette palette(Colors::background);
    for (const auto role : {QPalette::Window, QPalette::Base, QPalette::Button})
        palette.setColor(role, Colors::background);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(role, Colors::primaryText);
    palette.setColor(QPalette::Highlight, Colors::accent);
    palette.setColor(QPalette::HighlightedText, Colors::background);
    QGuiApplication::setPalette(palette);
}

} // namespace tarne
