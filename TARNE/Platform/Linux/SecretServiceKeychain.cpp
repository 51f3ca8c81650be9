#include "SecretServiceKeychain.h"

#include "SecretServiceSession.h"

#include <gio/gio.h>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

namespace tarne {

/// The thread on which the conversations run, and its queue. Shared with that thread, which a
/// prompt may hold for longer than the key store lives.
class SecretServiceKeychain::Worker : public std::enable_shared_from_this<Worker> {
public:
    using Work = std::function<void(SecretServiceSession &)>;

    /// True when `work` was done within `limit`; it is not run any further afterwards.
    bool perform(Work work, std::chrono::milliseconds limit) {
        const auto task = std::make_shared<Task>(std::move(work));
        std::unique_lock lock(m_mutex);
        if (m_isPrompting || std::chrono::steady_clock::now() < m_givenUpUntil)
            return false;
        if (!std::exchange(m_isStarted, true))
            std::thread([self = shared_from_this()] { self->run(); }).detach();
        m_tasks.push_back(task);
        m_changed.notify_all();
        if (m_changed.wait_for(lock, limit, [&] { return task->isDone; }))
            return true;
        task->isAbandoned = true;
        if (!m_isPrompting)
            g_cancellable_cancel(task->cancellable.get());
        // Whoever replaces a secret calls twice; a hung store shall cost one limit, not two.
        m_givenUpUntil = std::chrono::steady_clock::now() + std::chrono::seconds{1};
        return false;
    }

    void end() {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
        m_changed.notify_all();
    }

private:
    struct Unref {
        void operator()(GCancellable *object) const { g_object_unref(object); }
    };
    struct Task {
        explicit Task(Work what) : work(std::move(what)), cancellable(g_cancellable_new()) {}

        Work work;
        std::unique_ptr<GCancellable, Unref> cancellable;
        bool isDone = false;
        bool isAbandoned = false;
    };

    void run() {
        while (const auto task = next()) {
            {
                SecretServiceSession session(
                    task->cancellable.get(),
                    [&](const std::function<void()> &ask) { return prompt(*task, ask); });
                task->work(session);
            }
            const std::lock_guard lock(m_mutex);
            task->isDone = true;
            m_changed.notify_all();
        }
    }

    /// The next task that somebody waits for; none when the key store is gone.
    std::shared_ptr<Task> next() {
        std::unique_lock lock(m_mutex);
        while (true) {
            m_changed.wait(lock, [this] { return m_isEnding || !m_tasks.empty(); });
            if (m_isEnding)
                return nullptr;
            const auto task = m_tasks.front();
            m_tasks.pop_front();
            if (!task->isAbandoned)
                return task;
        }
    }

    bool prompt(const Task &task, const std::function<void()> &ask) {
        setPrompting(true);
        ask();
        setPrompting(false);
        const std::lock_guard lock(m_mutex);
        return !task.isAbandoned;
    }

    void setPrompting(bool prompting) {
        const std::lock_guard lock(m_mutex);
        m_isPrompting = prompting;
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::shared_ptr<Task>> m_tasks;
    std::chrono::steady_clock::time_point m_givenUpUntil;
    bool m_isStarted = false;
    bool m_isEnding = false;
    bool m_isPrompting = false;
};

SecretServiceKeychain::SecretServiceKeychain(std::chrono::milliseconds limit)
    : m_limit(limit), m_worker(std::make_shared<Worker>()) {}

SecretServiceKeychain::~SecretServiceKeychain() {
    m_worker->end();
}

bool SecretServiceKeychain::add(const QString &service, const QString &account,
                                const QByteArray &secret) {
    const auto added = std::make_shared<bool>(false);
    return m_worker->perform(
               [=](SecretServiceSession &session) {
                   *added = session.add(service, account, secret);
               },
               m_limit) &&
           *added;
}

Keychain::Removal SecretServiceKeychain::remove(const QString &service, const QString &account) {
    const auto removal = std::make_shared<Removal>(Removal::Failed);
    const bool done = m_worker->perform(
        [=](SecretServiceSession &session) { *removal = session.remove(service, account); },
        m_limit);
    return done ? *removal : Removal::Failed;
}

std::optional<QByteArray> SecretServiceKeychain::copy(const QString &service,
                                                      const QString &account) {
    const auto secret = std::make_shared<std::optional<QByteArray>>();
    const bool done = m_worker->perform(
        [=](SecretServiceSession &session) { *secret = session.copy(service, account); }, m_limit);
    return done ? *secret : std::nullopt;
}

} // namespace tarne
