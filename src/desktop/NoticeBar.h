// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QFrame>
#include <QString>
#include <functional>
#include <vector>

class QLabel;
class QPushButton;

/// What a notice is about: a later one about the same takes the place of the earlier.
enum class ENotice { Closing, Folders, Added, OtherKinds, Exported, Hidden, HomePage, Undone };

/// One sentence that stays until it is read, and what can be done about it.
struct CNotice {
    /// A button; the notice goes when it is pressed.
    struct CChoice {
        QString m_sText;
        std::function<void()> m_act; ///< May be empty: the button only takes note.
    };

    ENotice m_about = ENotice::Added;
    QString m_sText;
    std::vector<CChoice> m_vChoices; ///< One or two.
};

/// A bar over the table for what must not be missed. It shows the latest notice that was not read
/// yet; the ones below return when that is gone. A screen reader takes it for an alert.
/// Thread: main.
class CNoticeBar : public QFrame {
    Q_OBJECT

public:
    explicit CNoticeBar(QWidget* parent = nullptr);

    /// Shows `notice` in front of the others.
    void post(CNotice notice);

    /// Takes back the notice about this; nothing happens when there is none.
    void withdraw(ENotice about);

    /// Is a notice about this waiting to be read?
    [[nodiscard]] bool has(ENotice about) const;

    /// Gives the keyboard to the last button, the one that changes nothing.
    void focusLastButton();

signals:
    /// The bar has gone while one of its buttons had the keyboard.
    void focusLeft();

protected:
    void changeEvent(QEvent* event) override;

private:
    void tint();
    void remove(ENotice about);
    void showLatest();
    void showButtons(CNotice const& notice);
    void press(std::size_t choice);
    void announce();

    std::vector<CNotice> m_vNotices; // The latest comes last.
    QLabel* m_pSign;
    QLabel* m_pText;
    std::vector<QPushButton*> m_vButtons;
};
