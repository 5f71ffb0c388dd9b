// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/Process.h"
#include "support/TempFolder.h"

#include <clocale>
#include <cstdlib>
#include <string>

/// While one of these lives, the process writes numbers as in Germany, with a decimal comma. The
/// locale is compiled for the occasion, so that none need be set up on the machine.
class CCommaLocale {
public:
    CCommaLocale() : m_sBefore(std::setlocale(LC_NUMERIC, nullptr)) {
        (void)RunProcess(
            {"localedef", "-c", "-i", "de_DE", "-f", "UTF-8", m_folder / "de_DE.UTF-8"});
        (void)setenv("LOCPATH", m_folder.Path().c_str(), 1);
        m_bSet = std::setlocale(LC_NUMERIC, "de_DE.UTF-8") != nullptr &&
                 std::string(std::localeconv()->decimal_point) == ",";
    }
    ~CCommaLocale() {
        (void)std::setlocale(LC_NUMERIC, m_sBefore.c_str());
        (void)unsetenv("LOCPATH");
    }
    CCommaLocale(CCommaLocale const&) = delete;
    CCommaLocale& operator=(CCommaLocale const&) = delete;

    /// False on a machine without the sources of locales.
    [[nodiscard]] bool IsSet() const { return m_bSet; }

private:
    CTempFolder m_folder;
    std::string m_sBefore;
    bool m_bSet = false;
};
