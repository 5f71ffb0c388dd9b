// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/StandardInput.h"

#include "cli/Interrupt.h"
#include "cli/Message.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace {

/// A new file without a name. Returns: negative when there can't be one.
int MakeNamelessFile() {
    std::error_code ignored;
    std::string path = (std::filesystem::temp_directory_path(ignored) / "tactus-XXXXXX").native();
    int const file = mkostemp(path.data(), O_CLOEXEC);
    if (file >= 0) {
        (void)unlink(path.c_str());
    }
    return file;
}

bool WriteAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        ssize_t const done = write(file, bytes.data(), bytes.size());
        if (done < 0 && errno != EINTR) {
            return false;
        }
        bytes.remove_prefix(done > 0 ? static_cast<std::size_t>(done) : 0);
    }
    return true;
}

/// Copies standard input to its end. Returns: false, with `errno` set, when that fails.
bool CopyStandardInput(int file) {
    std::array<char, 65536> block{};
    for (;;) {
        ssize_t const size = read(STDIN_FILENO, block.data(), block.size());
        if (size == 0) {
            return true;
        }
        bool const isFailure = size < 0 && (errno != EINTR || CInterrupt::IsSet());
        if (isFailure ||
            (size > 0 && !WriteAll(file, {block.data(), static_cast<std::size_t>(size)}))) {
            return false;
        }
    }
}

} // namespace

int SpoolStandardInput(std::string& error) {
    struct stat status {};
    if (fstat(STDIN_FILENO, &status) == 0 && S_ISREG(status.st_mode)) {
        return fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0);
    }
    int const file = MakeNamelessFile();
    if (file < 0 || !CopyStandardInput(file)) {
        error = SystemReason(errno);
    }
    return file;
}
