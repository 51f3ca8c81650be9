#pragma once

#include "Proof.h"

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
    int kills() const { return m_kills; }
    /// How many of them have left something that they must not.
    int harmfulKills() const { return m_harmfulKills; }

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
    int m_kills = 0;
    int m_harmfulKills = 0;
    double m_lastHeard = 0.0; ///< On the monotonic clock.
    QProcess m_process;
};

/// Kills ten programs side by side, each 20 times, in the long form 100 times, and returns them
/// once all are over. Prints its figures under `name`.
template <typename Program>
std::vector<std::unique_ptr<Program>> killAtRandomInstants(const char *name);

/// Serves the event loop until all are over; false after four minutes, in the long form 15.
[[nodiscard]] bool areOver(const std::vector<const KilledProgram *> &programs);

/// Prints how many kills there were, and how many of them were harmful.
void printKills(const char *name, const std::vector<const KilledProgram *> &programs);

template <typename Program>
std::vector<std::unique_ptr<Program>> killAtRandomInstants(const char *name) {
    constexpr unsigned programs = 10;
    const int killsOfEach = isLongProof() ? 100 : 20;
    std::vector<std::unique_ptr<Program>> running;
    std::vector<const KilledProgram *> all;
    for (unsigned number = 0; number < programs; ++number) {
        running.push_back(std::make_unique<Program>(proofSeed() + number, killsOfEach));
        all.push_back(running.back().get());
    }
    EXPECT_TRUE(areOver(all));
    printKills(name, all);
    return running;
}

} // namespace tarne::test
