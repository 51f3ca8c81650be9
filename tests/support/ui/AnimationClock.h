#pragma once

#include <QAnimationDriver>
#include <QCoreApplication>

namespace tarne::test {

/// Holds every animation of the process where it is until the test lets time pass for it.
class AnimationClock final : public QAnimationDriver {
public:
    AnimationClock() {
        install();
        // What already runs takes the time since its last frame now; what starts next would
        // otherwise begin with it.
        advanceAnimation();
    }
    ~AnimationClock() override { uninstall(); }

    /// What was started before begins here; what is bound to the animated values has followed.
    void pass(int milliseconds) {
        QCoreApplication::processEvents();
        m_elapsed += milliseconds;
        advanceAnimation();
        QCoreApplication::processEvents();
    }

    [[nodiscard]] qint64 elapsed() const override { return m_elapsed; }

protected:
    void start() override {
        m_elapsed = 0;
        QAnimationDriver::start();
    }

private:
    qint64 m_elapsed = 0;
};

} // namespace tarne::test
