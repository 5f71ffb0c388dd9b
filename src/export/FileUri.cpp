// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "export/FileUri.h"

#include <filesystem>
#include <system_error>

std::string PercentEncoded(std::string_view path) {
    constexpr std::string_view kHexDigits = "0123456789ABCDEF";
    constexpr std::string_view kKept =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";
    std::string encoded;
    for (char const c : path) {
        if (kKept.find(c) != std::string_view::npos) {
            encoded += c;
        } else {
            auto const byte = static_cast<unsigned char>(c);
            encoded += {'%', kHexDigits[byte >> 4U], kHexDigits[byte & 15U]};
        }
    }
    return encoded;
}

std::string FileUri(std::string const& path) {
    std::error_code error;
    std::filesystem::path const absolute = std::filesystem::absolute(path, error);
    return "file://" + PercentEncoded(error ? path : absolute.native());
}
