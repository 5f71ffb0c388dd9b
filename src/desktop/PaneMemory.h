// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <optional>

/// Whether the pane is to be open, as the user said last; nothing as long as nobody has said so.
/// Thread: main.
std::optional<bool> RememberedPane();

/// Keeps it for the next start, in the user's settings.
void RememberPane(bool isOpen);
