// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/InputWalk.h"

#include "base/FileManager.h"
#include "cli/Interrupt.h"
#include "cli/StandardInput.h"

#include <unistd.h>

CInputWalk::CInputWalk(std::vector<std::string> paths, CWalkOptions const& options)
    : m_vPaths(std::move(paths)), m_options(options) {
}

CInputWalk::~CInputWalk() {
    if (m_nStandardInput >= 0) {
        (void)close(m_nStandardInput);
    }
}

std::optional<CInputFile> CInputWalk::Next() {
    while (!IsAtEnd() && !CInterrupt::IsSet()) {
        std::optional<CInputFile> file = m_folder ? TakeFromFolder() : Take(m_vPaths[m_nNext++]);
        if (file && m_known.insert(file->m_sName).second) {
            return file;
        }
    }
    return std::nullopt;
}

/// The file at `path`; nothing when that is a folder, which is walked from here on.
std::optional<CInputFile> CInputWalk::Take(std::string const& path) {
    if (path == kStandardInputName) {
        return TakeStandardInput();
    }
    CString const file = CString::FromPath(path);
    if (!m_options.m_bSearches || !CFileManager::IsDirectory(file)) {
        return CInputFile{path, file, {}};
    }
    m_folder.emplace(path, m_options);
    m_bIsBarren = true;
    return std::nullopt;
}

/// The next file of the folder at hand; nothing at its end.
std::optional<CInputFile> CInputWalk::TakeFromFolder() {
    if (std::optional<CWalkItem> item = m_folder->Next()) {
        m_bIsBarren = false;
        return CInputFile{item->m_sPath, CString::FromPath(item->m_sPath),
                          item->m_error ? item->m_error.message() : ""};
    }
    if (CInterrupt::IsSet()) {
        return std::nullopt;
    }
    std::string const& path = m_vPaths[m_nNext - 1];
    if (m_bIsBarren && m_known.insert(path).second) {
        m_vBarren.push_back(path);
    }
    m_nLinkedFolders += m_folder->LinkedFolders();
    m_folder.reset();
    return std::nullopt;
}

CInputFile CInputWalk::TakeStandardInput() {
    std::string error;
    if (m_nStandardInput < 0) {
        m_nStandardInput = SpoolStandardInput(error);
    }
    std::string const path = "/dev/fd/" + std::to_string(m_nStandardInput);
    return {std::string(kStandardInputName), CString::FromPath(path), error};
}
