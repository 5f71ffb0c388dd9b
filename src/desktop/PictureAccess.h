// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

/// Lets screen readers meet every `CPictureView` as a slider whose value is a place in the song, in
/// words with measure and beat. More than one call does no harm.
/// Thread: main.
void InstallPictureAccess();
