// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/SoundNames.h"

#include "export/SongFilter.h"
#include "song/KeyCodes.h"

QString KindName(CDecodeReport const& report) {
    switch (report.m_container) {
    case EContainer::MpegAudio:
        return QStringLiteral("MP3");
    case EContainer::AdtsAac:
        return QStringLiteral("AAC");
    case EContainer::Mp4:
        return report.m_sDecoder == "alac" ? QStringLiteral("ALAC") : QStringLiteral("AAC");
    case EContainer::Wav:
        return QStringLiteral("WAV");
    case EContainer::Wave64:
        return QStringLiteral("Wave64");
    case EContainer::Aiff:
        return QStringLiteral("AIFF");
    case EContainer::Caf:
        return QStringLiteral("CAF");
    case EContainer::Flac:
        return QStringLiteral("FLAC");
    case EContainer::Ogg:
        return QStringLiteral("Ogg");
    case EContainer::Asf:
        return QStringLiteral("WMA");
    case EContainer::Au:
        return QStringLiteral("AU");
    case EContainer::Matroska:
        return QStringLiteral("Matroska");
    case EContainer::MonkeysAudio:
        return QStringLiteral("APE");
    case EContainer::TrueAudio:
        return QStringLiteral("TTA");
    case EContainer::WavPack:
        return QStringLiteral("WavPack");
    case EContainer::Unknown:
        break;
    }
    return {};
}

QString CamelotName(std::string const& key) {
    return QString::fromStdString(CamelotCode(KeyNamed(key).value_or(CHarmony())));
}
