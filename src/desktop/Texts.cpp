// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/Texts.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QStringList>
#include <QStringView>
#include <array>

namespace {

class CTexts {
    Q_DECLARE_TR_FUNCTIONS(Texts)
};

/// What `app` and `platform` say in English, for the translations to collect. Numbers are %1 and
/// %2.
[[maybe_unused]] constexpr std::array kReasons{
    QT_TRANSLATE_NOOP("Reasons", "is a folder, not a file"),
    QT_TRANSLATE_NOOP("Reasons", "is not a regular file"),
    QT_TRANSLATE_NOOP("Reasons", "the file is empty"),
    QT_TRANSLATE_NOOP("Reasons", "vanished while it was read"),
    QT_TRANSLATE_NOOP("Reasons", "changed while it was read"),
    QT_TRANSLATE_NOOP("Reasons", "is not an audio file that can be read"),
    QT_TRANSLATE_NOOP("Reasons", "holds no audio"),
    QT_TRANSLATE_NOOP("Reasons", "holds audio of a kind that can't be decoded"),
    QT_TRANSLATE_NOOP("Reasons", "holds audio that can't be decoded"),
    QT_TRANSLATE_NOOP("Reasons", "holds audio that can't be mixed down"),
    QT_TRANSLATE_NOOP("Reasons", "has a sample rate that can't be worked with"),
    QT_TRANSLATE_NOOP("Reasons", "is too long"),
    QT_TRANSLATE_NOOP("Reasons", "is too long for the memory at hand"),
    QT_TRANSLATE_NOOP("Reasons", "there is not enough memory for it"),
    QT_TRANSLATE_NOOP("Reasons", "gave no audio for too long"),
    QT_TRANSLATE_NOOP("Reasons", "no beat was found in it"),
    QT_TRANSLATE_NOOP("Reasons", "no thread could be started"),
    QT_TRANSLATE_NOOP("Reasons", "is damaged: %1 of %2 packets can't be decoded"),
    QT_TRANSLATE_NOOP("Reasons",
                      "is damaged: %1 of %2 packets can't be decoded, and it breaks off"),
    QT_TRANSLATE_NOOP("Reasons", "breaks off in the middle of a frame"),
};

/// A reason as a part of a sentence in the user's language. Its numbers and what the decoding
/// library adds in brackets stay; a reason that no translation knows stays as it is.
QString FailureText(std::string const& reason) {
    QString text = QString::fromStdString(reason);
    qsizetype const bracket = text.indexOf(" (");
    QString const detail = bracket >= 0 ? text.mid(bracket) : QString();
    text.chop(detail.size());
    static QRegularExpression const damage("^(is damaged: )(\\d+)( of )(\\d+)( .*)$");
    QRegularExpressionMatch const found = damage.match(text);
    if (found.hasMatch()) {
        text = found.captured(1) + "%1" + found.captured(3) + "%2" + found.captured(5);
    }
    QString shown = QCoreApplication::translate("Reasons", text.toUtf8().constData());
    if (found.hasMatch()) {
        shown = shown.arg(found.captured(2), found.captured(4));
    }
    return shown + detail;
}

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

} // namespace

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
        return {};
    }
    return CTexts::tr("Tempo not stored: %1").arg(WriteProblemText(row.m_writeProblem));
}

QString ProblemText(CRowState const& row) {
    QStringList sentences;
    if (!row.m_sFailure.empty()) {
        sentences << CTexts::tr("No tempo: %1").arg(FailureText(row.m_sFailure));
    }
    if (!row.m_sDamage.empty()) {
        sentences << CTexts::tr("Analyzed in part: %1").arg(FailureText(row.m_sDamage));
    }
    if (IsStoreFailure(row.m_writeProblem)) {
        sentences << NoteText(row);
    }
    return sentences.join("; ");
}

QString FileNameOf(QString const& path) {
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}
