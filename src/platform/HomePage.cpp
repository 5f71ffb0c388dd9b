// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/HomePage.h"

#include <array>
#include <cstddef>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace {

// Fixed: where the guide lies beside an installed program, and beside one in its build folder.
constexpr std::array<char const*, 2> kGuidePlaces{"../share/doc/tactus/html/index.html",
                                                  "../../docs/guide/html/index.html"};

/// `path` as a file URL: every byte outside the unreserved set of RFC 3986 and "/" is encoded.
std::string FileUrl(std::string const& path) {
    constexpr std::string_view kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
                                        "0123456789-._~/";
    constexpr std::string_view kHexDigits = "0123456789ABCDEF";
    std::string url = "file://";
    for (char const letter : path) {
        if (kPlain.find(letter) != std::string_view::npos) {
            url += letter;
        } else {
            auto const byte = static_cast<unsigned char>(letter);
            url += '%';
            url += kHexDigits[static_cast<std::size_t>(byte >> 4U)];
            url += kHexDigits[static_cast<std::size_t>(byte & 15U)];
        }
    }
    return url;
}

} // namespace

std::string GuideAddress(std::string const& programFolder) {
    std::error_code error;
    for (char const* place : kGuidePlaces) {
        auto const guide =
            std::filesystem::weakly_canonical(std::filesystem::path(programFolder) / place, error);
        if (!error && std::filesystem::is_regular_file(guide, error)) {
            return FileUrl(guide.string());
        }
    }
    return FileUrl(TACTUS_INSTALLED_GUIDE);
}

std::string HomePage() {
    std::string address = TACTUS_HOME_PAGE;
    if (address.empty()) {
        std::error_code error;
        auto const program = std::filesystem::read_symlink("/proc/self/exe", error);
        address = GuideAddress(program.parent_path().string());
    }
    return address;
}
