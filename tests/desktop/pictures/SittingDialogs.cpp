// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// What opens over the window: menus, dialogs and notices.

#include "desktop/ExportDialog.h"
#include "desktop/FileTableView.h"
#include "desktop/NoticeBar.h"
#include "desktop/pictures/Sitting.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QFileDialog>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <utility>

namespace {

constexpr int kHearingMs = 60'000; // Fixed: for all songs.
constexpr int kNoticeMs = 5000;    // Fixed: until a notice comes.
constexpr int kMenuMs = 500;       // Fixed: until a menu is open.

} // namespace

void CSitting::DrawOpenPanel(std::string const& folder) {
    UseDialog([this, folder](QDialog& dialog) {
        auto& panel = dynamic_cast<QFileDialog&>(dialog);
        panel.setDirectory(QString::fromStdString(folder));
        QTest::qWait(kMenuMs); // folders are read on a thread of their own
        Draw(panel, "open");
        panel.reject();
    });
    m_window.findChild<QPushButton*>("emptyOnlyLook")->click();
}

void CSitting::DrawMenus() {
    std::pair<char const*, char const*> const menus[] = {
        {"menu", "menu"}, {"correctionMenu", "corrections"}, {"columnsMenu", "further"}};
    for (auto const& [name, state] : menus) {
        auto* menu = m_window.findChild<QMenu*>(name);
        menu->popup(m_window.mapToGlobal(QPoint()));
        DrawMenu(*menu, state);
    }
    DrawRowMenu();
}

void CSitting::DrawMenu(QMenu& menu, char const* state) {
    QTest::keyClick(&menu, Qt::Key_Down); // its first entry is chosen
    Draw(menu, state);
    menu.hide();
}

void CSitting::DrawRowMenu() {
    QTimer::singleShot(kMenuMs, &m_window, [this] {
        if (auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
            DrawMenu(*menu, "row");
        }
    });
    QPoint const place = Table()->visualRect(Table()->currentIndex()).center();
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, Table()->mapToGlobal(place));
    QApplication::sendEvent(Table()->viewport(), &event);
}

void CSitting::DrawExport(QString const& file) {
    UseDialog([this, file](QDialog& opened) {
        auto& dialog = dynamic_cast<CExportDialog&>(opened);
        auto* formats = dialog.findChild<QComboBox*>("exportFormat");
        formats->setCurrentIndex(formats->findText("(xml)", Qt::MatchContains));
        auto* gather = dialog.findChild<QPushButton*>("exportGather");
        auto* which = dialog.findChild<QComboBox*>("exportWhich");
        which->setCurrentIndex(which->count() - 1); // all rows
        (void)QTest::qWaitFor([gather] { return gather->isVisible(); }, kHearingMs);
        Draw(dialog, "ungathered");
        gather->click();
        auto const* save = dialog.findChild<QPushButton*>("exportSave");
        (void)QTest::qWaitFor([save] { return save->isEnabled(); }, kHearingMs);
        Draw(dialog, "export");
        if (dialog.save(file)) {
            dialog.accept();
        }
    });
    Act("actionExport");
    Draw(m_window, "exported");
    m_window.findChild<QPushButton*>("noticeButton0")->click();
}

void CSitting::DrawAgain() {
    UseDialog([this](QDialog& dialog) {
        Draw(dialog, "question");
        auto& question = dynamic_cast<QMessageBox&>(dialog);
        for (QAbstractButton* button : question.buttons()) {
            if (question.buttonRole(button) == QMessageBox::AcceptRole) {
                button->click();
            }
        }
    });
    auto const* stop = m_window.findChild<QAction*>("actionStop");
    Act("actionRescan");
    (void)QTest::qWaitFor([stop] { return stop->isEnabled(); }, kNoticeMs);
    Act("actionStop");
    WaitForEnd();
    Draw(m_window, "stopped");
    Act("actionAnalyze");
    (void)QTest::qWaitFor([stop] { return stop->isEnabled(); }, kNoticeMs);
    WaitForEnd();
    DrawChip("chipToReview", "review");
}

void CSitting::DrawDialog(char const* action, char const* state) {
    UseDialog([this, state](QDialog& dialog) {
        Draw(dialog, state);
        dialog.reject();
    });
    Act(action);
}

void CSitting::DrawKinds(std::string const& folder) {
    m_window.addPaths({folder});
    auto* notices = m_window.findChild<CNoticeBar*>();
    (void)QTest::qWaitFor([notices] { return notices->has(ENotice::OtherKinds); }, kNoticeMs);
    Draw(m_window, "kinds");
    int const rows = Table()->model()->rowCount();
    m_window.findChild<QPushButton*>("noticeButton0")->click();
    (void)QTest::qWaitFor([&] { return Table()->model()->rowCount() > rows; }, kNoticeMs);
    WaitForEnd();
    DrawDialog("actionPreferences", "stored");
}

void CSitting::DrawUnread(std::string const& folder) {
    m_window.addPaths({folder});
    auto* notices = m_window.findChild<CNoticeBar*>();
    (void)QTest::qWaitFor([notices] { return notices->has(ENotice::Folders); }, kNoticeMs);
    Draw(m_window, "unread");
    UseDialog([this](QDialog& dialog) {
        Draw(dialog, "folders");
        dialog.reject();
    });
    m_window.findChild<QPushButton*>("noticeButton0")->click();
}
