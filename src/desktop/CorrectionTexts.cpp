// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/CorrectionTexts.h"

#include "desktop/Numbers.h"
#include "desktop/Texts.h"
#include "song/TagTempo.h"

#include <QCoreApplication>
#include <QLocale>
#include <QStringList>
#include <cmath>

namespace {

class CCorrectionTexts {
    Q_DECLARE_TR_FUNCTIONS(CorrectionTexts)
};

QString LeftReason(CUndoReport const& report) {
    switch (report.m_eReason) {
    case EUndo::OtherText:
        return CCorrectionTexts::tr("its tag says something else by now");
    case EUndo::Gone:
        return CCorrectionTexts::tr("the file is gone");
    case EUndo::Unreadable:
        return CCorrectionTexts::tr("its tag can't be read");
    case EUndo::NotWritten:
        return WriteProblemText(report.m_eProblem);
    case EUndo::Restored:
    case EUndo::TextAlone:
    case EUndo::AsBefore:
        break;
    }
    return {};
}

} // namespace

QString RatioText(CTempoFix const& ratio) {
    QString const times = QLocale().toString(ratio.m_nTimes);
    QString const over = QLocale().toString(ratio.m_nOver);
    if (ratio.m_nOver == 1) {
        return LeftToRight(QStringLiteral("×%1").arg(times));
    }
    return LeftToRight(ratio.m_nTimes == 1 ? QStringLiteral("÷%1").arg(over)
                                           : QStringLiteral("%1:%2").arg(times, over));
}

QString ReadingText(CTempoCandidate const& reading) {
    QStringList parts{QLocale().toString(reading.m_fBpm, 'f', kTempoDecimals)};
    if (reading.m_nTimes != reading.m_nOver && reading.m_nOver != 0) {
        parts << RatioText({.m_nTimes = reading.m_nTimes, .m_nOver = reading.m_nOver, .m_dBpm = 0});
    }
    parts << CCorrectionTexts::tr("%1 %").arg(ShareText(reading.m_fScore));
    return JoinedFacts(parts);
}

QString StepText(CUndoStep const& step) {
    switch (step.m_kind) {
    case EStepKind::Analysis:
        return CCorrectionTexts::tr("%Ln stored tempo(s)", nullptr, AsCount(step.m_nFiles));
    case EStepKind::Ratio:
        return CCorrectionTexts::tr("%1 on %Ln file(s)", nullptr, AsCount(step.m_nFiles))
            .arg(RatioText(step.m_ratio));
    case EStepKind::Tempo:
        break;
    }
    return CCorrectionTexts::tr("tempo of %Ln file(s)", nullptr, AsCount(step.m_nFiles));
}

QString RefusalText(ECorrectionRefusal refusal) {
    switch (refusal) {
    case ECorrectionRefusal::None:
        break;
    case ECorrectionRefusal::NothingSelected:
        return CCorrectionTexts::tr("No row is selected.");
    case ECorrectionRefusal::Running:
        return CCorrectionTexts::tr("The file is being analyzed.");
    case ECorrectionRefusal::NoTempo:
        return CCorrectionTexts::tr("There is no tempo yet.");
    case ECorrectionRefusal::TooSlow:
        return CCorrectionTexts::tr("A tempo would be below %1.").arg(LimitText(kSlowestTagBpm));
    case ECorrectionRefusal::TooFast:
        return CCorrectionTexts::tr("A tempo would be above %1.").arg(LimitText(kFastestTagBpm));
    }
    return {};
}

QString LeftText(CUndoReport const& report) {
    if (report.m_nLeft == 0) {
        return {};
    }
    QString const name = Isolated(
        FileNameOf(ReadableText(std::u16string(CString::FromPath(report.m_sPath).Units()))));
    return report.m_nLeft == 1
               ? CCorrectionTexts::tr("“%1” was left as it is: %2.").arg(name, LeftReason(report))
               : CCorrectionTexts::tr("%Ln file(s) were left as they are, the first of them “%1”: "
                                      "%2.",
                                      nullptr, AsCount(report.m_nLeft))
                     .arg(name, LeftReason(report));
}
