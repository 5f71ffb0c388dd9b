// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/InputList.h"

CInputList::CInputList(std::vector<std::string> const& paths)
    : m_walk(paths, {.m_bSearches = false}) {
    while (std::optional<CInputFile> file = m_walk.Next()) {
        m_vFiles.push_back(std::move(*file));
    }
}
