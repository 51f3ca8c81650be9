#include "Bridge.h"

#include "GoalsText.h"

#include <utility>

namespace tarne {

namespace {

std::string_view wordFor(ServerLink::State state) {
    switch (state) {
    case ServerLink::State::Ready:
        return "ready";
    case ServerLink::State::NoKey:
        return "no_key";
    case ServerLink::State::Absent:
        break;
    }
    return "absent";
}

} // namespace

Bridge::Bridge(const asio::any_io_executor &executor, const Places &places,
               std::function<void()> ended)
    : m_store(executor, places.storeFolder,
              [this](const SessionState &state) { tellSession(state); }),
      m_server(executor, places.companionsFolder, [this] { tellServer(); }),
      m_messages(executor, places.input, places.output,
                 {.received = [this](const std::string &message) { received(message); },
                  .ended = std::move(ended)}) {}

void Bridge::start() {
    m_store.start();
    m_server.start();
    m_messages.start();
}

void Bridge::received(const std::string &message) {
    std::visit([this](const auto &read) { handle(read); }, readExtensionMessage(message));
}

void Bridge::handle(const Hello &) {
    m_isGreeted = true;
    tellSession(m_store.state());
    m_toldServer.reset();
    tellServer();
}

void Bridge::handle(const NumberedQuestion &asked) {
    if (!m_isGreeted) {
        handle(Malformed{asked.id});
        return;
    }
    relay(asked);
}

void Bridge::handle(const Malformed &message) {
    m_messages.send(writtenAnswer(message.id, NoAnswer{"bad_request", {}}));
}

void Bridge::relay(const NumberedQuestion &asked) {
    const SessionState session = m_store.state();
    const bool needsSession = asked.question.kind != Question::Kind::State;
    if (needsSession && session.kind != SessionState::Kind::Active) {
        m_messages.send(writtenAnswer(asked.id, NoAnswer{"no_session", {}}));
        return;
    }
    if (needsSession && !holdWords(session.goals)) {
        m_messages.send(writtenAnswer(asked.id, NoAnswer{"no_goals", {}}));
        return;
    }
    m_server.ask(asked.question, session.goals,
                 [this, id = asked.id, needsSession, session](const Answer &answer) {
                     // An answer for goals that are over would judge by them.
                     const SessionState &now = m_store.state();
                     const bool isOver =
                         needsSession && (now.kind != SessionState::Kind::Active ||
                                          now.id != session.id || now.goals != session.goals);
                     const Answer told = isOver ? Answer(NoAnswer{"no_session", {}}) : answer;
                     m_messages.send(writtenAnswer(id, told));
                 });
}

void Bridge::tellSession(const SessionState &state) {
    if (m_isGreeted)
        m_messages.send(writtenSession(state));
}

void Bridge::tellServer() {
    const ServerLink::State state = m_server.state();
    if (m_isGreeted && m_server.hasLooked() && std::exchange(m_toldServer, state) != state)
        m_messages.send(writtenServer(wordFor(state)));
}

} // namespace tarne
