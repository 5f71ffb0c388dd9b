// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/notes/NoteSearch.h"

/// `SearchNotes` with eight samples or eight notes at a time. Same notes, same bits.
/// Needs AVX2: ask `UseAvx2` first. Not built for other processors than x86-64.
void SearchNotesLanes(CNoteSearch const& search, CPfNoteMap* map);
