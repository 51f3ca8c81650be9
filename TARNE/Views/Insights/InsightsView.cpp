#include "InsightsView.h"

#include "SampleHistory.h"
#include "SessionViewModel.h"
#include "TARNEStyle.h"

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

QColor withOpacity(QColor color, double opacity) {
    color.setAlphaF(static_cast<float>(opacity));
    return color;
}

} // namespace

InsightsView::InsightsView(SessionViewModel &sessionViewModel, const Clock &clock,
                           CurrentCalendar calendar)
    : m_sessionViewModel(sessionViewModel), m_clock(clock), m_calendar(std::move(calendar)) {}

void InsightsView::appear() {
    m_isShown = true;
    const auto drawOn = [this](auto change) {
        connect(&m_sessionViewModel, change, this, &InsightsView::scheduleDrawing,
                Qt::UniqueConnection);
    };
    drawOn(&SessionViewModel::currentSessionChanged);
    drawOn(&SessionViewModel::userPreferencesChanged);
    drawOn(&SessionViewModel::timeRemainingChanged);
    drawOn(&SessionViewModel::progressChanged);
    drawOn(&SessionViewModel::isTimerActiveChanged);
    drawOn(&SessionViewModel::isTimerCompleteChanged);
    draw();
}

void InsightsView::disappear() {
    m_isShown = false;
    m_sessionViewModel.disconnect(this);
}

void InsightsView::scheduleDrawing() {
    // A change of the controller comes as several signals in a row; one drawing shows them all.
    if (std::exchange(m_isDrawingScheduled, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_isDrawingScheduled = false;
            if (m_isShown)
                draw();
        },
        Qt::QueuedConnection);
}

void InsightsView::draw() {
    const std::vector<SessionOutcome> history = sessionOutcomes();
    const Calendar calendar = m_calendar();
    const InsightsFigures figures(history, calendar, m_clock.now());
    m_figures = {.currentStreak = figures.calculateCurrentStreak(),
                 .longestStreak = figures.calculateLongestStreak(),
                 .goals = figures.goalCompletionPercentages(),
                 .productivityTimes = figures.calculateProductivityTimes(),
                 .weeks = figures.weeklyData(),
                 .totalSessionsThisYear = figures.totalSessionsThisYear()};
    m_figures.monthLabels = InsightsFigures::monthLabels(m_figures.weeks, calendar);
    Q_EMIT figuresChanged();
}

std::vector<SessionHistoryEntry> InsightsView::sessionHistory() {
    std::vector<SessionHistoryEntry> history = m_sessionViewModel.loadSessionHistory();
    if (!history.empty())
        return history;
    samples::save(createSampleHistoryEntries(), m_sessionViewModel);
    return m_sessionViewModel.loadSessionHistory();
}

std::vector<SessionOutcome> InsightsView::sessionOutcomes() {
    std::vector<SessionOutcome> outcomes = m_sessionViewModel.loadSessionOutcomes();
    return outcomes.empty() ? outcomesOf(sessionHistory()) : outcomes;
}

std::vector<SessionHistoryEntry> InsightsView::createSampleHistoryEntries() const {
    return samples::ofInsights(m_calendar(), m_clock.now());
}

std::vector<HeatmapDayData> InsightsView::heatmapData() {
    const std::vector<SessionOutcome> history = sessionOutcomes();
    return InsightsFigures(history, m_calendar(), m_clock.now()).generateHeatmapData();
}

QVariantList InsightsView::productivityTimeRows() const {
    QVariantList rows;
    for (const auto &[period, icon, percentage] : m_figures.productivityTimes)
        rows += QVariant::fromValue(ProductivityTimeRow{period, icon, percentage});
    return rows;
}

QString InsightsView::navigationTitle() {
    return u"📊 Insights"_s;
}

QColor InsightsView::heatmapColor(const HeatmapDayData &day) {
    return day.isFuture ? withOpacity(SystemColors::gray, 0.1) : legendColor(day.intensity);
}

QColor InsightsView::legendColor(int level) {
    switch (level) {
    case 0:
        return withOpacity(SystemColors::gray, 0.2);
    case 1:
        return withOpacity(SystemColors::green, 0.4);
    case 2:
        return withOpacity(SystemColors::green, 0.6);
    case 3:
        return withOpacity(SystemColors::green, 0.8);
    default:
        return SystemColors::green;
    }
}

} // namespace tarne
