// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// How files come into the list. Folders are walked and tags read on the adding worker, one path
// after the other; the analysis starts when all paths of one panel or drop are in.

#include "app/BPMController.h"
#include "app/ControllerRow.h"
#include "app/RowTags.h"
#include "base/FileManager.h"
#include "base/FileUtil.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

constexpr std::array<char const*, 3> kChoosableTypes{"wav", "mp3", "aiff"}; // Fixed: open panel.

} // namespace

// Deliberate: an extension is looked for anywhere in the joined list, so that "if" and "m4" pass
// as well. A name without an extension doesn't.
bool BPMController::hasSupportedExtension(CString const& path) const {
    CString extension;
    if (CFileUtil::GetLowerCaseFileExt(path, extension) != kStatusOk || extension.IsEmpty()) {
        return false;
    }
    return m_sSupportedExts.Find(extension) >= 0;
}

bool BPMController::panelShouldShowFilename(CString const& path) const {
    return CFileManager::IsDirectory(path) || hasSupportedExtension(path);
}

bool BPMController::panelCanChooseFilename(CString const& path) const {
    if (CFileManager::IsDirectory(path)) {
        return true;
    }
    CString extension;
    return CFileUtil::GetLowerCaseFileExt(path, extension) == kStatusOk &&
           std::any_of(kChoosableTypes.begin(), kChoosableTypes.end(),
                       [&](char const* type) { return extension == type; });
}

void BPMController::openFile(std::vector<CString> paths) {
    addInBackground(std::move(paths));
}

CDropAnswer BPMController::validateDrop(bool offersFileNames, std::int64_t proposedRow) const {
    if (!offersFileNames) {
        return {};
    }
    return {EDropOperation::Copy, proposedRow};
}

bool BPMController::acceptDrop(std::vector<CString> paths) {
    addInBackground(std::move(paths));
    return true;
}

void BPMController::add(CString const& path) {
    addPath(path, m_nAddGeneration);
}

void BPMController::addPath(CString const& path, std::uint64_t generation) {
    if (!CFileManager::IsDirectory(path)) {
        addFile(path);
        return;
    }
    std::vector<CString> files;
    BuildFileListFromPath(files, path);
    for (CString const& file : files) {
        if (!isWanted(generation)) {
            return;
        }
        addFile(file);
    }
}

void BPMController::BuildFileListFromPath(std::vector<CString>& list, CString const& directory) {
    std::uint64_t const generation = m_nAddGeneration;
    CFileManager::Enumerate(
        directory,
        [&](CFileEntry const& entry) {
            if (hasSupportedExtension(entry.m_sPath)) {
                list.push_back(entry.m_sPath);
            }
            return isWanted(generation);
        },
        [this](CString const& folder, std::error_code) { noteUnreadFolder(folder); });
}

void BPMController::noteUnreadFolder(CString const& folder) {
    {
        std::scoped_lock const guard(m_lock);
        ++m_status.m_nUnreadFolders;
        m_status.m_sUnreadFolder = folder.Units();
    }
    m_view.statusChanged();
}

// The path is taken first and the row appended when its tags are read, so that the lock is free
// meanwhile and a path that comes in twice is still read once.
void BPMController::addFile(CString const& path) {
    {
        std::scoped_lock const guard(m_lock);
        if (m_bTerminated) {
            return;
        }
        auto const [known, isNew] = m_vPaths.emplace(path.Units(), kNoRow);
        if (!isNew) {
            noteKnownRow(known->second);
            return;
        }
    }
    auto row = std::make_unique<CRow>(path);
    row->m_sTempoInTag = ReadRowTags(row->m_file);
    row->m_bFromTag = row->m_file.IsDone();
    {
        std::scoped_lock const guard(m_lock);
        row->m_nIndex = m_vFiles.size();
        if (!row->m_file.IsDone()) {
            ++m_status.m_nUndone;
            m_status.m_nBatchFiles += static_cast<std::size_t>(m_bAnalysisInProgress);
        }
        m_vIndexes.emplace(&row->m_file, row->m_nIndex);
        m_vPaths[std::u16string(path.Units())] = row->m_nIndex;
        m_vFiles.push_back(std::move(row));
    }
    m_view.rowsAdded();
}

void BPMController::addInBackground(std::vector<CString> paths) {
    std::uint64_t const generation = m_nAddGeneration;
    {
        std::scoped_lock const guard(m_lock);
        if (m_bTerminated) {
            return;
        }
        ++m_nAddJobs;
    }
    m_view.statusChanged();
    m_addQueue.Post([this, generation, paths = std::move(paths)] {
        for (CString const& path : paths) {
            addPath(path, generation);
        }
        endAdding(generation);
    });
}

// A stop that came in meanwhile keeps the analysis from starting.
void BPMController::endAdding(std::uint64_t generation) {
    {
        std::scoped_lock const guard(m_lock);
        --m_nAddJobs;
        if (isWanted(generation)) {
            m_bBatchStopped = false;
            startNext();
        }
    }
    m_view.statusChanged();
}

bool BPMController::isWanted(std::uint64_t generation) const {
    return m_nAddGeneration.load(std::memory_order_relaxed) == generation;
}
