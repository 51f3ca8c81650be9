#pragma once

#include "Clock.h"
#include "InsightsFigures.h"
#include "Screen.h"
#include "SessionHistoryEntry.h"

#include <QColor>
#include <QStringList>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace tarne {

class SessionViewModel;

/// A row of the productive-times card.
struct ProductivityTimeRow {
    Q_GADGET
    QML_VALUE_TYPE(productivityTimeRow)
    Q_PROPERTY(QString period MEMBER period CONSTANT FINAL)
    Q_PROPERTY(QString icon MEMBER icon CONSTANT FINAL)
    Q_PROPERTY(int percentage MEMBER percentage CONSTANT FINAL)

public:
    QString period;
    QString icon;
    int percentage = 0;

    friend bool operator==(const ProductivityTimeRow &, const ProductivityTimeRow &) = default;
};

/// The insights screen: statistics over the history, worked out afresh when the screen appears and,
/// while it is shown, when the controller changes.
///
/// A drawing reads and decodes the history once; the properties hold the figures of the last one. A
/// history that is found empty is filled with six sample sessions, for good. Main thread only.
class InsightsView final : public tarne::Screen {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made with the tabs.")
    Q_PROPERTY(QString navigationTitle READ navigationTitle CONSTANT FINAL)
    Q_PROPERTY(int currentStreak READ currentStreak NOTIFY figuresChanged FINAL)
    Q_PROPERTY(int longestStreak READ longestStreak NOTIFY figuresChanged FINAL)
    Q_PROPERTY(int completedPercentage READ completedPercentage NOTIFY figuresChanged FINAL)
    Q_PROPERTY(int partiallyCompletedPercentage READ partiallyCompletedPercentage NOTIFY
                   figuresChanged FINAL)
    Q_PROPERTY(int notCompletedPercentage READ notCompletedPercentage NOTIFY figuresChanged FINAL)
    Q_PROPERTY(QVariantList productivityTimes READ productivityTimeRows NOTIFY figuresChanged FINAL)
    Q_PROPERTY(QStringList dayLabels READ dayLabels CONSTANT FINAL)
    Q_PROPERTY(QStringList monthLabels READ monthLabels NOTIFY figuresChanged FINAL)
    Q_PROPERTY(int totalSessionsThisYear READ totalSessionsThisYear NOTIFY figuresChanged FINAL)

public:
    /// Everything passed outlives the view.
    InsightsView(SessionViewModel &sessionViewModel, const Clock &clock, CurrentCalendar calendar);

    void appear() override;
    void disappear() override;

    /// The stored history; an empty one is filled with the samples first.
    [[nodiscard]] std::vector<SessionHistoryEntry> sessionHistory();
    [[nodiscard]] std::vector<SessionHistoryEntry> createSampleHistoryEntries() const;

    [[nodiscard]] static QString navigationTitle();
    [[nodiscard]] int currentStreak() const { return m_figures.currentStreak; }
    [[nodiscard]] int longestStreak() const { return m_figures.longestStreak; }
    [[nodiscard]] GoalCompletionPercentages goalCompletionPercentages() const {
        return m_figures.goals;
    }
    [[nodiscard]] int completedPercentage() const { return m_figures.goals.completed; }
    [[nodiscard]] int partiallyCompletedPercentage() const {
        return m_figures.goals.partiallyCompleted;
    }
    [[nodiscard]] int notCompletedPercentage() const { return m_figures.goals.notCompleted; }
    [[nodiscard]] const std::vector<ProductivityTimeData> &productivityTimes() const {
        return m_figures.productivityTimes;
    }
    [[nodiscard]] const std::vector<WeekData> &weeklyData() const { return m_figures.weeks; }
    [[nodiscard]] static QStringList dayLabels() { return InsightsFigures::dayLabels(); }
    [[nodiscard]] QStringList monthLabels() const { return m_figures.monthLabels; }
    [[nodiscard]] int totalSessionsThisYear() const { return m_figures.totalSessionsThisYear; }
    /// The flat form of the heat map, read from the store anew. No screen reads it.
    [[nodiscard]] std::vector<HeatmapDayData> heatmapData();

    [[nodiscard]] static QColor heatmapColor(const HeatmapDayData &day);
    Q_INVOKABLE static QColor legendColor(int level);

Q_SIGNALS:
    void figuresChanged();

private:
    struct Figures {
        int currentStreak = 0;
        int longestStreak = 0;
        GoalCompletionPercentages goals = {};
        std::vector<ProductivityTimeData> productivityTimes = {};
        std::vector<WeekData> weeks = {};
        QStringList monthLabels = {};
        int totalSessionsThisYear = 0;
    };

    /// The same history without its texts, which no figure needs.
    [[nodiscard]] std::vector<SessionOutcome> sessionOutcomes();
    void draw();
    void scheduleDrawing();
    [[nodiscard]] QVariantList productivityTimeRows() const;

    SessionViewModel &m_sessionViewModel;
    const Clock &m_clock;
    CurrentCalendar m_calendar;
    Figures m_figures;
    bool m_isShown = false;
    bool m_isDrawingScheduled = false;
};

} // namespace tarne
