#include "SecretServiceKeychain.h"

#include "DesktopLog.h"
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
    using Address = std::pair<QString, QString>; ///< Service and account.

    /// True when `work` was done within `limit`; it is not run any further afterwards.
    bool read(Work work, std::chrono::milliseconds limit) {
        std::unique_lock lock(m_mutex);
        if (!isWorthWaiting())
            return false;
        const auto task = std::make_shared<Task>(std::move(work));
        if (perform(task, lock, limit))
            return true;
        task->isUnwanted = true;
        if (!m_isPrompting)
            g_cancellable_cancel(task->cancellable.get());
        return false;
    }

    /// True when `work` was done within `limit`; it is still done afterwards.
    bool change(const Address &address, Work work, std::chrono::milliseconds limit) {
        std::unique_lock lock(m_mutex);
        const auto task = std::make_shared<Task>(std::move(work), address);
        if (isWorthWaiting())
            return perform(task, lock, limit);
        push(task);
        return false;
    }

    /// Drops the changes that still wait.
    void drop(const Address &address) {
        const std::lock_guard lock(m_mutex);
        for (const auto &task : m_tasks) {
            if (task->changed == address)
                task->isUnwanted = true;
        }
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
        explicit Task(Work what, std::optional<Address> where = {})
            : work(std::move(what)), changed(std::move(where)), cancellable(g_cancellable_new()) {}

        Work work;
        std::optional<Address> changed; ///< Of what is changed; absent where it is read.
        std::unique_ptr<GCancellable, Unref> cancellable;
        bool isDone = false;
        bool isUnwanted = false;
    };

    [[nodiscard]] bool isWorthWaiting() const {
        return !m_isPrompting && std::chrono::steady_clock::now() >= m_givenUpUntil;
    }

    void push(const std::shared_ptr<Task> &task) {
        if (!std::exchange(m_isStarted, true))
            std::thread([self = shared_from_this()] { self->run(); }).detach();
        m_tasks.push_back(task);
        m_changed.notify_all();
    }

    bool perform(const std::shared_ptr<Task> &task, std::unique_lock<std::mutex> &lock,
                 std::chrono::milliseconds limit) {
        push(task);
        if (m_changed.wait_for(lock, limit, [&] { return task->isDone; }))
            return true;
        // To replace a secret takes two calls. A hung store shall cost one limit, not two.
        m_givenUpUntil = std::chrono::steady_clock::now() + std::chrono::seconds{1};
        return false;
    }

    void run() {
        while (const auto task = next()) {
            if (isWanted(*task)) {
                SecretServiceSession session(
                    task->cancellable.get(),
                    [&](const std::function<void()> &ask) { return prompt(*task, ask); });
                task->work(session);
            }
            const std::lock_guard lock(m_mutex);
            m_tasks.pop_front();
            task->isDone = true;
            m_changed.notify_all();
        }
    }

    /// The next task, which stays in the queue until it is done; none when the key store is gone.
    std::shared_ptr<Task> next() {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_isEnding || !m_tasks.empty(); });
        return m_isEnding ? nullptr : m_tasks.front();
    }

    bool isWanted(const Task &task) {
        const std::lock_guard lock(m_mutex);
        return !task.isUnwanted;
    }

    bool prompt(const Task &task, const std::function<void()> &ask) {
        setPrompting(true);
        ask();
        setPrompting(false);
        return isWanted(task);
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
    const bool done = m_worker->change(
        {service, account},
        [=](SecretServiceSession &session) { *added = session.add(service, account, secret); },
        m_limit);
    // No screen tells that a key was not stored, so standard error does.
    if (done && !*added)
        qCWarning(desktopLog, "the key is not kept: unlock the key store, or install one such as "
                              "gnome-keyring, and save the key again");
    return done && *added;
}

Keychain::Removal SecretServiceKeychain::remove(const QString &service, const QString &account) {
    const auto removal = std::make_shared<Removal>(Removal::Failed);
    m_worker->drop({service, account});
    const bool done = m_worker->change(
        {service, account},
        [=](SecretServiceSession &session) { *removal = session.remove(service, account); },
        m_limit);
    return done ? *removal : Removal::Failed;
}

std::optional<QByteArray> SecretServiceKeychain::copy(const QString &service,
                                                      const QString &account) {
    const auto secret = std::make_shared<std::optional<QByteArray>>();
    const bool done = m_worker->read(
        [=](SecretServiceSession &session) { *secret = session.copy(service, account); }, m_limit);
    return done ? *secret : std::nullopt;
}

} // namespace tarne
