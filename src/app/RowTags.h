// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/BPMFile.h"
#include "app/Wishes.h"
#include "base/CString.h"

/// Fills a new row from its file's tag. A tempo text above 0 makes the row done; only a file with
/// a tempo text of any kind is listed under its tag's title, any other under its file name. What
/// can't be read leaves its text empty.
/// When more than the list's own kinds, or their tags, are wished for, what people mean by title,
/// artist and tempo is read from every file but an MP3.
/// Returns: the tempo text that a later write is held against: of the ID3v2 tag alone or, in files
/// of other kinds whose tags can be written, of that other reading, also when the row shows nothing
/// of it.
/// Thread: any, on a row that nobody else sees yet.
CString ReadRowTags(CBPMFile& row, CWishes const& wishes = {});

/// The tempo that a row of the file at `path` shows for the text in its tag; empty for none. The
/// text itself for an MP3 file, a tempo with two decimals for others.
CString TempoOfTagText(CString const& path, CString const& text);
