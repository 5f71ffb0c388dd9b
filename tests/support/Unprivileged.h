// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <initializer_list>
#include <stdexcept>
#include <string>
#include <unistd.h>

/// While one of these lives, a superuser's test acts as a user without rights, who owns `paths`.
/// Anybody else has no rights to give up. For programs of one thread.
class CUnprivileged {
public:
    explicit CUnprivileged(std::initializer_list<std::string> paths) {
        if (::geteuid() != 0) {
            return;
        }
        for (std::string const& path : paths) {
            if (::chown(path.c_str(), kNobody, static_cast<gid_t>(-1)) != 0) {
                throw std::runtime_error("can't give away " + path);
            }
        }
        if (::seteuid(kNobody) != 0) {
            throw std::runtime_error("can't give up the superuser's rights");
        }
    }

    ~CUnprivileged() {
        if (::getuid() == 0) {
            (void)!::seteuid(0);
        }
    }

    CUnprivileged(CUnprivileged const&) = delete;
    CUnprivileged& operator=(CUnprivileged const&) = delete;

private:
    static constexpr uid_t kNobody = 65534;
};
