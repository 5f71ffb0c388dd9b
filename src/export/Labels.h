// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

struct CTakenSong;

/// A song as a label track of Audacity (Audacity manual, "Importing and Exporting Labels"): on each
/// line start and end in seconds and a text, between tabs. A beat is a point named "MEASURE.BEAT",
/// counted from 1, those before the first downbeat in measure 0; a downbeat is "MEASURE.1
/// downbeat". Intro and outro are regions. Ascending by start; empty without beats and sections.
[[nodiscard]] std::string LabelsOf(CTakenSong const& song);
