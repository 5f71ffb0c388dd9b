// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/PaneMemory.h"

#include <QSettings>

namespace {

constexpr char kKey[] = "pane/open";

class CUserSettings : public QSettings {
public:
    CUserSettings()
        : QSettings(QSettings::IniFormat, QSettings::UserScope, "tactus", "tactus-desktop") {}
};

} // namespace

std::optional<bool> RememberedPane() {
    CUserSettings const settings;
    return settings.contains(kKey) ? std::optional(settings.value(kKey).toBool()) : std::nullopt;
}

void RememberPane(bool isOpen) {
    CUserSettings().setValue(kKey, isOpen);
}
