#pragma once

#include <QByteArray>
#include <QList>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <functional>

namespace tarne::test {

/// What a call of the system is made to answer.
struct Fault {
    QByteArray call;  ///< As strace names it: "pwrite64".
    QByteArray error; ///< "ENOSPC".
    /// From which call on, counted from 1 in each thread, on the files of the run alone.
    int first = 1;
    bool isLasting = false; ///< Every later call fails too.

    [[nodiscard]] QByteArray description() const;
};

/// One run of the fault helper under strace, which makes calls on the files of a folder fail.
class FaultyRun {
public:
    /// `kind` is the helper's first argument; `files` are the paths on which calls fail.
    FaultyRun(const QString &kind, const QString &folder, const QStringList &files, qint64 number,
              const Fault &fault);
    ~FaultyRun();
    FaultyRun(const FaultyRun &) = delete;
    FaultyRun &operator=(const FaultyRun &) = delete;

    /// Reads on until `condition` holds or the run is over; false after twenty seconds.
    [[nodiscard]] bool goesOnUntil(const std::function<bool()> &condition);
    /// Waits for the end; false where it is no end of its own accord, with the status 0 or
    /// `otherStatus`.
    [[nodiscard]] bool endsWell(int otherStatus = 0);
    void ask() { m_process.write("n"); }

    /// The lines on standard output that begin with `word`, without it.
    [[nodiscard]] QList<QByteArray> told(const QByteArray &word) const;
    [[nodiscard]] QByteArray errors() const { return m_errors; }
    /// Standard error has told that the disk refuses, and not yet that it takes again.
    [[nodiscard]] bool isRefused() const;
    /// Standard error has told that nothing of this run is kept.
    [[nodiscard]] bool isGivenUp() const;
    /// How many calls were made to fail; known when the run is over.
    [[nodiscard]] int faultsMet() const;

private:
    void read();

    QString m_trace;
    QProcess m_process;
    QByteArray m_output;
    QByteArray m_errors;
};

} // namespace tarne::test
