// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "records/RealPath.h"

#include <cstdlib>
#include <filesystem>
#include <memory>

std::string RealPath(std::string const& path) {
    std::unique_ptr<char, decltype(&std::free)> const there(::realpath(path.c_str(), nullptr),
                                                            &std::free);
    if (there != nullptr) {
        return there.get();
    }
    std::error_code error;
    std::filesystem::path const absolute = std::filesystem::absolute(path, error);
    std::filesystem::path const real = std::filesystem::weakly_canonical(absolute, error);
    return error ? absolute.lexically_normal().string() : real.string();
}
