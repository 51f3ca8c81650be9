#include "FileTree.h"

#include <filesystem>
#include <fstream>
#include <iterator>

namespace fs = std::filesystem;

namespace tarne::test {

bool isSharedMemory(std::string_view path) {
    return path.ends_with("-shm");
}

FileTree filesBelow(const std::string &folder) {
    FileTree tree;
    for (const auto &entry : fs::recursive_directory_iterator(folder)) {
        const std::string name = fs::relative(entry.path(), folder);
        if (entry.is_directory()) {
            tree[name + '/'] = {};
        } else if (!isSharedMemory(name)) {
            std::ifstream file(entry.path(), std::ios::binary);
            tree[name] = {std::istreambuf_iterator<char>(file), {}};
        }
    }
    return tree;
}

void replaceFilesBelow(const std::string &folder, const FileTree &tree) {
    fs::remove_all(folder);
    fs::create_directories(folder);
    for (const auto &[name, bytes] : tree) {
        if (name.ends_with('/')) {
            fs::create_directory(folder + '/' + name);
            continue;
        }
        std::ofstream file(folder + '/' + name, std::ios::binary);
        file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }
}

} // namespace tarne::test
