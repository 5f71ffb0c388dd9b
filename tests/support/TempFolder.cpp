// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "support/TempFolder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <utility>

CTempFolder::CTempFolder() {
    m_sPath = (std::filesystem::temp_directory_path() / "tactus-test-XXXXXX").string();
    if (mkdtemp(m_sPath.data()) == nullptr) {
        throw std::runtime_error("no temporary folder");
    }
}

CTempFolder::~CTempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_sPath, ignored);
}

std::string CTempFolder::operator/(std::string_view name) const {
    return m_sPath + "/" + std::string(name);
}

void WriteText(std::string const& path, std::string_view text) {
    std::ofstream out(path, std::ios::binary);
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
    if (!out.flush()) {
        throw std::runtime_error("can't write " + path);
    }
}

void WriteBytes(std::string const& path, std::span<std::uint8_t const> bytes) {
    WriteText(path, {reinterpret_cast<char const*>(bytes.data()), bytes.size()});
}

std::string ReadText(std::string const& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        throw std::runtime_error("can't read " + path);
    }
    std::ostringstream out;
    if (in.peek() != std::ifstream::traits_type::eof()) {
        out << in.rdbuf();
    }
    return std::move(out).str();
}

std::vector<std::uint8_t> ReadBytes(std::string const& path) {
    std::string const text = ReadText(path);
    return {text.begin(), text.end()};
}
