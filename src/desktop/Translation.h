// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

class QCoreApplication;
class QLocale;

/// Installs the texts of the locale's language, and English plurals where there are none, together
/// with Qt's own texts where the system has them. In a language that runs from right to left the
/// windows do so too.
/// Thread: main, before the first window.
void InstallTranslations(QCoreApplication& app, QLocale const& locale);
