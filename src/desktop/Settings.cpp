// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/Settings.h"

#include "song/TagTempo.h"

#include <QFile>
#include <QSettings>
#include <QStringList>
#include <algorithm>

namespace {

constexpr char kPaneOpen[] = "window/pane";
constexpr char kRemembers[] = "window/remember";
constexpr char kSize[] = "window/size";
constexpr char kColumns[] = "window/columns";
constexpr char kOtherKinds[] = "list/otherKinds";
constexpr char kWriteOtherKinds[] = "tags/otherKinds";
constexpr char kOnlyLook[] = "tags/onlyLook";
constexpr char kKeepTime[] = "tags/keepTime";
constexpr char kZeros[] = "tempo/zeros";
constexpr char kLikelyOctave[] = "tempo/likely";
constexpr char kDecimalsKey[] = "tempo/decimals";
constexpr char kSlowest[] = "tempo/slowest";
constexpr char kFastest[] = "tempo/fastest";

class CUserSettings : public QSettings {
public:
    CUserSettings()
        : QSettings(QSettings::IniFormat, QSettings::UserScope, "tactus", "tactus-desktop") {}

    template <typename Value>
    [[nodiscard]] Value Get(char const* key, Value factory) const {
        return contains(key) ? value(key).value<Value>() : factory;
    }

    /// What is as the factory has it isn't stored.
    template <typename Value>
    void Set(char const* key, Value const& wanted, Value const& factory) {
        if (!(wanted == factory)) {
            setValue(key, wanted);
        } else if (contains(key)) {
            remove(key);
        }
    }
};

} // namespace

CSettings CSettings::Factory() {
    CSettings settings;
    settings.m_bIgnored = true;
    return settings;
}

// The file may have been edited by hand: numbers that can't be meant are not taken.
CWishes CSettings::Wishes() const {
    CWishes wishes;
    if (m_bIgnored) {
        return wishes;
    }
    CUserSettings const file;
    wishes.m_bOtherKinds = file.Get(kOtherKinds, wishes.m_bOtherKinds);
    wishes.m_bWriteOtherKinds = file.Get(kWriteOtherKinds, wishes.m_bWriteOtherKinds);
    wishes.m_bOnlyLook = file.Get(kOnlyLook, wishes.m_bOnlyLook);
    wishes.m_bKeepTime = file.Get(kKeepTime, wishes.m_bKeepTime);
    wishes.m_bZeros = file.Get(kZeros, wishes.m_bZeros);
    wishes.m_bLikelyOctave = file.Get(kLikelyOctave, wishes.m_bLikelyOctave);
    wishes.m_nDecimals = std::clamp(file.Get(kDecimalsKey, wishes.m_nDecimals), 0, 2);
    double const slowest = file.Get(kSlowest, 0.0);
    double const fastest = file.Get(kFastest, 0.0);
    if (slowest >= kSlowestTagBpm && fastest >= 2 * slowest && fastest <= kFastestTagBpm) {
        wishes.m_dSlowest = slowest;
        wishes.m_dFastest = fastest;
    }
    return wishes;
}

void CSettings::SetWishes(CWishes const& wishes) {
    if (m_bIgnored) {
        return;
    }
    CWishes const factory;
    CUserSettings file;
    file.Set(kOtherKinds, wishes.m_bOtherKinds, factory.m_bOtherKinds);
    file.Set(kWriteOtherKinds, wishes.m_bWriteOtherKinds, factory.m_bWriteOtherKinds);
    file.Set(kOnlyLook, wishes.m_bOnlyLook, factory.m_bOnlyLook);
    file.Set(kKeepTime, wishes.m_bKeepTime, factory.m_bKeepTime);
    file.Set(kZeros, wishes.m_bZeros, factory.m_bZeros);
    file.Set(kLikelyOctave, wishes.m_bLikelyOctave, factory.m_bLikelyOctave);
    file.Set(kDecimalsKey, wishes.m_nDecimals, factory.m_nDecimals);
    file.Set(kSlowest, wishes.m_dSlowest, factory.m_dSlowest);
    file.Set(kFastest, wishes.m_dFastest, factory.m_dFastest);
}

std::optional<bool> CSettings::PaneOpen() const {
    CUserSettings const file;
    return !m_bIgnored && file.contains(kPaneOpen) ? std::optional(file.value(kPaneOpen).toBool())
                                                   : std::nullopt;
}

void CSettings::SetPaneOpen(bool isOpen) {
    if (!m_bIgnored) {
        CUserSettings().setValue(kPaneOpen, isOpen);
    }
}

bool CSettings::RemembersLayout() const {
    return !m_bIgnored && CUserSettings().Get(kRemembers, true);
}

void CSettings::SetRemembersLayout(bool isWanted) {
    if (m_bIgnored) {
        return;
    }
    CUserSettings file;
    file.Set(kRemembers, isWanted, true);
    if (!isWanted) {
        file.Set(kSize, QSize(), QSize());
        file.Set(kColumns, QString(), QString());
    }
}

std::optional<QSize> CSettings::WindowSize() const {
    QSize const size = RemembersLayout() ? CUserSettings().Get(kSize, QSize()) : QSize();
    return size.isValid() ? std::optional(size) : std::nullopt;
}

void CSettings::SetWindowSize(QSize size) {
    if (RemembersLayout()) {
        CUserSettings().setValue(kSize, size);
    }
}

QString CSettings::Columns() const {
    return RemembersLayout() ? CUserSettings().Get(kColumns, QString()) : QString();
}

void CSettings::SetColumns(QString const& columns) {
    if (RemembersLayout()) {
        CUserSettings().Set(kColumns, columns, QString());
    }
}

QString CSettings::Stored() const {
    QStringList lines;
    if (!m_bIgnored) {
        CUserSettings const file;
        for (QString const& key : file.allKeys()) {
            lines << QString("%1 = %2").arg(key, file.value(key).toString());
        }
    }
    return lines.join(QLatin1Char('\n'));
}

QString CSettings::FilePath() {
    return CUserSettings().fileName();
}

void CSettings::Clear() {
    if (!m_bIgnored) {
        CUserSettings file;
        file.clear();
        file.sync();
        QFile::remove(file.fileName());
    }
}
