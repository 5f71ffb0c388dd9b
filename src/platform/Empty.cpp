// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

namespace {
[[maybe_unused]] constexpr int kEmptyRoom = 0;
}
