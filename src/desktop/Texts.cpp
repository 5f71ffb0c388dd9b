// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/Texts.h"

#include <QAction>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QLocale>
#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

namespace {

// Standard: Unicode, its annex 9, sections 2.4 to 2.6: a letter that isn't seen, and isolates.
constexpr QChar kRightToLeftMark(0x200F);
constexpr QChar kLeftToRightIsolate(0x2066);
constexpr QChar kFirstStrongIsolate(0x2068);
constexpr QChar kIsolateEnd(0x2069);

bool HasRightToLeft(QString const& text) {
    return std::any_of(text.begin(), text.end(), [](QChar letter) {
        return letter.direction() == QChar::DirR || letter.direction() == QChar::DirAL;
    });
}

class CTexts {
    Q_DECLARE_TR_FUNCTIONS(Texts)
};

/// What the system says of an error, in its own words but for the one that everybody meets.
QString SystemText(int error) {
    if (error == ENOENT) {
        return CTexts::tr("the file is gone");
    }
    return QString::fromStdString(std::generic_category().message(error));
}

QString DecodeProblemText(CDecodeReport const& report) {
    switch (report.m_problem) {
    case EDecodeProblem::None:
        break;
    case EDecodeProblem::Cancelled:
        return CTexts::tr("the analysis was stopped");
    case EDecodeProblem::SystemError:
        return SystemText(report.m_nError);
    case EDecodeProblem::IsFolder:
        return CTexts::tr("it is a folder, not a file");
    case EDecodeProblem::NotRegular:
        return CTexts::tr("it is not a regular file");
    case EDecodeProblem::Empty:
        return CTexts::tr("the file is empty");
    case EDecodeProblem::Vanished:
        return CTexts::tr("the file vanished while it was read");
    case EDecodeProblem::Changed:
        return CTexts::tr("the file changed while it was read");
    case EDecodeProblem::NotAudio:
        return CTexts::tr("it is not an audio file that can be read");
    case EDecodeProblem::OtherKind:
        return CTexts::tr("files of its kind aren't read");
    case EDecodeProblem::FreeFormat:
        return CTexts::tr("it is an MP3 of free format, which isn't read");
    case EDecodeProblem::BrokenContainer:
        return CTexts::tr("the file is damaged or incomplete");
    case EDecodeProblem::NoAudio:
        return CTexts::tr("the file holds no audio");
    case EDecodeProblem::Protected:
        return CTexts::tr("the file is protected");
    case EDecodeProblem::UnknownCodec:
        return CTexts::tr("its kind of audio can't be decoded");
    case EDecodeProblem::Undecodable:
        return CTexts::tr("its audio can't be decoded");
    case EDecodeProblem::Unmixable:
        return CTexts::tr("its audio can't be mixed down");
    case EDecodeProblem::BadRate:
        return CTexts::tr("its sample rate can't be worked with");
    case EDecodeProblem::TooLong:
        return CTexts::tr("the file is too long");
    case EDecodeProblem::NoMemory:
        return CTexts::tr("there is not enough memory for it");
    case EDecodeProblem::NoAudioForTooLong:
        return CTexts::tr("the file gave no audio for too long");
    }
    return {};
}

QString AnalysisProblemText(CAnalysisOutcome const& outcome) {
    switch (outcome.m_problem) {
    case EAnalysisProblem::None:
        break;
    case EAnalysisProblem::NotDecoded:
        return DecodeProblemText(outcome.m_report);
    case EAnalysisProblem::NoBeat:
        return CTexts::tr("no beat was found in it");
    case EAnalysisProblem::NoThread:
        return CTexts::tr("no thread could be started");
    case EAnalysisProblem::NoMemory:
        return CTexts::tr("there is not enough memory for the analysis");
    }
    return {};
}

/// Seconds heard and promised, with as many decimals as it takes to see a difference.
std::pair<QString, QString> LengthTexts(CDecodeReport const& report) {
    constexpr int kMostDecimals = 2;
    std::pair<QString, QString> texts;
    for (int decimals = 0; texts.first == texts.second && decimals <= kMostDecimals; ++decimals) {
        texts = {QLocale().toString(report.m_dHeardSeconds, 'f', decimals),
                 QLocale().toString(report.m_dPromisedSeconds, 'f', decimals)};
    }
    return texts;
}

/// What of the file could not be decoded; empty when all could.
QString DamageText(CDecodeReport const& report) {
    QString text;
    if (report.m_nBadPackets > 0) {
        text = CTexts::tr("the file is damaged, %1 of %2 packets can't be decoded")
                   .arg(QLocale().toString(report.m_nBadPackets),
                        QLocale().toString(report.m_nPackets));
    }
    if (report.EndsEarly()) {
        auto const [heard, promised] = LengthTexts(report);
        return text.isEmpty()
                   ? CTexts::tr("the file ends early, after %1 of %2 seconds").arg(heard, promised)
                   : CTexts::tr("%1, and it ends early, after %2 of %3 seconds")
                         .arg(text, heard, promised);
    }
    if (report.m_bBreaksOff) {
        return text.isEmpty() ? CTexts::tr("the file breaks off in the middle of a frame")
                              : CTexts::tr("%1, and it breaks off").arg(text);
    }
    return text;
}

/// What became of version 2.2 ids that only players know; empty when there were none.
QString ConversionText(std::vector<CWiderId> const& ids) {
    QStringList changes;
    for (CWiderId const& id : ids) {
        changes << LeftToRight(QString::fromStdString(id.m_sOld + " → " + id.m_sNew));
    }
    return changes.isEmpty() ? QString()
                             : CTexts::tr("Its tag is of version 2.3 now, and some frames got "
                                          "other names: %1")
                                   .arg(WithCommas(changes));
}

} // namespace

QString WriteProblemText(EWriteProblem problem) {
    switch (problem) {
    case EWriteProblem::None:
        break;
    case EWriteProblem::OtherExtension:
        return CTexts::tr("only MP3 files are tagged");
    case EWriteProblem::LinkTarget:
        return CTexts::tr("its name is a link to a file of another kind");
    case EWriteProblem::OtherFormat:
        return CTexts::tr("it is an MP4 file under an MP3's name");
    case EWriteProblem::NotMpegAudio:
        return CTexts::tr("it is not MPEG audio");
    case EWriteProblem::Damaged:
        return CTexts::tr("too much of it is damaged");
    case EWriteProblem::EndsEarly:
        return CTexts::tr("it ends early");
    case EWriteProblem::NotWritable:
        return CTexts::tr("the file cannot be written to");
    case EWriteProblem::FileTooLarge:
        return CTexts::tr("the file is too large");
    case EWriteProblem::FileSizeLimit:
        return CTexts::tr("it would pass the limit on file sizes");
    case EWriteProblem::TagUnreadable:
        return CTexts::tr("its tag is damaged");
    case EWriteProblem::UnknownData:
        return CTexts::tr("its tag holds data that would be lost");
    case EWriteProblem::UnknownFrameId:
        return CTexts::tr("its old tag holds frames that would be lost");
    case EWriteProblem::EncodedFrames:
        return CTexts::tr("its tag holds compressed, encrypted or grouped frames");
    case EWriteProblem::TagTooLarge:
        return CTexts::tr("its tag would become too large");
    case EWriteProblem::InUse:
        return CTexts::tr("another program is writing to it");
    case EWriteProblem::Changed:
        return CTexts::tr("the file has changed meanwhile");
    case EWriteProblem::TempoChanged:
        return CTexts::tr("its tag has got another tempo meanwhile");
    case EWriteProblem::NoTemporaryFile:
        return CTexts::tr("no file can be made in its folder");
    case EWriteProblem::OtherContent:
        return CTexts::tr("it is in a form whose tag can't be written");
    case EWriteProblem::NotProven:
        return CTexts::tr("something else would have changed with it");
    case EWriteProblem::MayNotReplace:
        return CTexts::tr("it may not be replaced in its folder");
    case EWriteProblem::DiskFull:
        return CTexts::tr("the disk is full");
    case EWriteProblem::NoMemory:
        return CTexts::tr("there is not enough memory");
    case EWriteProblem::WriteFailed:
        return CTexts::tr("writing to the disk failed");
    }
    return {};
}

QString ReadableText(std::u16string const& text) {
    QString readable = QString::fromStdU16String(text);
    for (qsizetype i = 0; i < readable.size(); ++i) {
        if (readable[i].isHighSurrogate() && i + 1 < readable.size() &&
            readable[i + 1].isLowSurrogate()) {
            ++i;
        } else if (readable[i].isSurrogate()) {
            readable[i] = QChar::ReplacementCharacter;
        } else if (readable[i].category() == QChar::Other_Control) {
            readable[i] = QLatin1Char(' ');
        }
    }
    return readable;
}

QString PlainTip(QString const& text) {
    return QLatin1String("<qt style='white-space: pre-wrap'>") + text.toHtmlEscaped() +
           QLatin1String("</qt>");
}

QString NoteText(CRowState const& row) {
    if (row.m_writeProblem == EWriteProblem::None) {
        return ConversionText(row.m_vConverted);
    }
    return CTexts::tr("Tempo not stored: %1").arg(WriteProblemText(row.m_writeProblem));
}

QString ProblemText(CRowState const& row) {
    QStringList sentences;
    if (row.m_outcome.m_problem != EAnalysisProblem::None) {
        sentences << CTexts::tr("No tempo: %1").arg(AnalysisProblemText(row.m_outcome));
    }
    if (row.m_outcome.m_problem != EAnalysisProblem::NotDecoded &&
        row.m_outcome.m_report.IsDamaged()) {
        sentences << CTexts::tr("Analyzed in part: %1").arg(DamageText(row.m_outcome.m_report));
    }
    // Where there is no tempo, nobody asks whether it was stored.
    if (row.m_outcome.m_problem == EAnalysisProblem::None && IsStoreFailure(row.m_writeProblem)) {
        sentences << NoteText(row);
    }
    return WithSemicolons(sentences);
}

QString PlainActionText(QAction const& action) {
    QString text = action.text().remove(QLatin1Char('&'));
    text.remove(QStringLiteral("…"));
    return text.trimmed();
}

QString FileNameOf(QString const& path) {
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

QString Isolated(QString const& name) {
    bool const isMixed = QGuiApplication::isRightToLeft() || HasRightToLeft(name);
    return isMixed && !name.isEmpty() ? kFirstStrongIsolate + name + kIsolateEnd : name;
}

QString LeftToRight(QString const& text) {
    bool const isMixed = QGuiApplication::isRightToLeft();
    return isMixed && !text.isEmpty() ? kLeftToRightIsolate + text + kIsolateEnd : text;
}

QString ShortcutText(QKeySequence const& keys) {
    return LeftToRight(keys.toString(QKeySequence::NativeText));
}

QString WithCommas(QStringList const& parts) {
    return parts.join(CTexts::tr(", ", "between parts of a sentence"));
}

QString WithSemicolons(QStringList const& parts) {
    return parts.join(CTexts::tr("; ", "between parts of a sentence"));
}

QString JoinedFacts(QStringList facts) {
    facts.removeAll(QString());
    std::transform(facts.begin(), facts.end(), facts.begin(), Isolated);
    QString const text = facts.join(QStringLiteral(" · "));
    // Labels take their direction from the first letter that stands in no isolate.
    return QGuiApplication::isRightToLeft() && !text.isEmpty() ? kRightToLeftMark + text : text;
}
