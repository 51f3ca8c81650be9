#pragma once

#include <QByteArrayView>

#include <array>
#include <stdexcept>

/// The fuzz targets: one for each reader of bytes that come from outside.
///
/// A target reads one input, whatever it holds, and states what has to be true of the result. It is
/// run by libFuzzer (FuzzMain.cpp, `scripts/fuzz`) and, over the seeds in corpus/, by an ordinary
/// test (tests/fuzz).
namespace tarne::fuzz {

/// A statement that does not hold of an input.
class Violation final : public std::logic_error {
public:
    using std::logic_error::logic_error;
};

inline void require(bool holds, const char *statement) {
    if (!holds)
        throw Violation(statement);
}

using Input = QByteArrayView;

void appcast(Input input);         ///< An update feed.
void feedback(Input input);        ///< The model's answer, as UTF-8.
void geminiAnswer(Input input);    ///< The body of the model's HTTP answer.
void goalLine(Input input);        ///< The line that the user types, as UTF-8.
void goalsRequest(Input input);    ///< What a client sends to the goals API.
void history(Input input);         ///< The stored history.
void insights(Input input);        ///< The same, as far as the screens show it.
void integers(Input input);        ///< Decimal integers, as UTF-8.
void modelVerdict(Input input);    ///< The model's text about a page, as UTF-8.
void nativeMessages(Input input);  ///< What a browser writes to the bridge.
void notifierCall(Input input);    ///< The components of a call of the notifier.
void notifierRequest(Input input); ///< A request in the notifier's file.
void preferences(Input input);     ///< The stored preferences.
void question(Input input);        ///< A line to the classification server.
void restoration(Input input);     ///< Stored values of any type, at the start of a run.
void scheduledGoals(Input input);  ///< The stored schedule.
void serverAnswer(Input input);    ///< A line of the classification server.
void session(Input input);         ///< The JSON form of a session.
void sqliteFile(Input input);      ///< The store's file.
void storeRows(Input input);       ///< The session keys as the bridge reads them.

struct Target {
    const char *name; ///< Also that of its folder of seeds.
    void (*run)(Input input);
};

inline constexpr std::array targets{
    Target{"appcast", appcast},           Target{"feedback", feedback},
    Target{"geminiAnswer", geminiAnswer}, Target{"goalLine", goalLine},
    Target{"goalsRequest", goalsRequest}, Target{"history", history},
    Target{"insights", insights},         Target{"integers", integers},
    Target{"modelVerdict", modelVerdict}, Target{"nativeMessages", nativeMessages},
    Target{"notifierCall", notifierCall}, Target{"notifierRequest", notifierRequest},
    Target{"preferences", preferences},   Target{"question", question},
    Target{"restoration", restoration},   Target{"scheduledGoals", scheduledGoals},
    Target{"serverAnswer", serverAnswer}, Target{"session", session},
    Target{"sqliteFile", sqliteFile},     Target{"storeRows", storeRows}};

} // namespace tarne::fuzz
