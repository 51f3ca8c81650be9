#pragma once

#include "NotificationCenter.h"
#include "RunLoop.h"

#include <QBindable>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <functional>

namespace tarne {

class SessionViewModel;

/// The sheet in which the user writes the goal before a session starts.
///
/// It stores the text as the last goal and hands control back; the session begins in the timer
/// screen. Made anew for each presentation. Text that is closed away is lost.
class SessionNotesView final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the timer screen.")
    Q_PROPERTY(
        QString sessionGoal READ sessionGoal WRITE setSessionGoal NOTIFY sessionGoalChanged FINAL)
    Q_PROPERTY(bool isGoalEmpty READ isGoalEmpty NOTIFY isGoalEmptyChanged FINAL)

public:
    /// Everything passed outlives the view. `onStart` runs after the goal was stored and the sheet
    /// closed; it reads the goal back from the controller.
    SessionNotesView(SessionViewModel &sessionViewModel, NotificationCenter &notificationCenter,
                     RunLoop &runLoop, QBindable<bool> isPresented, std::function<void()> onStart);

    [[nodiscard]] QString sessionGoal() const { return m_sessionGoal; }
    void setSessionGoal(const QString &goal);
    /// Whether nothing but white space and line ends is written.
    [[nodiscard]] bool isGoalEmpty() const;

    /// Offers the last goal again, and listens for the application's reactivation until
    /// `disappear`.
    void appear();
    void disappear();

    /// The start button, for a goal that is not empty.
    Q_INVOKABLE void startSession();
    /// The close button.
    Q_INVOKABLE void close();

Q_SIGNALS:
    void sessionGoalChanged();
    void isGoalEmptyChanged();
    /// The application came back 0.1 seconds ago: the window's control that has the focus, if any,
    /// loses it.
    void focusReleased();

private:
    void releaseFocusSoon();

    SessionViewModel &m_sessionViewModel;
    NotificationCenter &m_notificationCenter;
    RunLoop &m_runLoop;
    QBindable<bool> m_isPresented;
    std::function<void()> m_onStart;
    QString m_sessionGoal;
    NotificationCenter::Registration m_reactivation;
};

} // namespace tarne
