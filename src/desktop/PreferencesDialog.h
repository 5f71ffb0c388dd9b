// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/Wishes.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QVBoxLayout;

/// Asks what a person wants otherwise. It changes nothing itself.
/// Thread: main.
class CPreferencesDialog : public QDialog {
    Q_OBJECT

public:
    /// What it shows at first; `stored` is what is stored now, as text, and `file` where.
    struct CState {
        CWishes m_wishes = {};
        bool m_bRemembersLayout = true;
        QString m_sStored = {};
        QString m_sFile = {};
    };

    explicit CPreferencesDialog(CState const& state, QWidget* parent = nullptr);

    [[nodiscard]] CWishes wishes() const;
    [[nodiscard]] bool remembersLayout() const;

private:
    QVBoxLayout* addGroup(QString const& title);
    QCheckBox* addBox(QVBoxLayout* group, char const* name, QString const& text);
    void setUpList();
    void setUpTempo();
    void setUpTags();
    void setUpWindow(CState const& state);
    void setUpRange(QVBoxLayout* group);
    void setUpButtons();
    void showWishes(CWishes const& wishes, bool remembersLayout);

    QCheckBox* m_pOtherKinds = nullptr;
    QComboBox* m_pDecimals = nullptr;
    QCheckBox* m_pLikely = nullptr;
    QCheckBox* m_pRange = nullptr;
    QDoubleSpinBox* m_pSlowest = nullptr;
    QDoubleSpinBox* m_pFastest = nullptr;
    QCheckBox* m_pZeros = nullptr;
    QCheckBox* m_pOnlyLook = nullptr;
    QCheckBox* m_pWriteOtherKinds = nullptr;
    QCheckBox* m_pKeepTime = nullptr;
    QCheckBox* m_pRemember = nullptr;
};
