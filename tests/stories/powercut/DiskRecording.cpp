#include "DiskRecording.h"

#include <map>
#include <mutex>
#include <optional>
#include <string_view>
#include <utility>

#include <cstdarg>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace tarne::test {

namespace {

/// What the system's functions below tell of.
class Recorder {
public:
    void begin(std::string folder, const FileTree &tree) {
        const std::lock_guard lock(m_mutex);
        m_root = std::move(folder) + '/';
        m_names.clear();
        m_descriptors.clear();
        m_steps.clear();
        m_lastFile = 0;
        for (const auto &[name, bytes] : tree) {
            if (!name.ends_with('/'))
                m_names[name] = ++m_lastFile;
        }
        m_isOn = true;
    }

    std::vector<DiskStep> end() {
        const std::lock_guard lock(m_mutex);
        m_isOn = false;
        return std::exchange(m_steps, {});
    }

    void note(DiskStep step) {
        const std::lock_guard lock(m_mutex);
        if (m_isOn)
            m_steps.push_back(std::move(step));
    }

    /// Does something and lets `told` hear of it if it succeeded, before anything else happens.
    template <typename Action, typename Told>
    auto run(const Action &action, const Told &told) {
        const std::lock_guard lock(m_mutex);
        const auto result = action();
        if (m_isOn && result >= 0)
            told(result);
        return result;
    }

    // Told by `run` alone.

    void opened(int descriptor, const char *path) {
        const auto name = nameOf(path);
        struct stat status {};
        if (!name || ::fstat(descriptor, &status) != 0)
            return;
        if (S_ISDIR(status.st_mode)) {
            m_descriptors[descriptor] = {0, *name};
            return;
        }
        const auto [known, isNew] = m_names.try_emplace(*name, m_lastFile + 1);
        if (isNew) {
            ++m_lastFile;
            add({.kind = DiskStep::Kind::Create, .file = known->second, .name = *name});
        }
        m_descriptors[descriptor] = {known->second, *name};
    }
    void closed(int descriptor) { m_descriptors.erase(descriptor); }
    void written(int descriptor, std::int64_t position, const void *bytes, ssize_t size) {
        if (const int file = fileOf(descriptor))
            add({.kind = DiskStep::Kind::Write,
                 .file = file,
                 .position = position,
                 .bytes = {static_cast<const char *>(bytes), static_cast<std::size_t>(size)}});
    }
    void truncated(int descriptor, std::int64_t length) {
        if (const int file = fileOf(descriptor))
            add({.kind = DiskStep::Kind::Truncate, .file = file, .position = length});
    }
    void synced(int descriptor) {
        const auto known = m_descriptors.find(descriptor);
        if (known == m_descriptors.end())
            return;
        const auto &[file, name] = known->second;
        if (file == 0)
            add({.kind = DiskStep::Kind::SyncFolder, .name = name});
        else
            add({.kind = DiskStep::Kind::SyncFile, .file = file});
    }
    void folderMade(const char *path) {
        if (const auto name = nameOf(path))
            add({.kind = DiskStep::Kind::MakeFolder, .name = *name});
    }
    void linked(const char *from, const char *to) {
        const auto name = nameOf(from);
        const auto newName = nameOf(to);
        if (!name || !newName)
            return;
        const int file = m_names.at(*name);
        m_names[*newName] = file;
        add({.kind = DiskStep::Kind::Link, .file = file, .name = *name, .newName = *newName});
    }
    void renamed(const char *from, const char *to) {
        const auto name = nameOf(from);
        const auto newName = nameOf(to);
        if (!name || !newName)
            return;
        m_names[*newName] = m_names.at(*name);
        m_names.erase(*name);
        add({.kind = DiskStep::Kind::Rename, .name = *name, .newName = *newName});
    }
    void removed(const char *path) {
        const auto name = nameOf(path);
        if (name && m_names.erase(*name) != 0)
            add({.kind = DiskStep::Kind::Remove, .name = *name});
    }

private:
    struct Opened {
        int file; ///< 0 for a folder.
        std::string name;
    };

    /// The path below the recorded folder; empty for that folder itself.
    std::optional<std::string> nameOf(const char *path) const {
        const std::string whole(path);
        if (isSharedMemory(whole))
            return std::nullopt;
        if (whole + '/' == m_root)
            return std::string();
        if (!whole.starts_with(m_root))
            return std::nullopt;
        return whole.substr(m_root.size());
    }
    int fileOf(int descriptor) const {
        const auto known = m_descriptors.find(descriptor);
        return known == m_descriptors.end() ? 0 : known->second.file;
    }
    void add(DiskStep step) { m_steps.push_back(std::move(step)); }

    std::mutex m_mutex;
    bool m_isOn = false;
    std::string m_root;
    std::map<std::string, int> m_names;
    std::map<int, Opened> m_descriptors;
    int m_lastFile = 0;
    std::vector<DiskStep> m_steps;
};

/// Never destroyed: files are closed until the very end.
Recorder &recorder() {
    static auto *const theOne = new Recorder;
    return *theOne;
}

int openNoted(int folder, const char *path, int flags, mode_t mode) {
    return recorder().run(
        [&] { return static_cast<int>(::syscall(SYS_openat, folder, path, flags, mode)); },
        [&](int descriptor) {
            recorder().opened(descriptor, path);
            if ((flags & O_TRUNC) != 0)
                recorder().truncated(descriptor, 0);
        });
}

int renameNoted(const char *from, const char *to, unsigned flags) {
    return recorder().run(
        [&] {
            return static_cast<int>(::syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, flags));
        },
        [&](int) { recorder().renamed(from, to); });
}

ssize_t writeNotedAt(int file, const void *bytes, std::size_t size, std::int64_t position) {
    return recorder().run(
        [&] { return ::syscall(SYS_pwrite64, file, bytes, size, position); },
        [&](ssize_t written) { recorder().written(file, position, bytes, written); });
}

int truncateNoted(int file, std::int64_t length) {
    return recorder().run([&] { return static_cast<int>(::syscall(SYS_ftruncate, file, length)); },
                          [&](int) { recorder().truncated(file, length); });
}

int syncNoted(long call, int file) {
    return recorder().run([&] { return static_cast<int>(::syscall(call, file)); },
                          [&](int) { recorder().synced(file); });
}

/// The third argument of `open`, where there is one.
mode_t modeOf(int flags, std::va_list arguments) {
    return (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
}

} // namespace

DiskRecording::DiskRecording(std::string folder) : m_initial(filesBelow(folder)) {
    recorder().begin(std::move(folder), m_initial);
}

void DiskRecording::mark(std::int64_t number) {
    recorder().note({.kind = DiskStep::Kind::Mark, .position = number});
}

void DiskRecording::end() {
    for (DiskStep &step : recorder().end())
        m_steps.push_back(std::move(step));
}

} // namespace tarne::test

using namespace tarne::test;

// They take the place of the system's, for Qt and SQLite too.
extern "C" {
#pragma GCC visibility push(default)

int open(const char *path, int flags, ...) {
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return openNoted(AT_FDCWD, path, flags, mode);
}
int open64(const char *path, int flags, ...) {
    std::va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return openNoted(AT_FDCWD, path, flags, mode);
}
int close(int file) {
    return recorder().run(
        [&] {
            recorder().closed(file);
            return static_cast<int>(::syscall(SYS_close, file));
        },
        [](int) {});
}
ssize_t write(int file, const void *bytes, std::size_t size) {
    return recorder().run([&] { return ::syscall(SYS_write, file, bytes, size); },
                          [&](ssize_t written) {
                              const off_t end = ::lseek(file, 0, SEEK_CUR);
                              recorder().written(file, end - written, bytes, written);
                          });
}
ssize_t pwrite(int file, const void *bytes, std::size_t size, off_t position) {
    return writeNotedAt(file, bytes, size, position);
}
ssize_t pwrite64(int file, const void *bytes, std::size_t size, off64_t position) {
    return writeNotedAt(file, bytes, size, position);
}
int ftruncate(int file, off_t length) noexcept {
    return truncateNoted(file, length);
}
int ftruncate64(int file, off64_t length) noexcept {
    return truncateNoted(file, length);
}
int fsync(int file) {
    return syncNoted(SYS_fsync, file);
}
int fdatasync(int file) {
    return syncNoted(SYS_fdatasync, file);
}
int mkdir(const char *path, mode_t mode) noexcept {
    return recorder().run([&] { return static_cast<int>(::syscall(SYS_mkdir, path, mode)); },
                          [&](int) { recorder().folderMade(path); });
}
int link(const char *from, const char *to) noexcept {
    return recorder().run([&] { return static_cast<int>(::syscall(SYS_link, from, to)); },
                          [&](int) { recorder().linked(from, to); });
}
int rename(const char *from, const char *to) noexcept {
    return renameNoted(from, to, 0);
}
int renameat2(int, const char *from, int, const char *to, unsigned flags) noexcept {
    return renameNoted(from, to, flags);
}
int unlink(const char *path) noexcept {
    return recorder().run([&] { return static_cast<int>(::syscall(SYS_unlink, path)); },
                          [&](int) { recorder().removed(path); });
}

#pragma GCC visibility pop
} // extern "C"
