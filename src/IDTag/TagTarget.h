// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/CString.h"

/// The file itself: `path`, or what the symbolic link there leads to.
CString FileBehind(CString const& path);
