// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/Texts.h"

#include <QCoreApplication>
#include <QLocale>
#include <QRegularExpression>
#include <QStringList>
#include <QStringView>
#include <limits>

namespace {

constexpr int kWholePercent = 100;

class CTexts {
    Q_DECLARE_TR_FUNCTIONS(Texts)
};

QString ReasonText(std::string const& reason) {
    return QString::fromStdString(reason);
}

int AsCount(std::size_t count) {
    return static_cast<int>(count);
}

} // namespace

QString ReadableText(std::u16string const& text) {
    QString readable = QString::fromStdU16String(text);
    for (qsizetype i = 0; i < readable.size(); ++i) {
        if (readable[i].isHighSurrogate() && i + 1 < readable.size() &&
            readable[i + 1].isLowSurrogate()) {
            ++i;
        } else if (readable[i].isSurrogate()) {
            readable[i] = QChar::ReplacementCharacter;
        }
    }
    return readable;
}

QString TempoText(std::u16string const& tempo) {
    static QRegularExpression const plainNumber("^[0-9]+\\.[0-9]+$");
    QString text = ReadableText(tempo);
    if (plainNumber.match(text).hasMatch()) {
        text.replace(QLatin1Char('.'), QLocale().decimalPoint());
    }
    return text;
}

double TempoValue(std::u16string const& tempo) {
    static QRegularExpression const leadingNumber("^\\s*\\+?([0-9]+(\\.[0-9]*)?|\\.[0-9]+)");
    auto const match = leadingNumber.match(QString::fromStdU16String(tempo));
    double const value = match.hasMatch() ? match.captured(1).toDouble() : 0.0;
    return value > 0.0 ? value : std::numeric_limits<double>::quiet_NaN();
}

QString ProblemText(CRowState const& row) {
    QStringList sentences;
    if (!row.m_sFailure.empty()) {
        sentences
            << CTexts::tr("The file could not be analyzed: %1.").arg(ReasonText(row.m_sFailure));
    }
    if (!row.m_sNotStored.empty()) {
        sentences << CTexts::tr("The tempo was not stored in the file: %1.")
                         .arg(ReasonText(row.m_sNotStored));
    }
    return sentences.join(QLatin1Char('\n'));
}

QString ActivityText(CBatchStatus const& status) {
    if (status.m_bStopping) {
        return CTexts::tr("Stopping …");
    }
    if (status.m_bRunning) {
        std::size_t const begun = status.m_nBatchFiles - status.m_nUndone + 1;
        return CTexts::tr("Analyzing %1 (%2 of %3)")
            .arg(ReadableText(status.m_sRunningName), QLocale().toString(AsCount(begun)),
                 QLocale().toString(AsCount(status.m_nBatchFiles)));
    }
    if (status.m_bAdding) {
        return CTexts::tr("Adding files … %n so far", nullptr, AsCount(status.m_nRows));
    }
    if (status.m_nRows == 0) {
        return CTexts::tr("No files");
    }
    QString const rows = CTexts::tr("%n file(s)", nullptr, AsCount(status.m_nRows));
    if (status.m_nUndone == 0) {
        return rows;
    }
    return rows + CTexts::tr(", %n not analyzed", nullptr, AsCount(status.m_nUndone));
}

int OverallPercent(CBatchStatus const& status) {
    if (!status.m_bRunning || status.m_nBatchFiles == 0) {
        return 0;
    }
    std::size_t const done = status.m_nBatchFiles - status.m_nUndone;
    std::size_t const running =
        status.m_nPercent > 0 ? static_cast<std::size_t>(status.m_nPercent) : 0;
    return static_cast<int>((done * kWholePercent + running) / status.m_nBatchFiles);
}

QString FileNameOf(QString const& path) {
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}
