// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

inline constexpr char kTempoFrameId[] = "TBPM"; // Standard: ID3v2.3.0, section 4.2.1.
inline constexpr char kKeyFrameId[] = "TKEY";   // Standard: likewise.

/// The version 2.3 id (four characters) of the version 2.2 id in the first three characters of
/// `oldId`; null when there is none.
char const* FindV3FrameId(char const* oldId);

/// The same by a wider table: ids that players have added to version 2.2 and later gave a name of
/// four characters, with the same body. Null when the id is in neither table.
char const* FindWiderV3FrameId(char const* oldId);
