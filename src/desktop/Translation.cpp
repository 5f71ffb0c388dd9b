// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/Translation.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

void InstallTranslations(QCoreApplication& app, QLocale const& locale) {
    auto* ofQt = new QTranslator(&app);
    if (ofQt->load(locale, "qtbase", "_", QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        QCoreApplication::installTranslator(ofQt);
    }
    auto* ours = new QTranslator(&app);
    if (ours->load(locale, "tactus", "_", ":/i18n") || ours->load(":/i18n/tactus_en.qm")) {
        QCoreApplication::installTranslator(ours);
    }
}
