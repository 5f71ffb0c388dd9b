// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/StatusTexts.h"

#include "base/FileUtil.h"
#include "desktop/Numbers.h"
#include "desktop/Texts.h"

#include <QCoreApplication>
#include <QLocale>
#include <algorithm>
#include <map>
#include <utility>
#include <vector>

namespace {

class CStatusTexts {
    Q_DECLARE_TR_FUNCTIONS(StatusTexts)
};

/// "1 h 2 min", "1 min 9 s", "12 s"; less than a second is one.
QString DurationText(std::int64_t milliseconds) {
    constexpr std::int64_t kPerSecond = 1000;
    constexpr std::int64_t kSixty = 60; // seconds in a minute, minutes in an hour
    std::int64_t const seconds = std::max<std::int64_t>(1, milliseconds / kPerSecond);
    std::int64_t const minutes = seconds / kSixty;
    auto const text = [](std::int64_t number) { return QLocale().toString(number); };
    if (minutes == 0) {
        return CStatusTexts::tr("%1 s").arg(text(seconds));
    }
    return minutes < kSixty
               ? CStatusTexts::tr("%1 min %2 s").arg(text(minutes), text(seconds % kSixty))
               : CStatusTexts::tr("%1 h %2 min")
                     .arg(text(minutes / kSixty), text(minutes % kSixty));
}

QString RunningText(CBatchStatus const& status) {
    QString const name = Isolated(ReadableText(status.m_sRunningName));
    return status.m_bReading ? CStatusTexts::tr("Reading “%1”").arg(name)
                             : CStatusTexts::tr("Analyzing “%1”").arg(name);
}

} // namespace

QString ActivityText(CBatchStatus const& status, std::size_t problems) {
    QStringList parts;
    if (status.m_bStopping) {
        parts << CStatusTexts::tr("Stopping …");
    } else if (status.m_bRunning) {
        parts << RunningText(status)
              << CStatusTexts::tr("%1 of %2")
                     .arg(CountText(status.m_nBatchPlace), CountText(status.m_nBatchFiles));
    } else if (status.m_bAdding) {
        parts << CStatusTexts::tr("Adding files … %Ln so far", nullptr, AsCount(status.m_nRows));
    } else if (status.m_nRows == status.m_nHidden) {
        return CStatusTexts::tr("No files");
    } else {
        parts << CStatusTexts::tr("%Ln file(s)", nullptr,
                                  AsCount(status.m_nRows - status.m_nHidden));
        if (status.m_nUndone > 0) {
            parts << CStatusTexts::tr("%Ln to do", nullptr, AsCount(status.m_nUndone));
        }
    }
    if (problems > 0) {
        parts << CStatusTexts::tr("%Ln problem(s)", nullptr, AsCount(problems));
    }
    return JoinedFacts(parts);
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

QString AddedText(std::size_t added, std::size_t known, QStringList const& names,
                  CWishes const& wishes) {
    if (known > 0) {
        QString const rest = CStatusTexts::tr("%Ln already in the list", nullptr, AsCount(known));
        return added == 0 ? CStatusTexts::tr("Nothing added: %1.").arg(rest)
                          : CStatusTexts::tr("%Ln added, %1.", nullptr, AsCount(added)).arg(rest);
    }
    if (added > 0) {
        return {};
    }
    if (wishes.m_bOtherKinds) {
        return names.size() == 1 ? CStatusTexts::tr("Nothing added: no music in “%1”.")
                                       .arg(Isolated(names.front()))
                                 : CStatusTexts::tr("Nothing added: no music in these folders.");
    }
    QString const kinds = LeftToRight(QStringLiteral("wav, mp3, aiff, aif, caf, m4a"));
    return names.size() == 1
               ? CStatusTexts::tr("Nothing added: no music in “%1” (%2).")
                     .arg(Isolated(names.front()), kinds)
               : CStatusTexts::tr("Nothing added: no music in these folders (%1).").arg(kinds);
}

QString LeftOutText(std::set<CString> const& files) {
    std::map<QString, std::size_t> counts;
    for (CString const& file : files) {
        CString extension;
        CFileUtil::GetLowerCaseFileExt(file, extension);
        ++counts[ReadableText(std::u16string(extension.Units()))];
    }
    std::vector<std::pair<QString, std::size_t>> kinds(counts.begin(), counts.end());
    std::stable_sort(kinds.begin(), kinds.end(),
                     [](auto const& a, auto const& b) { return a.second > b.second; });
    QStringList texts;
    for (auto const& [kind, count] : kinds) {
        texts << LeftToRight(QString("%1 %2").arg(kind, CountText(count)));
    }
    return CStatusTexts::tr("%Ln file(s) of other kinds were left out (%1).", nullptr,
                            AsCount(files.size()))
        .arg(WithCommas(texts));
}

QString SummaryText(CRunSummary const& summary) {
    QStringList parts{CStatusTexts::tr("%Ln analyzed in %1", nullptr, AsCount(summary.m_nHeard))
                          .arg(DurationText(summary.m_nMilliseconds)),
                      CStatusTexts::tr("%Ln stored", nullptr, AsCount(summary.m_nStored))};
    if (summary.m_nProblems > 0) {
        parts << CStatusTexts::tr("%Ln problem(s)", nullptr, AsCount(summary.m_nProblems));
    }
    return WithCommas(parts);
}

QString ClosingText(CBatchStatus const& status) {
    return CStatusTexts::tr("Still working on %Ln file(s).", nullptr, AsCount(status.m_nUndone));
}

QString HiddenText(std::size_t count) {
    return CStatusTexts::tr("%Ln file(s) hidden and left out. Nothing was deleted.", nullptr,
                            AsCount(count));
}

QString FoldersText(std::size_t count, QString const& last) {
    return count == 1 ? CStatusTexts::tr("The folder “%1” could not be read.").arg(Isolated(last))
                      : CStatusTexts::tr("%Ln folder(s) could not be read, the last of them “%1”.",
                                         nullptr, AsCount(count))
                            .arg(Isolated(last));
}
