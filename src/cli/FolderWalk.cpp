// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/FolderWalk.h"

#include "base/CString.h"
#include "cli/Interrupt.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fnmatch.h>
#include <sys/stat.h>

namespace {

// Fixed: what macOS and desktops put beside files, by how the names begin.
constexpr std::array<std::string_view, 2> kLeftOutPrefixes = {"._", ".Trash"};
// Fixed: folders of network storage and file systems.
constexpr std::array<std::string_view, 4> kLeftOutNames = {"#recycle", ".snapshots", "@eaDir",
                                                           "lost+found"};

/// `folder` with one slash at its end.
std::string WithSlash(std::string folder) {
    folder.resize(folder.find_last_not_of('/') + 1);
    return folder + '/';
}

} // namespace

bool HasAudioExtension(std::string_view path) {
    return FindAudioKind(CString::FromPath(path)) != nullptr;
}

bool IsLeftOut(std::string_view name) {
    return std::ranges::find(kLeftOutNames, name) != kLeftOutNames.end() ||
           std::ranges::any_of(kLeftOutPrefixes,
                               [&](std::string_view prefix) { return name.starts_with(prefix); });
}

bool CFolderWalk::IsWanted(std::string_view name) const {
    CAudioKind const* const kind = FindAudioKind(CString::FromPath(name));
    return kind != nullptr && (!m_options.m_types || m_options.m_types->Has(*kind));
}

bool CFolderWalk::IsExcluded(std::string const& path, bool isFolder) const {
    std::string const below = path.substr(m_nRootBytes);
    std::string const name = path.substr(path.rfind('/') + 1);
    return std::ranges::any_of(m_options.m_vExcluded, [&](std::string pattern) {
        bool const isForFolders = pattern.size() > 1 && pattern.ends_with('/');
        pattern.resize(pattern.size() - (isForFolders ? 1 : 0));
        bool const isPath = pattern.find('/') != std::string::npos;
        pattern.erase(0, isPath && pattern.front() == '/' ? 1 : 0);
        return (isFolder || !isForFolders) &&
               ::fnmatch(pattern.c_str(), (isPath ? below : name).c_str(), 0) == 0;
    });
}

CFolderWalk::CFolderWalk(std::string const& folder, CWalkOptions const& options)
    : m_options(options), m_nRootBytes(WithSlash(folder).size()) {
    Enter(folder);
}

std::optional<CWalkItem> CFolderWalk::Next() {
    while (!CInterrupt::IsSet()) {
        if (m_failure) {
            return std::exchange(m_failure, std::nullopt);
        }
        if (m_vPending.empty()) {
            return std::nullopt;
        }
        CFound next = std::move(m_vPending.back());
        m_vPending.pop_back();
        if (!next.m_bIsFolder) {
            return CWalkItem{std::move(next.m_sPath), {}};
        }
        Enter(next.m_sPath);
    }
    return std::nullopt;
}

void CFolderWalk::Enter(std::string const& folder) {
    // Without links no folder can come twice.
    if (m_options.m_bFollows && !IsFirstVisit(folder)) {
        return;
    }
    std::vector<CFound> found;
    if (std::error_code const error = ReadFolder(folder, found)) {
        m_failure = CWalkItem{folder, error};
    }
    std::ranges::sort(found, std::ranges::greater(), &CFound::m_sPath);
    std::ranges::move(found, std::back_inserter(m_vPending));
}

bool CFolderWalk::IsFirstVisit(std::string const& folder) {
    struct stat info {};
    return ::stat(folder.c_str(), &info) != 0 ||
           m_visited.insert({info.st_dev, info.st_ino}).second;
}

std::error_code CFolderWalk::ReadFolder(std::string const& folder, std::vector<CFound>& found) {
    std::string const prefix = WithSlash(folder);
    std::error_code error;
    std::filesystem::directory_iterator entry(folder, error);
    std::filesystem::directory_iterator const end;
    while (!error && entry != end && !CInterrupt::IsSet()) {
        std::string const name = entry->path().filename().native();
        std::error_code vanished; // What is gone meanwhile is no folder.
        bool const isFolder = entry->is_directory(vanished);
        bool const isLinked = isFolder && entry->is_symlink(vanished);
        bool const isLeftOut =
            (!m_options.m_bHidden && IsLeftOut(name)) || IsExcluded(prefix + name, isFolder);
        if (isLeftOut) {
            // Left out, and not worth a word.
        } else if (isLinked && !m_options.m_bFollows) {
            ++m_nLinkedFolders;
        } else if (isFolder || IsWanted(name)) {
            found.push_back({prefix + name, isFolder});
        }
        entry.increment(error);
    }
    return error;
}
