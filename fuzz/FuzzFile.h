// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/CString.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <string>
#include <vector>

// What the targets share that need a file: most code takes paths.

using FuzzBytes = std::vector<std::uint8_t>;

/// Ends the process, with the broken rule, unless it holds.
#define FUZZ_REQUIRE(rule)                                                                         \
    do {                                                                                           \
        if (!(rule)) {                                                                             \
            std::fprintf(stderr, "%s:%d: broken: %s\n", __FILE__, __LINE__, #rule);                \
            std::abort();                                                                          \
        }                                                                                          \
    } while (false)

/// A folder of this process, in memory where the system has such a place, gone when it ends.
class CFuzzFolder {
public:
    CFuzzFolder() {
        bool const inMemory = std::filesystem::is_directory("/dev/shm");
        m_sPath = (inMemory ? "/dev/shm" : std::filesystem::temp_directory_path().string()) +
                  "/tactus-fuzz-XXXXXX";
        FUZZ_REQUIRE(mkdtemp(m_sPath.data()) != nullptr);
    }
    ~CFuzzFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_sPath, ignored);
    }
    CFuzzFolder(CFuzzFolder const&) = delete;
    CFuzzFolder& operator=(CFuzzFolder const&) = delete;

    [[nodiscard]] std::string operator/(char const* name) const { return m_sPath + "/" + name; }

    [[nodiscard]] std::size_t CountFiles() const {
        return static_cast<std::size_t>(
            std::distance(std::filesystem::directory_iterator(m_sPath), {}));
    }

private:
    std::string m_sPath;
};

inline void WriteFuzzFile(std::string const& path, std::uint8_t const* data, std::size_t size) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<char const*>(data), static_cast<std::streamsize>(size));
}

inline FuzzBytes ReadFuzzFile(std::string const& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Puts down the file that an input stands for: its first byte chooses one of the names. Returns:
/// the path, empty where the input is.
inline std::string WriteNamedFile(CFuzzFolder const& folder, std::span<char const* const> names,
                                  std::uint8_t const* data, std::size_t size) {
    if (size == 0) {
        return {};
    }
    std::string const path = folder / names[data[0] % names.size()];
    WriteFuzzFile(path, data + 1, size - 1);
    return path;
}
