#pragma once

#include <QByteArray>
#include <QList>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <random>
#include <vector>

namespace tarne::test {

/// A helper program on one folder that is started, killed after a random time, checked, and started
/// again, for a number of times. It goes on in the event loop.
class KilledProgram {
public:
    KilledProgram(QString program, std::chrono::milliseconds longestLife, unsigned seed, int kills);
    virtual ~KilledProgram() = default;
    KilledProgram(const KilledProgram &) = delete;
    KilledProgram &operator=(const KilledProgram &) = delete;

    bool isOver() const { return m_killsLeft == 0; }

protected:
    void start();
    QString folder() const { return m_folder.path(); }
    /// Whether a moment of the monotonic clock, in seconds, was a second old when the program last
    /// printed a line. At the kill it may be older: a busy machine lets a program wait.
    bool isOwed(double moment) const { return moment <= m_lastHeard - 1.0; }

    virtual QStringList arguments() const = 0;
    /// Told after each kill, with the whole lines that the program has printed: several a second,
    /// the second word of each its moment on the monotonic clock in seconds.
    virtual void takeStock(const QList<QByteArray> &lines) = 0;

private:
    void finish();

    QTemporaryDir m_folder;
    QString m_program;
    std::chrono::milliseconds m_longestLife;
    std::minstd_rand m_random;
    int m_killsLeft;
    double m_lastHeard = 0.0; ///< On the monotonic clock.
    QProcess m_process;
};

/// Kills ten programs side by side, each 20 times, and returns them once all are over.
template <typename Program>
std::vector<std::unique_ptr<Program>> kill200Times();

/// Serves the event loop until all are over; false after four minutes.
[[nodiscard]] bool areOver(const std::vector<const KilledProgram *> &programs);

template <typename Program>
std::vector<std::unique_ptr<Program>> kill200Times() {
    constexpr unsigned programs = 10;
    constexpr int killsOfEach = 20;
    std::vector<std::unique_ptr<Program>> running;
    std::vector<const KilledProgram *> all;
    for (unsigned seed = 1; seed <= programs; ++seed) {
        running.push_back(std::make_unique<Program>(seed, killsOfEach));
        all.push_back(running.back().get());
    }
    EXPECT_TRUE(areOver(all));
    return running;
}

} // namespace tarne::test
