// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "records/RealPath.h"

#include <filesystem>

std::string RealPath(std::string const& path) {
    std::error_code error;
    std::filesystem::path const absolute = std::filesystem::absolute(path, error);
    std::filesystem::path const real = std::filesystem::weakly_canonical(absolute, error);
    return error ? absolute.lexically_normal().string() : real.string();
}
