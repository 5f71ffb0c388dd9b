// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class QDBusConnection;

/// Has the desktop show a note for a while. Nobody is waited for, and a desktop that shows no notes
/// is none the worse.
/// Thread: main.
void ShowDesktopNote(QString const& title, QString const& text, QDBusConnection const& bus);

/// The same over the session's bus.
void ShowDesktopNote(QString const& title, QString const& text);
