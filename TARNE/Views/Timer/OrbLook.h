#pragma once

#include <QColor>

namespace tarne {

/// How the orb looks at a moment: worked out afresh on every change of its inputs.
struct OrbLook {
    /// The diameter, in points.
    double size = 0;
    /// The opacity of both circles.
    double intensity = 0;
    /// The radius of the glow's blur, in points.
    double glowRadius = 0;
    QColor color;

    bool operator==(const OrbLook &) const = default;
};

/// The look at `progress` (0 at the start of a session, 1 at its end), muted while paused.
[[nodiscard]] OrbLook orbLook(double progress, bool isPaused);

/// The orb's swelling and shrinking between the scales 1.0 and 1.05, as a value that is moved on
/// from outside.
class OrbPulse {
public:
    /// Swells over 2 seconds and shrinks again, for ever. Already swelling, it goes on.
    void start();
    /// Goes back to 1.0 over `seconds`, slowing down; stopped again on its way, at the earlier of
    /// the two times.
    void stop(double seconds);
    void advance(double seconds);

    [[nodiscard]] double scale() const;
    /// Whether `advance` makes a difference.
    [[nodiscard]] bool isMoving() const { return m_state != State::Resting; }
    /// Whether it is swelling and shrinking, as opposed to coming to rest.
    [[nodiscard]] bool isPulsing() const { return m_state == State::Pulsing; }

    static constexpr double largestScale = 1.05;

private:
    enum class State { Resting, Pulsing, Settling };

    State m_state = State::Resting;
    /// The scale at which the present movement began.
    double m_from = 1.0;
    double m_elapsed = 0;
    double m_settlingTime = 0;
};

} // namespace tarne
