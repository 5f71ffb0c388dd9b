// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Runs one fuzz target over files and folders of inputs without a fuzzing engine, so that every
// seed and every finding is tested in the ordinary run.
//
// Replay PATH...

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);

namespace {

std::vector<std::filesystem::path> InputsIn(std::filesystem::path const& path) {
    if (!std::filesystem::is_directory(path)) {
        return {path};
    }
    std::vector<std::filesystem::path> inputs;
    for (auto const& entry : std::filesystem::directory_iterator(path)) {
        inputs.push_back(entry.path());
    }
    std::ranges::sort(inputs);
    return inputs;
}

bool Run(std::filesystem::path const& path) {
    std::ifstream file(path, std::ios::binary);
    std::vector<std::uint8_t> const bytes{std::istreambuf_iterator<char>(file), {}};
    if (!file.is_open()) {
        std::fprintf(stderr, "%s: can't be read\n", path.c_str());
        return false;
    }
    std::fprintf(stderr, "%s: %zu bytes\n", path.c_str(), bytes.size());
    (void)LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    return true;
}

} // namespace

int main(int argc, char** argv) {
    std::size_t count = 0;
    for (int i = 1; i < argc; ++i) {
        for (auto const& path : InputsIn(argv[i])) {
            if (!Run(path)) {
                return 1;
            }
            ++count;
        }
    }
    std::printf("%zu inputs replayed\n", count);
    return count > 0 ? 0 : 1;
}
