// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "base/FileManager.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace {

struct CFound {
    std::string m_sPath;
    bool m_bIsDirectory;
};

// Paths are bytes on this host, and `std::filesystem::path` keeps them as they are.
std::filesystem::path NativePath(CString const& path) {
    return path.ToPath();
}

// What `folder` holds, the last name first, so that the next one to visit is at the back.
std::vector<CFound> ReadFolder(std::string const& folder, std::error_code& error) {
    std::string prefix = folder;
    prefix.resize(prefix.find_last_not_of('/') + 1);
    prefix += '/';
    std::vector<CFound> found;
    std::filesystem::directory_iterator entry(folder, error);
    std::filesystem::directory_iterator const end;
    while (!error && entry != end) {
        std::error_code vanished; // What is gone meanwhile is no directory.
        bool const isDirectory = !entry->is_symlink(vanished) && entry->is_directory(vanished);
        found.push_back({prefix + entry->path().filename().native(), isDirectory});
        entry.increment(error);
    }
    std::sort(found.begin(), found.end(),
              [](CFound const& a, CFound const& b) { return a.m_sPath > b.m_sPath; });
    return found;
}

} // namespace

bool CFileManager::Exists(CString const& path) {
    std::error_code error;
    return std::filesystem::exists(NativePath(path), error);
}

bool CFileManager::IsDirectory(CString const& path) {
    std::error_code error;
    return std::filesystem::is_directory(NativePath(path), error);
}

void CFileManager::Enumerate(CString const& folder, EntryVisitor const& visit,
                             ErrorVisitor const& fail) {
    std::vector<CFound> pending;
    auto const enter = [&](std::string const& path) {
        std::error_code error;
        std::vector<CFound> found = ReadFolder(path, error);
        if (error && fail) {
            fail(CString::FromPath(path), error);
        }
        std::move(found.begin(), found.end(), std::back_inserter(pending));
    };
    enter(folder.ToPath());
    while (!pending.empty()) {
        CFound const next = std::move(pending.back());
        pending.pop_back();
        if (!visit({CString::FromPath(next.m_sPath), next.m_bIsDirectory})) {
            return;
        }
        if (next.m_bIsDirectory) {
            enter(next.m_sPath);
        }
    }
}

std::error_code CFileManager::Remove(CString const& path) {
    std::error_code error;
    if (!std::filesystem::remove(NativePath(path), error) && !error) {
        error = std::make_error_code(std::errc::no_such_file_or_directory);
    }
    return error;
}

std::error_code CFileManager::Rename(CString const& from, CString const& to) {
    std::error_code error;
    std::filesystem::rename(NativePath(from), NativePath(to), error);
    return error;
}

std::error_code CFileManager::CreateDirectory(CString const& path) {
    std::error_code error;
    std::filesystem::create_directory(NativePath(path), error);
    return error;
}
