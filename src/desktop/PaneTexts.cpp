// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/PaneTexts.h"

#include "base/EngineRate.h"
#include "desktop/Numbers.h"
#include "desktop/SoundNames.h"
#include "desktop/Texts.h"
#include "engine/envelope/Tempo.h"
#include "engine/notes/KeyDetector.h"
#include "export/TakenSong.h"
#include "song/KeyText.h"

#include <QCoreApplication>
#include <QLocale>
#include <QStringList>
#include <algorithm>
#include <cmath>

namespace {

constexpr int kSecondsPerMinute = 60;
constexpr int kTenths = 10;
constexpr double kBitsPerKilobit = 1000.0;

class CPaneTexts {
    Q_DECLARE_TR_FUNCTIONS(PaneTexts)
};

QString MinutesText(std::int64_t seconds) {
    return QStringLiteral("%L1:%L2")
        .arg(seconds / kSecondsPerMinute)
        .arg(seconds % kSecondsPerMinute, 2, 10, QLatin1Char('0'));
}

QString MinorKeyText(std::uint16_t tonic) {
    switch (tonic) {
    case 0:
        return CPaneTexts::tr("C minor");
    case 1:
        return CPaneTexts::tr("C♯ minor");
    case 2:
        return CPaneTexts::tr("D minor");
    case 3:
        return CPaneTexts::tr("E♭ minor");
    case 4:
        return CPaneTexts::tr("E minor");
    case 5:
        return CPaneTexts::tr("F minor");
    case 6:
        return CPaneTexts::tr("F♯ minor");
    case 7:
        return CPaneTexts::tr("G minor");
    case 8:
        return CPaneTexts::tr("G♯ minor");
    case 9:
        return CPaneTexts::tr("A minor");
    case 10:
        return CPaneTexts::tr("B♭ minor");
    case 11:
        return CPaneTexts::tr("B minor");
    default:
        return {};
    }
}

QString MajorKeyText(std::uint16_t tonic) {
    switch (tonic) {
    case 0:
        return CPaneTexts::tr("C major");
    case 1:
        return CPaneTexts::tr("D♭ major");
    case 2:
        return CPaneTexts::tr("D major");
    case 3:
        return CPaneTexts::tr("E♭ major");
    case 4:
        return CPaneTexts::tr("E major");
    case 5:
        return CPaneTexts::tr("F major");
    case 6:
        return CPaneTexts::tr("F♯ major");
    case 7:
        return CPaneTexts::tr("G major");
    case 8:
        return CPaneTexts::tr("A♭ major");
    case 9:
        return CPaneTexts::tr("A major");
    case 10:
        return CPaneTexts::tr("B♭ major");
    case 11:
        return CPaneTexts::tr("B major");
    default:
        return {};
    }
}

/// The key with its Camelot code.
QString KeyFact(CSongPicture const& picture) {
    QString const key = SpokenKey(picture.m_nTonic, picture.m_nMode);
    return key.isEmpty()
               ? key
               : QString("%1 (%2)").arg(
                     key, LeftToRight(CamelotName(KeyText(picture.m_nTonic, picture.m_nMode))));
}

/// The format with its bit rate: "MP3 192 kbit/s".
QString FormatFact(CSongPicture const& picture) {
    CDecodeReport const& report = picture.m_outcome.m_report;
    // What an encoder added at the ends is in the file too.
    double const seconds = std::max(report.m_dHeardSeconds, picture.Seconds());
    auto const kilobits = std::llround(BitRateOf(report, seconds) / kBitsPerKilobit);
    QString const kind = KindName(report);
    return kilobits > 0 ? CPaneTexts::tr("%1 %L2 kbit/s").arg(kind).arg(kilobits).trimmed() : kind;
}

QString BpmText(float bpm) {
    return CPaneTexts::tr("%1 BPM found").arg(QLocale().toString(bpm, 'f', kTempoDecimals));
}

QString PlacesText(std::vector<std::int64_t> const& places) {
    QStringList texts;
    for (std::int64_t const place : places) {
        texts << PlaceText(place);
    }
    return WithCommas(texts);
}

bool HasAccents(std::array<float, kAccentSteps> const& accents) {
    return std::any_of(accents.begin(), accents.end(), [](float weight) { return weight > 0.0f; });
}

} // namespace

QString PlaceText(std::int64_t sample) {
    std::int64_t const tenths = std::max<std::int64_t>(sample, 0) * kTenths / kEngineRateHz;
    return MinutesText(tenths / kTenths) + QLocale().decimalPoint() +
           QStringLiteral("%L1").arg(tenths % kTenths);
}

QString LengthText(double seconds) {
    return MinutesText(std::llround(std::max(seconds, 0.0)));
}

QString SpokenKey(std::uint16_t tonic, std::uint16_t mode) {
    switch (mode) {
    case CPfKeyDetector::kMinor:
        return MinorKeyText(tonic);
    case CPfKeyDetector::kMajor:
        return MajorKeyText(tonic);
    default:
        return {};
    }
}

QString FactsText(CSongPicture const& picture) {
    QStringList facts{FormatFact(picture), LengthText(picture.Seconds()), KeyFact(picture)};
    if (picture.m_grid.MeasureCount() > 0) {
        constexpr int kQuarters = 4; // Fixed: beats are written as quarters.
        facts << QStringLiteral("%L1/%L2").arg(picture.m_grid.BeatsPerMeasure()).arg(kQuarters);
    }
    return JoinedFacts(facts);
}

QString MusicalPlaceText(CSongPicture const& picture, std::int64_t sample) {
    QString place = PlaceText(sample);
    std::optional<CBeat> const beat = picture.m_grid.At(sample);
    if (!beat || beat->m_nMeasure == 0) {
        return place;
    }
    return JoinedFacts(
        {place, CPaneTexts::tr("measure %L1, beat %L2").arg(beat->m_nMeasure).arg(beat->m_nBeat)});
}

QString TempoLineText(CSongPicture const& picture) {
    if (picture.m_fBpm <= 0.0f) {
        return CPaneTexts::tr("No beat was found.");
    }
    return JoinedFacts({BpmText(picture.m_fBpm),
                        CPaneTexts::tr("%Ln measure(s)", nullptr, picture.m_grid.MeasureCount())});
}

QString TagText(QString const& tempo) {
    return tempo.isEmpty() ? CPaneTexts::tr("no tempo in the tag")
                           : CPaneTexts::tr("in the tag: %1").arg(tempo);
}

QString PictureText(CSongPicture const& picture) {
    QStringList sentences{JoinedFacts({FactsText(picture), TempoLineText(picture)})};
    if (picture.m_nIntroEnd > 0) {
        sentences << CPaneTexts::tr("The intro ends at %1.").arg(PlaceText(picture.m_nIntroEnd));
    }
    if (picture.m_nOutroStart > picture.m_nIntroEnd) {
        sentences
            << CPaneTexts::tr("The outro starts at %1.").arg(PlaceText(picture.m_nOutroStart));
    }
    if (!picture.m_vMixesIn.empty()) {
        sentences << CPaneTexts::tr("%Ln mix point(s) into the song: %1.", nullptr,
                                    AsCount(picture.m_vMixesIn.size()))
                         .arg(PlacesText(picture.m_vMixesIn));
    }
    if (!picture.m_vMixesOut.empty()) {
        sentences << CPaneTexts::tr("%Ln mix point(s) out of it: %1.", nullptr,
                                    AsCount(picture.m_vMixesOut.size()))
                         .arg(PlacesText(picture.m_vMixesOut));
    }
    if (!picture.m_vFades.empty()) {
        sentences << CPaneTexts::tr("The song before fades out from %1 to %2.")
                         .arg(PlaceText(picture.m_vFades.front()),
                              PlaceText(picture.m_vFades.back()));
    }
    if (HasAccents(picture.m_fAccentsA)) {
        sentences << CPaneTexts::tr("Accents A, in percent for each half beat: %1.")
                         .arg(AccentsText(picture.m_fAccentsA));
    }
    if (HasAccents(picture.m_fAccentsB)) {
        sentences << CPaneTexts::tr("Accents B: %1.").arg(AccentsText(picture.m_fAccentsB));
    }
    return sentences.join(QLatin1Char(' '));
}

QString AccentsText(std::array<float, kAccentSteps> const& accents) {
    QStringList texts;
    for (float const weight : accents) {
        texts << ShareText(weight);
    }
    return texts.join(QLatin1Char(' '));
}
