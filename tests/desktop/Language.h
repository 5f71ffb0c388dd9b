// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "desktop/Translation.h"

#include <QApplication>
#include <QLocale>
#include <QTranslator>

/// Texts of one language, taken away again at the end.
class CLanguage {
public:
    explicit CLanguage(QLocale const& locale) {
        QLocale::setDefault(locale);
        InstallTranslations(*qApp, locale);
    }
    ~CLanguage() {
        for (QTranslator* translator : qApp->findChildren<QTranslator*>()) {
            delete translator;
        }
        QGuiApplication::setLayoutDirection(Qt::LeftToRight);
        QLocale::setDefault(m_before);
    }
    CLanguage(CLanguage const&) = delete;
    CLanguage& operator=(CLanguage const&) = delete;

private:
    QLocale m_before;
};
