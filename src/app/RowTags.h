// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/BPMFile.h"
#include "base/CString.h"

/// Fills a new row from its file's tag. A tempo text above 0 makes the row done; only a file with
/// a tempo text of any kind is listed under its tag's title, any other under its file name. What
/// can't be read leaves its text empty.
/// Returns: the tempo text of the ID3v2 tag alone, which a later write is held against.
/// Thread: any, on a row that nobody else sees yet.
CString ReadRowTags(CBPMFile& row);
