#include "LightAppearance.h"

#include "TARNEStyle.h"

#include <QGuiApplication>
#include <QPalette>

namespace tarne {

void useLightAppearance() {
    QPalette palette(Qt::white);
    palette.setColor(QPalette::Window, Qt::white);
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::Text, QColor(0x1C, 0x1C, 0x1E));
    palette.setColor(QPalette::WindowText, QColor(0x1C, 0x1C, 0x1E));
    QGuiApplication::setPalette(palette);
}

} // namespace tarne
