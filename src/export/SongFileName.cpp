// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "export/SongFileName.h"

#include <filesystem>

std::string SongFileName(std::string const& path, char const* extension,
                         std::set<std::string>& taken) {
    std::string const stem = std::filesystem::path(path).stem().native();
    std::string name = stem + extension;
    for (int number = 2; !taken.insert(name).second; ++number) {
        name = stem + " (" + std::to_string(number) + ")" + extension;
    }
    return name;
}
