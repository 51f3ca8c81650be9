#pragma once

#include "Asio.h"
#include "DecisionCache.h"
#include "HTTPClient.h"
#include "Overrides.h"
#include "PageFacts.h"
#include "QuotaGate.h"
#include "Verdict.h"

#include <QHash>
#include <QUrl>

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <variant>
#include <vector>

namespace tarne {

/// Where a verdict comes from.
enum class VerdictSource { Override, Cache, Model };

struct Judged {
    Verdict verdict;
    VerdictSource source = VerdictSource::Model;
};

/// Why there is no verdict.
struct Unjudged {
    enum class Reason { NoKey, Quota, Offline, Model };
    Reason reason = Reason::Model;
    /// With Quota alone: when to ask again, at least 1.
    std::optional<std::chrono::seconds> retryAfter;
};

using Judging = std::variant<Judged, Unjudged>;

/// Judges pages: by what the user has said, by what the model has said before, at last by asking
/// the model.
///
/// Lives on the thread of its executor, as all of its callbacks do. Equal questions that are open
/// at one time are one question to the model; three are with the model at once, and more wait.
/// Nothing is written anywhere but the quota's count.
class Classifier {
public:
    static constexpr int mostAtOnce = 3;
    static constexpr std::chrono::seconds patience{10};

    struct Model {
        HTTPClient &client;
        /// Where to post to, with the key in it; none without a key.
        std::optional<QUrl> address;
        std::chrono::milliseconds patience = Classifier::patience;
    };
    using Done = std::function<void(const Judging &judging)>;

    /// The client outlives the classifier; the quota too.
    Classifier(asio::any_io_executor executor, Model model, QuotaGate &quota);
    ~Classifier();
    Classifier(const Classifier &) = delete;
    Classifier &operator=(const Classifier &) = delete;

    /// Calls `done` once, at once or later. Fresh: not by an earlier answer of the model's.
    void classify(const QString &goals, const PageFacts &page, bool isFresh, Done done);

    /// The user calls a page on task.
    void addOverride(const QString &goals, const PageFacts &page) { m_overrides.add(goals, page); }

    [[nodiscard]] bool hasKey() const { return m_model.address.has_value(); }
    [[nodiscard]] int leftToday() { return m_quota.leftToday(); }

private:
    struct Flight;

    void begin(const QString &goals, const PageFacts &page, const QByteArray &key, Done done);
    void startWaiting();
    void post(const std::shared_ptr<Flight> &flight);
    void land(Flight &flight, const HTTPResult &result);
    [[nodiscard]] Judging judge(const Flight &flight, const HTTPResult &result);
    void finish(Flight &flight, const Judging &judging);

    asio::any_io_executor m_executor;
    Model m_model;
    QuotaGate &m_quota;
    Overrides m_overrides;
    DecisionCache m_cache;
    QHash<QByteArray, std::shared_ptr<Flight>> m_flights;
    std::deque<std::shared_ptr<Flight>> m_waiting;
    int m_atOnce = 0;
};

} // namespace tarne
