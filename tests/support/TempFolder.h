// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// A new folder of its own, removed with everything in it at the end.
class CTempFolder {
public:
    CTempFolder();
    ~CTempFolder();
    CTempFolder(CTempFolder const&) = delete;
    CTempFolder& operator=(CTempFolder const&) = delete;

    [[nodiscard]] std::string const& Path() const { return m_sPath; }

    /// Path of `name` in the folder.
    [[nodiscard]] std::string operator/(std::string_view name) const;

private:
    std::string m_sPath;
};

void WriteBytes(std::string const& path, std::span<std::uint8_t const> bytes);
void WriteText(std::string const& path, std::string_view text);

std::vector<std::uint8_t> ReadBytes(std::string const& path);
std::string ReadText(std::string const& path);
