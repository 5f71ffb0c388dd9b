// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/CString.h"
#include "support/TempFolder.h"

/// The path of `name` in `folder`, as the wide routines take it.
inline CString In(CTempFolder const& folder, char const* name) {
    return CString::FromPath(folder / name);
}
