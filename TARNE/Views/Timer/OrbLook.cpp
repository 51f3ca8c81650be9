#include "OrbLook.h"

#include "TARNEStyle.h"

#include <QEasingCurve>
#include <QPointF>

#include <cmath>

namespace tarne {
namespace {

constexpr double swellTime = 2.0;

QEasingCurve bezier(const QPointF &first, const QPointF &second) {
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment(first, second, {1, 1});
    return curve;
}

double easeInOut(double progress) {
    static const QEasingCurve curve = bezier({0.42, 0}, {0.58, 1});
    return curve.valueForProgress(progress);
}

double easeOut(double progress) {
    static const QEasingCurve curve = bezier({0, 0}, {0.58, 1});
    return curve.valueForProgress(progress);
}

QColor orbColor(double progress) {
    if (progress < 0.3)
        return SystemColors::blue;
    if (progress < 0.7)
        return SystemColors::cyan;
    return SystemColors::yellow;
}

} // namespace

OrbLook orbLook(double progress, bool isPaused) {
    OrbLook look{.size = 120 * progress + 80,
                 .intensity = progress * 0.7 + 0.3,
                 .glowRadius = 40 * progress + 10,
                 .color = orbColor(progress)};
    if (isPaused) {
        look.size *= 0.8;
        look.intensity *= 0.6;
        look.glowRadius *= 0.5;
        look.color = SystemColors::orange;
    }
    return look;
}

void OrbPulse::start() {
    if (m_state == State::Pulsing)
        return;
    m_from = scale();
    m_elapsed = 0;
    m_state = State::Pulsing;
}

void OrbPulse::stop(double seconds) {
    if (m_state == State::Resting ||
        (m_state == State::Settling && seconds >= m_settlingTime - m_elapsed))
        return;
    m_from = scale();
    m_elapsed = 0;
    m_settlingTime = seconds;
    m_state = State::Settling;
}

void OrbPulse::advance(double seconds) {
    m_elapsed += seconds;
    if (m_state == State::Settling && m_elapsed >= m_settlingTime)
        m_state = State::Resting;
}

double OrbPulse::scale() const {
    switch (m_state) {
    case State::Resting:
        return 1.0;
    case State::Settling:
        return m_from + (1.0 - m_from) * easeOut(m_elapsed / m_settlingTime);
    case State::Pulsing:
        break;
    }
    // Begun on the way to rest, only the first swelling is a shorter one.
    const double smallest = m_elapsed < swellTime ? m_from : 1.0;
    const double phase = std::fmod(m_elapsed, 2 * swellTime) / swellTime;
    return smallest + (largestScale - smallest) * easeInOut(phase <= 1 ? phase : 2 - phase);
}

} // namespace tarne
