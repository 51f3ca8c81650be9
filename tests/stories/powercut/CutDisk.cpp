#include "CutDisk.h"

#include <algorithm>

namespace tarne::test {

namespace {

using Kind = DiskStep::Kind;

constexpr std::size_t sector = 512;
constexpr std::size_t page = 4096;

std::string folderOf(const std::string &name) {
    const auto slash = name.rfind('/');
    return slash == std::string::npos ? std::string() : name.substr(0, slash);
}

bool isOneOf(std::minstd_rand &random, unsigned many) {
    return random() % many == 0;
}

void overwrite(std::string &bytes, std::size_t position, std::string_view by) {
    bytes.resize(std::max(bytes.size(), position + by.size()));
    bytes.replace(position, by.size(), by);
}

void apply(std::string &bytes, const DiskStep &step) {
    const auto position = static_cast<std::size_t>(step.position);
    if (step.kind == Kind::Write)
        overwrite(bytes, position, step.bytes);
    else
        bytes.resize(position);
}

/// The write's beginning, up to a boundary of sectors or pages of the file.
void applyBeginning(std::string &bytes, const DiskStep &write, std::minstd_rand &random) {
    const std::size_t unit = isOneOf(random, 2) ? sector : page;
    const auto position = static_cast<std::size_t>(write.position);
    const std::size_t first = (position / unit + 1) * unit - position; ///< Before the boundary.
    if (first >= write.bytes.size())
        return;
    const std::size_t boundaries = (write.bytes.size() - first - 1) / unit + 1;
    const std::size_t kept = first + random() % boundaries * unit;
    overwrite(bytes, position, std::string_view(write.bytes).substr(0, kept));
}

/// Some of the sectors that a write touches.
void applySectors(std::string &bytes, const DiskStep &write, std::minstd_rand &random) {
    const auto position = static_cast<std::size_t>(write.position);
    for (std::size_t from = 0; from < write.bytes.size();) {
        const std::size_t to =
            std::min(write.bytes.size(), ((position + from) / sector + 1) * sector - position);
        if (isOneOf(random, 2))
            overwrite(bytes, position + from,
                      std::string_view(write.bytes).substr(from, to - from));
        from = to;
    }
}

} // namespace

CutDisk::CutDisk(const FileTree &initial) {
    int number = 0;
    for (const auto &[name, bytes] : initial) {
        if (name.ends_with('/')) {
            m_namesOnDisk[name.substr(0, name.size() - 1)] = 0;
        } else {
            m_namesOnDisk[name] = ++number;
            m_files[number].onDisk = bytes;
        }
    }
}

void CutDisk::follow(const DiskStep &step) {
    m_last = &step;
    switch (step.kind) {
    case Kind::Write:
    case Kind::Truncate:
        m_files[step.file].unsynced.push_back(&step);
        break;
    case Kind::SyncFile: {
        File &file = m_files[step.file];
        for (const DiskStep *change : file.unsynced)
            apply(file.onDisk, *change);
        file.unsynced.clear();
        break;
    }
    case Kind::SyncFolder:
        std::erase_if(m_unsyncedNames, [&](const DiskStep *change) {
            if (folderOf(change->name) != step.name)
                return false;
            applyTo(m_namesOnDisk, *change);
            return true;
        });
        break;
    case Kind::Mark:
        break;
    case Kind::Create:
    case Kind::MakeFolder:
    case Kind::Link:
    case Kind::Rename:
    case Kind::Remove:
        m_unsyncedNames.push_back(&step);
        break;
    }
}

FileTree CutDisk::after(Fate fate, std::minstd_rand &random) const {
    FileTree tree;
    for (const auto &[name, number] : namesAfter(fate, random)) {
        // Without its folder nobody finds a file.
        if (const std::string folder = folderOf(name);
            !folder.empty() && !tree.contains(folder + '/'))
            continue;
        if (number == 0)
            tree[name + '/'];
        else if (const auto file = m_files.find(number); file != m_files.end())
            tree[name] = bytesAfter(file->second, fate, random);
        else
            tree[name];
    }
    return tree;
}

void CutDisk::applyTo(Names &names, const DiskStep &step) {
    switch (step.kind) {
    case Kind::Create:
    case Kind::MakeFolder:
        names[step.name] = step.file;
        break;
    case Kind::Link:
        names[step.newName] = step.file;
        break;
    case Kind::Rename:
        // Where the first name never came to the disk there is nothing that gets another one.
        if (const auto found = names.find(step.name); found != names.end()) {
            names[step.newName] = found->second;
            names.erase(step.name);
        }
        break;
    case Kind::Remove:
        names.erase(step.name);
        break;
    default:
        break;
    }
}

CutDisk::Names CutDisk::namesAfter(Fate fate, std::minstd_rand &random) const {
    Names names = m_namesOnDisk;
    if (fate == Fate::Dropped || fate == Fate::BytesAlone)
        return names;
    for (const DiskStep *change : m_unsyncedNames) {
        if (fate != Fate::Mixed || isOneOf(random, 2))
            applyTo(names, *change);
    }
    return names;
}

std::string CutDisk::bytesAfter(const File &file, Fate fate, std::minstd_rand &random) const {
    std::string bytes = file.onDisk;
    if (fate == Fate::Dropped || fate == Fate::NamesAlone)
        return bytes;
    for (const DiskStep *change : file.unsynced) {
        const bool isWrite = change->kind == Kind::Write;
        if (fate == Fate::Torn && isWrite && change == m_last)
            applyBeginning(bytes, *change, random);
        else if (fate == Fate::Zeroed && isWrite)
            bytes.resize(std::max(bytes.size(), static_cast<std::size_t>(change->position) +
                                                    change->bytes.size()));
        else if (fate != Fate::Mixed)
            apply(bytes, *change);
        else if (isOneOf(random, 4) && isWrite)
            applySectors(bytes, *change, random);
        else if (isOneOf(random, 2))
            apply(bytes, *change);
    }
    return bytes;
}

} // namespace tarne::test
