#include "CompanionsFolder.h"

#include <charconv>
#include <cstdlib>
#include <filesystem>

#include <sys/stat.h>
#include <unistd.h>

namespace tarne {

namespace {

constexpr std::string_view applicationFolder = "/com.tarne.app";
constexpr std::string_view socketPrefix = "server-";
constexpr std::string_view socketSuffix = ".sock";
constexpr int firstPort = 3000;
constexpr int lastPort = 3100;

/// An absolute path from the environment; empty where there is none.
std::string pathFrom(const char *variable) {
    const char *value = std::getenv(variable);
    return value != nullptr && value[0] == '/' ? value : std::string();
}

} // namespace

std::string storeFolder() {
    if (const std::string data = pathFrom("XDG_DATA_HOME"); !data.empty())
        return data + std::string(applicationFolder);
    const std::string home = pathFrom("HOME");
    return home.empty() ? home : home + "/.local/share" + std::string(applicationFolder);
}

std::string companionsFolder() {
    const std::string runtime = pathFrom("XDG_RUNTIME_DIR");
    return runtime.empty() ? storeFolder() : runtime + std::string(applicationFolder);
}

bool makePrivateFolder(const std::string &path) {
    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path(), ignored);
    ::mkdir(path.c_str(), S_IRWXU);
    struct stat status {};
    return ::lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == ::geteuid() && (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

std::string questionSocketName(int port) {
    return std::string(socketPrefix) + std::to_string(port) + std::string(socketSuffix);
}

std::optional<int> portOfQuestionSocket(std::string_view name) {
    if (!name.starts_with(socketPrefix) || !name.ends_with(socketSuffix) ||
        name.size() <= socketPrefix.size() + socketSuffix.size())
        return std::nullopt;
    const std::string_view digits =
        name.substr(socketPrefix.size(), name.size() - socketPrefix.size() - socketSuffix.size());
    int port = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), port);
    if (port < firstPort || port > lastPort || questionSocketName(port) != name)
        return std::nullopt;
    return port;
}

} // namespace tarne
