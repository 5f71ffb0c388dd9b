// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/NameList.h"

#include "IDTag/PosixFile.h"
#include "cli/InputWalk.h"
#include "cli/Interrupt.h"
#include "cli/Message.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::size_t kPieceBytes = 65536; // Tuned: pipes hold as much at once.

/// Appends all that comes from `file`. Returns: the system's number of what went wrong, else 0.
int ReadAll(int file, std::string& bytes) {
    std::array<char, kPieceBytes> piece{};
    while (!CInterrupt::IsSet()) {
        ssize_t const size = ::read(file, piece.data(), piece.size());
        if (size == 0) {
            break;
        }
        if (size > 0) {
            bytes.append(piece.data(), static_cast<std::size_t>(size));
        } else if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

} // namespace

std::vector<std::string> NamesIn(std::string const& list, char end) {
    std::vector<std::string> names;
    for (std::size_t begin = 0; begin < list.size();) {
        std::size_t const stop = std::min(list.find(end, begin), list.size());
        if (stop > begin) {
            names.push_back(list.substr(begin, stop - begin));
        }
        begin = stop + 1;
    }
    return names;
}

std::string ReadNameList(std::string const& path, bool endsInZero,
                         std::vector<std::string>& names) {
    bool const isStandardInput = path == kStandardInputName;
    CDescriptor const file(isStandardInput ? -1
                                           : ::open(path.c_str(), O_RDONLY | O_NOCTTY | O_CLOEXEC));
    int error = !isStandardInput && !file.IsOpen() ? errno : 0;
    std::string list;
    if (error == 0) {
        error = ReadAll(isStandardInput ? STDIN_FILENO : file.Get(), list);
    }
    for (std::string& name : NamesIn(list, endsInZero ? '\0' : '\n')) {
        // Here that is a file's name like any other.
        names.push_back(name == kStandardInputName ? "./" + name : std::move(name));
    }
    return error == 0 ? "" : SystemReason(error);
}
