// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/Translation.h"

#include <QGuiApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

void InstallTranslations(QCoreApplication& app, QLocale const& locale) {
    auto* ours = new QTranslator(&app);
    bool const isTranslated = ours->load(locale, "tactus", "_", ":/i18n");
    if (isTranslated || ours->load(":/i18n/tactus_en.qm")) {
        QCoreApplication::installTranslator(ours);
    }
    if (!isTranslated) {
        return; // a window in English has no buttons in another language, and isn't mirrored
    }
    if (QLocale(ours->language()).textDirection() == Qt::RightToLeft) {
        QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    }
    auto* ofQt = new QTranslator(&app);
    if (ofQt->load(locale, "qtbase", "_", QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        QCoreApplication::installTranslator(ofQt);
    }
}
