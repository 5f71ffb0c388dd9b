// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>
#include <QList>
#include <QStringList>

class QDialogButtonBox;

/// Shows rows of text, to be read, selected and copied, and to be closed.
/// Thread: main.
class CListDialog : public QDialog {
    Q_OBJECT

public:
    /// Each of `rows` has as many texts as there are `heads`.
    CListDialog(QString const& title, QStringList const& heads, QList<QStringList> const& rows,
                QWidget* parent = nullptr);

    /// Adds a button beside the one that closes; the dialog is rejected by that one, and accepted
    /// by this one.
    void addChoice(QString const& text);

private:
    QDialogButtonBox* m_pButtons;
};
