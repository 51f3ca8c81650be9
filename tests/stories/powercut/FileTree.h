#pragma once

#include <map>
#include <string>
#include <string_view>

namespace tarne::test {

/// Files by their paths, and folders with a slash at the end and no bytes.
using FileTree = std::map<std::string, std::string>;

/// Whether it is a file by which programs share memory. It holds nothing that a start would read.
[[nodiscard]] bool isSharedMemory(std::string_view path);

/// All that lies below a folder now. Memory that programs share is left out.
[[nodiscard]] FileTree filesBelow(const std::string &folder);
/// Puts the tree in place of all that lies below the folder.
void replaceFilesBelow(const std::string &folder, const FileTree &tree);

} // namespace tarne::test
