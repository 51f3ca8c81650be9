#pragma once

#include "AnimatedTexture.h"
#include "OrbLook.h"

namespace tarne {

/// The glowing orb: a circle in the middle of the item that grows and warms with `progress` and
/// swells softly for ever. Its glow reaches beyond the item.
///
/// A frame is made by looking up each pixel's distance in a table that changes with the look alone,
/// which costs a fraction of a blur; frames come ten times a second, since the edge moves by less
/// than half a point between two of them.
class GlowingOrbView : public tarne::AnimatedTexture {
    Q_OBJECT
    QML_ELEMENT

    /// The share of the session that has passed, from 0 to 1.
    Q_PROPERTY(double progress MEMBER m_progress WRITE setProgress NOTIFY progressChanged FINAL)
    Q_PROPERTY(bool isActive MEMBER m_isActive WRITE setActive NOTIFY isActiveChanged FINAL)
    Q_PROPERTY(bool isPaused MEMBER m_isPaused WRITE setPaused NOTIFY isPausedChanged FINAL)
    /// Whether it stands at its smaller scale, whatever it would do otherwise.
    Q_PROPERTY(bool isStill MEMBER m_isStill WRITE setStill NOTIFY isStillChanged FINAL)
    /// Whether the screen that it belongs to is shown: each time anew, it appears with it.
    Q_PROPERTY(bool isOnScreen MEMBER m_isOnScreen WRITE setOnScreen NOTIFY isOnScreenChanged FINAL)
    /// Nothing reads or animates it.
    Q_PROPERTY(double rotationAnimation MEMBER m_rotationAnimation CONSTANT FINAL)
    /// Whether it is to stand at its larger scale.
    Q_PROPERTY(bool pulseAnimation READ pulseAnimation NOTIFY pulseAnimationChanged FINAL)

public:
    explicit GlowingOrbView(QQuickItem *parent = nullptr);

    void setProgress(double progress);
    void setActive(bool isActive);
    void setPaused(bool isPaused);
    void setStill(bool isStill);
    void setOnScreen(bool isOnScreen);

    [[nodiscard]] bool pulseAnimation() const { return m_pulse.isPulsing(); }
    [[nodiscard]] OrbLook look() const { return orbLook(m_progress, m_isPaused); }
    [[nodiscard]] double pulseScale() const { return m_isStill ? 1.0 : m_pulse.scale(); }

    void startAnimations();
    void stopAnimations();

Q_SIGNALS:
    void progressChanged();
    void isActiveChanged();
    void isPausedChanged();
    void isStillChanged();
    void isOnScreenChanged();
    void pulseAnimationChanged();

protected:
    QImage paintPicture(double devicePixelRatio) override;
    [[nodiscard]] QRectF pictureRect() const override;
    [[nodiscard]] bool isMoving() const override { return !m_isStill && m_pulse.isMoving(); }
    void advance(double seconds) override { m_pulse.advance(seconds); }
    void shownChanged(bool isShown) override;
    void itemChange(ItemChange change, const ItemChangeData &value) override;

private:
    void appear();
    void stopPulse(double seconds);
    void updateLook(double devicePixelRatio);
    void updateGlow();
    void updateHighlight();

    double m_progress = 0;
    bool m_isActive = false;
    bool m_isPaused = false;
    bool m_isStill = false;
    bool m_isOnScreen = true;
    double m_rotationAnimation = 0.0;
    OrbPulse m_pulse;
    bool m_hasAppeared = false;

    /// The circle and its glow at scale 1.0, by the square of the distance from the middle in
    /// device pixels, as premultiplied colours; the highlight; and what they were worked out for.
    std::vector<QRgb> m_glow;
    QImage m_highlight; ///< As large as the picture, and transparent beside the highlight.
    OrbLook m_paintedLook;
    double m_paintedRatio = 0;
};

} // namespace tarne
