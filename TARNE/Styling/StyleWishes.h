#pragma once

#include "DesktopWishes.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

class QQmlEngine;

namespace tarne {

/// `Wishes` of QML: what the user has asked the desktop for. Colours, fonts and movement look here;
/// screens do not. Made by the engine, with nothing asked for.
class StyleWishes : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(Wishes)
    QML_SINGLETON

    Q_PROPERTY(bool reducedMotion READ reducedMotion NOTIFY reducedMotionChanged FINAL)
    Q_PROPERTY(bool contrastMore READ contrastMore NOTIFY contrastMoreChanged FINAL)
    Q_PROPERTY(double textScale READ textScale NOTIFY textScaleChanged FINAL)

public:
    /// The wishes of all that `engine` shows. It must have loaded a document that imports this
    /// module.
    [[nodiscard]] static StyleWishes &of(QQmlEngine &engine);

    void setWishes(const DesktopWishes &wishes);

    [[nodiscard]] bool reducedMotion() const { return m_wishes.reducedMotion; }
    [[nodiscard]] bool contrastMore() const { return m_wishes.contrastMore; }
    [[nodiscard]] double textScale() const { return m_wishes.textScale; }

Q_SIGNALS:
    void reducedMotionChanged();
    void contrastMoreChanged();
    void textScaleChanged();

private:
    DesktopWishes m_wishes;
};

} // namespace tarne
