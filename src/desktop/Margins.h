// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

constexpr int kTextMarginX = 9; // Fixed: pixels; texts stand above or below those of the table.
