#include "DesktopPresence.h"

#include "SessionInterface.h"

using namespace Qt::StringLiterals;

namespace tarne {

namespace {

QString nameOf(RemoteControl::State state) {
    switch (state) {
    case RemoteControl::State::None:
        return u"none"_s;
    case RemoteControl::State::Setup:
        return u"setup"_s;
    case RemoteControl::State::Running:
        return u"running"_s;
    case RemoteControl::State::Paused:
        return u"paused"_s;
    case RemoteControl::State::RunOut:
        return u"runOut"_s;
    }
    return {};
}

SessionOnBus onBus(const RemoteControl::Status &status) {
    return {.state = nameOf(status.state),
            .secondsLeft = status.secondsLeft,
            .duration = status.duration,
            .endsAt = status.endsAt};
}

} // namespace

DesktopPresence::DesktopPresence(QObject &applicationObject, const QString &path,
                                 const QDBusConnection &sessionBus, UserDefaults &defaults,
                                 RemoteControl &control)
    : m_control(control),
      m_session(new SessionInterface(
          &applicationObject, sessionBus, path,
          {.status = [&control] { return onBus(control.status()); },
           .pause = [&control] { return control.pause(); },
           .resume = [&control] { return control.resume(); },
           .show = [&control](const QString &token) { control.show(token); }})),
      m_item(sessionBus, {.id = u"com.tarne.app"_s, .iconName = u"com.tarne.app"_s},
             {.activated = [&control](const QString &token) { control.show(token); },
              .chosen = [&control](int entry,
                                   const QString &token) { control.trigger(entry, token); }}),
      m_quiet(sessionBus, defaults) {
    connect(&control, &RemoteControl::changed, this, [this] {
        m_session->publish();
        showInPanel();
    });
    connect(&control, &RemoteControl::secondsLeftChanged, this, &DesktopPresence::showInPanel);
    connect(&control, &RemoteControl::wantsQuietChanged, &m_quiet, &DesktopQuiet::setQuiet);
    connect(&m_quiet, &DesktopQuiet::possibleChanged, &control, &RemoteControl::setQuietPossible);
    showInPanel();
}

void DesktopPresence::showInPanel() {
    std::vector<PanelMenuEntry> entries;
    for (const RemoteControl::Entry &entry : m_control.entries())
        entries.push_back({entry.id, entry.label, entry.isChecked});
    m_item.setContent({.title = m_control.title(),
                       .toolTip = m_control.summary(),
                       .toolTipHead = u"TARNE"_s,
                       .entries = std::move(entries)});
}

} // namespace tarne
