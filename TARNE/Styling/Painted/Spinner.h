#pragma once

#include "AnimatedTexture.h"

namespace tarne {

/// The progress spinner: eight spokes, of which one after the other is the darkest.
class Spinner : public tarne::AnimatedTexture {
    Q_OBJECT
    QML_ELEMENT

public:
    explicit Spinner(QQuickItem *parent = nullptr);

protected:
    QImage paintPicture(double devicePixelRatio) override;
    [[nodiscard]] bool isMoving() const override { return true; }
    void advance(double seconds) override;

private:
    int m_step = 0;
};

} // namespace tarne
