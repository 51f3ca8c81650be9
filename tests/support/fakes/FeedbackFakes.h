#pragma once

#include "KeychainManager.h"
#include "MemoryKeychain.h"
#include "QueuedHTTPClient.h"
#include "RecordingLog.h"
#include "RecordingPasteboard.h"
#include "WrapUpSheets.h"

namespace tarne::test {

/// What the coaching at the end of a session talks to: a key store with a key, a Gemini that
/// answers when it is told to, a clipboard.
struct FeedbackFakes {
    FeedbackFakes(RunLoop &loop, Log &feedbackLog) : runLoop(loop), log(feedbackLog) {
        keychain.save(geminiApiKeyName, QStringLiteral("the-key"));
    }

    FeedbackPlatform platform() {
        return {.keychain = keychain,
                .httpClient = gemini,
                .runLoop = runLoop,
                .pasteboard = pasteboard,
                .log = log,
                .geminiEndpoint = QStringLiteral("https://gemini.example")};
    }

    /// What makes the sheets of a session's end over these.
    MakeReflectionView sheets(SessionViewModel &sessionViewModel) {
        return wrapUpSheets(sessionViewModel, platform());
    }

    /// A body of Gemini's with a text that is given as the inside of a JSON string.
    static QByteArray answerWith(const QByteArray &text) {
        return R"({"candidates":[{"content":{"parts":[{"text":")" + text + R"("}]}}]})";
    }
    static QByteArray answerInFourSections() {
        return answerWith(R"(**Overall Assessment:** Good.\n**Patterns Observed:** Steady.\n)"
                          R"(**Advice:** Rest.\n**Motivation:** Go on.)");
    }

    RunLoop &runLoop;
    Log &log;
    MemoryKeychain items;
    KeychainManager keychain{items};
    QueuedHTTPClient gemini;
    RecordingPasteboard pasteboard;
};

} // namespace tarne::test
