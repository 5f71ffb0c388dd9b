// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/DesktopNote.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QStringList>
#include <QVariantMap>

namespace {

// Standard: Desktop Notifications Specification 1.2, section 9, "D-BUS Protocol".
constexpr char kService[] = "org.freedesktop.Notifications";
constexpr char kObject[] = "/org/freedesktop/Notifications";
constexpr int kAsTheDesktopLikes = -1; // Standard: likewise, of the time that it is shown.
constexpr unsigned kReplacesNone = 0;  // Standard: likewise.

} // namespace

// The text is no mark-up, though a desktop may take it for such.
void ShowDesktopNote(QString const& title, QString const& text, QDBusConnection const& bus) {
    if (!bus.isConnected()) {
        return;
    }
    QDBusMessage note = QDBusMessage::createMethodCall(kService, kObject, kService, "Notify");
    note << QStringLiteral("Tactus") << kReplacesNone << QStringLiteral("tactus") << title
         << text.toHtmlEscaped() << QStringList()
         << QVariantMap{{"desktop-entry", QStringLiteral("tactus-desktop")}} << kAsTheDesktopLikes;
    bus.send(note);
}

void ShowDesktopNote(QString const& title, QString const& text) {
    ShowDesktopNote(title, text, QDBusConnection::sessionBus());
}
