#include "SessionFeedbackView.h"

#include "FeedbackPrompt.h"
#include "GeminiRequest.h"
#include "HTTPClient.h"
#include "KeychainManager.h"
#include "Log.h"
#include "ParsedGoals.h"
#include "Pasteboard.h"
#include "RunLoop.h"
#include "SessionSummary.h"
#include "SessionViewModel.h"
#include "TARNEStyle.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace tarne {

SessionFeedbackView::SessionFeedbackView(SessionViewModel &sessionViewModel,
                                         FeedbackPlatform platform, QBindable<bool> isPresented,
                                         std::function<void()> onComplete)
    : m_sessionViewModel(sessionViewModel),
      m_platform(std::move(platform)),
      m_isPresented(isPresented),
      m_onComplete(std::move(onComplete)) {
    connect(&m_sessionViewModel, &SessionViewModel::currentSessionChanged, this,
            &SessionFeedbackView::showGoals);
    showGoals();
}

SessionFeedbackView::~SessionFeedbackView() = default;

SessionFeedbackView::Panel SessionFeedbackView::panel() const {
    if (m_isLoadingFeedback)
        return Panel::Loading;
    if (m_feedbackError)
        return Panel::Error;
    return m_parsedFeedback ? Panel::Sections : Panel::Nothing;
}

qsizetype SessionFeedbackView::completedGoalsCount() const {
    return std::ranges::count(m_goals.goals(), std::optional(GoalStatus::completed),
                              &SessionGoal::status);
}

QString SessionFeedbackView::progressText() const {
    return u"%1 of %2 tasks completed"_s.arg(completedGoalsCount()).arg(m_goals.rowCount());
}

double SessionFeedbackView::progressValue() const {
    if (!hasGoals())
        return 0.0;
    return static_cast<double>(completedGoalsCount()) / m_goals.rowCount();
}

QColor SessionFeedbackView::progressColor() const {
    const double progress = progressValue();
    if (progress >= 0.8)
        return SystemColors::green;
    return progress >= 0.5 ? SystemColors::orange : SystemColors::red;
}

void SessionFeedbackView::setReflection(const QString &reflection) {
    if (m_reflection == reflection)
        return;
    m_reflection = reflection;
    Q_EMIT reflectionChanged();
}

void SessionFeedbackView::setEditingReflection(bool editing) {
    if (m_isEditingReflection == editing)
        return;
    m_isEditingReflection = editing;
    Q_EMIT isEditingReflectionChanged();
}

void SessionFeedbackView::appear() {
    setupInitialState();
}

void SessionFeedbackView::setupInitialState() {
    m_sessionOnAppearing = m_sessionViewModel.currentSession();
    if (m_sessionOnAppearing)
        setReflection(m_sessionOnAppearing->reflection.value_or(QString()));
}

void SessionFeedbackView::showGoals() {
    m_goals.show(parsedGoals(m_sessionViewModel.currentSession()));
    Q_EMIT goalsChanged();
}

void SessionFeedbackView::generateFeedback() {
    if (std::exchange(m_hasAsked, true))
        return;
    const std::optional<FocusSession> session = std::exchange(m_sessionOnAppearing, std::nullopt);
    if (!session) {
        fail(u"No session data available"_s);
        return;
    }
    const std::optional<QString> apiKey = m_platform.keychain.load(geminiApiKeyName);
    if (!apiKey || apiKey->isEmpty()) {
        fail(u"Gemini API key not configured. Please set it in Settings."_s);
        return;
    }
    callGeminiAPI(buildFeedbackPrompt(*session), *apiKey,
                  [this, presence = std::weak_ptr(m_presence),
                   &runLoop = m_platform.runLoop](const GeminiResult &result) {
                      Outcome outcome{.result = result, .sections = {}};
                      if (const auto *text = std::get_if<QString>(&result))
                          outcome.sections = parseFeedbackText(*text);
                      runLoop.async([this, presence, outcome = std::move(outcome)] {
                          if (!presence.expired())
                              deliver(outcome);
                      });
                  });
}

void SessionFeedbackView::callGeminiAPI(const QString &prompt, const QString &apiKey,
                                        GeminiCompletion completion) {
    m_platform.httpClient.post({.url = geminiAddress(m_platform.geminiEndpoint, apiKey),
                                .contentType = "application/json",
                                .body = geminiRequestBody(prompt)},
                               [completion = std::move(completion)](const HTTPResult &result) {
                                   completion(readGeminiResponse(result));
                               });
}

void SessionFeedbackView::deliver(const Outcome &outcome) {
    if (const auto *error = std::get_if<GeminiError>(&outcome.result)) {
        fail(error->localizedDescription);
        return;
    }
    m_isLoadingFeedback = false;
    m_feedback = std::get<QString>(outcome.result);
    m_parsedFeedback = outcome.sections;
    m_feedbackError.reset();
    m_sections.show(*m_parsedFeedback);
    Q_EMIT panelChanged();
}

void SessionFeedbackView::fail(const QString &message) {
    m_isLoadingFeedback = false;
    m_feedbackError = message;
    Q_EMIT panelChanged();
}

void SessionFeedbackView::saveAndShareFeedback() {
    const QString summary = createSessionSummary(parsedGoals(m_sessionViewModel.currentSession()),
                                                 m_reflection, m_parsedFeedback);
    m_platform.pasteboard.clearContents();
    m_platform.pasteboard.setString(summary);
    m_platform.log.line(u"Session summary copied to clipboard"_s);
}

void SessionFeedbackView::finishSession() {
    if (!m_reflection.isEmpty())
        m_sessionViewModel.saveReflection(m_reflection);
    if (const auto &session = m_sessionViewModel.currentSession(); session && m_parsedFeedback) {
        m_sessionViewModel.saveSessionToHistory(
            *session, m_parsedFeedback->overallAssessment, m_parsedFeedback->patternsObserved,
            m_parsedFeedback->advice, m_parsedFeedback->motivation, m_reflection);
    }
    close();
    m_onComplete();
}

void SessionFeedbackView::close() {
    // What is shown stays as it is while the sheet leaves, whatever becomes of the session.
    m_sessionViewModel.disconnect(this);
    m_isPresented.setValue(false);
}

} // namespace tarne
