// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Compiled into every program of tests: what the programs remember goes into a folder that is gone
// afterwards, never into the home of the person who runs the tests. Programs that a test starts
// inherit it.

#include "support/TempFolder.h"

#include <cstdlib>

namespace {

class CPrivateHome {
public:
    CPrivateHome() {
        (void)::setenv("XDG_STATE_HOME", (m_folder / "state").c_str(), 1);
        (void)::setenv("XDG_CACHE_HOME", (m_folder / "cache").c_str(), 1);
        (void)::unsetenv("TACTUS_NO_RECORDS");
    }

private:
    CTempFolder m_folder;
};

CPrivateHome const g_home;

} // namespace
