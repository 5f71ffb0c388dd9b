// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

class QCoreApplication;
class QLocale;

/// Installs the texts of the locale's language, and English plurals where there are none, together
/// with Qt's own texts where the system has them.
/// Thread: main, before the first window.
void InstallTranslations(QCoreApplication& app, QLocale const& locale);
