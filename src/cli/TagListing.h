// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "IDTag/ID3Tag.h"

#include <string>

/// What an opened tag holds, frame by frame; `status` is what opening came to. A frame's size is
/// that of its body as the tag keeps it: decoded, and an old picture in its new form.

/// One JSON object and a line end; the text of a frame without one is null.
std::string TagAsJson(CID3Tag const& tag, CStatus status);

/// Lines for a person; nothing when the tag couldn't be read.
std::string TagAsText(CID3Tag const& tag, CStatus status);
