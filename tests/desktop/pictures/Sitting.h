// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/BPMController.h"
#include "desktop/BpmWindow.h"
#include "desktop/QtBpmView.h"

#include <QString>
#include <functional>
#include <string>
#include <vector>

class CFileTableView;
class CSongPane;
class QDialog;
class QMenu;
class QWidget;

/// A window that is brought from one state to the next and drawn in each, as FOLDER/STATE.png.
/// Every step leaves it as it was, all rows shown, but for what its comment says. Thread: main.
class CSitting {
public:
    explicit CSitting(QString folder);
    ~CSitting();
    CSitting(CSitting const&) = delete;
    CSitting& operator=(CSitting const&) = delete;

    void DrawEmpty();

    /// Files are held over the window: "drag".
    void DrawDrag(std::string const& path);

    /// The panel of "Only look, write nothing" is opened in `folder`: "open". Nothing is written
    /// from then on.
    void DrawOpenPanel(std::string const& folder);

    /// Songs are analysed: "running", "notice" when the window won't be closed, "ended". Those with
    /// a tempo in their tag aren't analysed.
    void Run(std::vector<std::string> const& songs);

    /// The pane is opened: "reading", and one of its songs is shown, as `state`.
    void Look(char const* state);

    /// The keyboard is in the pane, the song plays, a tempo is tapped, the pointer asks for the
    /// place, a file can't be heard: "pane", "playing", "taps", "tip", "unheard".
    void DrawSong();

    void ShutPane();

    /// "filter", "problems".
    void DrawFilters();

    /// "columns", with the pane, which is opened.
    void DrawColumns();

    /// "typing", in a table that is sorted by tempo.
    void DrawTyping();

    /// Tempos are doubled, by hand, undone: "corrected", "hand", "undone". They are doubled at the
    /// end.
    void DrawCorrections();

    /// Rows are hidden: "hidden".
    void DrawHidden();

    /// "menu", "corrections", "further", "row".
    void DrawMenus();

    /// Songs without a beat grid are taken along with one: "ungathered", "export", "exported".
    void DrawExport(QString const& file);

    /// All are analysed again: the question before tempos are replaced, what a stop leaves, and at
    /// the end what is worth a look: "question", "stopped", "review".
    void DrawAgain();

    /// As small as it gets: "small".
    void DrawSmall();

    /// What `action` opens.
    void DrawDialog(char const* action, char const* state);

    /// Files of `folder` were left out: "kinds". They are added then, and "stored" is what the
    /// preferences say of it.
    void DrawKinds(std::string const& folder);

    /// `folder` has one that can't be read: "unread", and the list of such as "folders".
    void DrawUnread(std::string const& folder);

private:
    /// What is done with a dialog while it is open.
    using Use = std::function<void(QDialog&)>;

    CFileTableView* Table();
    CSongPane* Pane();
    void Act(char const* name);
    void ClickChip(char const* name);
    void DrawChip(char const* chip, char const* state);
    void UseDialog(Use use);
    void Choose(int row, int column);
    void ChooseAll();
    void ChooseSong();
    void OpenPane();
    void Settle(std::function<void()> const& change);
    void WaitForEnd();
    void WaitForRows(int rows);
    void DrawMenu(QMenu& menu, char const* state);
    void DrawRowMenu();
    void DrawTip(char const* state);
    void DrawNow(QWidget& widget, char const* state);
    void Draw(QWidget& widget, char const* state);

    QString m_sFolder;
    QtBpmView m_view;
    BPMController m_controller{m_view};
    BpmWindow m_window{m_controller};
};
