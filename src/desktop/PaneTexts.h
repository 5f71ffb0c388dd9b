// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/SongPicture.h"

#include <QString>
#include <cstdint>

/// What the pane says of a song in words and numbers. Everything is translated and follows the
/// user's locale.
/// Thread: main.

/// A place as minutes, seconds and tenths: "4:48.2". Negative ones count as 0.
QString PlaceText(std::int64_t sample);

/// A length as minutes and whole seconds: "4:48".
QString LengthText(double seconds);

/// A key in plain words: "A minor"; empty when there is none.
QString SpokenKey(std::uint16_t tonic, std::uint16_t mode);

/// Kind, bit rate, length, key and metre in one line.
QString FactsText(CSongPicture const& picture);

/// A place with its measure and beat: "0:12.4 · measure 7, beat 1".
QString MusicalPlaceText(CSongPicture const& picture, std::int64_t sample);

/// Tempo and measures in one line.
QString TempoLineText(CSongPicture const& picture);

/// What the file's tag says, if anything: "in the tag: 94.99".
QString TagText(QString const& tempo);

/// What the picture shows, for those who don't see it.
QString PictureText(CSongPicture const& picture);

/// The weights of the half beats of a measure, in percent.
QString AccentsText(std::array<float, kAccentSteps> const& accents);
