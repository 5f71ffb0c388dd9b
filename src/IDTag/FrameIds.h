// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

/// The version 2.3 id (four characters) of the version 2.2 id in the first three characters of
/// `oldId`; null when there is none.
char const* FindV3FrameId(char const* oldId);
