// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Draws the window in its states, to be looked at and for the guide:
//
//     desktop_pictures light|dark|contrast LOCALE FOLDER SONG...
//
// empty, preferences, running, notice, done, filter, problems, typing, columns, menu, corrections,
// further (the menu of columns), row (its own menu), ungathered, export and keys go into FOLDER,
// each a PNG. QT_SCALE_FACTOR makes them larger.

#include "Language.h"
#include "app/BPMController.h"
#include "desktop/BpmWindow.h"
#include "desktop/ColumnsMenu.h"
#include "desktop/FileTableView.h"
#include "desktop/NoticeBar.h"
#include "desktop/Outlines.h"
#include "desktop/QtBpmView.h"
#include "desktop/SongPane.h"
#include "platform/AudioSetup.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QMenu>
#include <QPalette>
#include <QProgressBar>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr int kPatienceMs = 60'000; // Fixed: for all songs.
constexpr int kStartMs = 3000;      // Fixed: until the first of them is heard.
constexpr int kSettleMs = 15'000;   // Fixed: until the pane shows its song.
constexpr int kUnderWay = 20;       // Fixed: percent, of a run that is shown.
constexpr int kWidth = 760;         // Fixed: of the window, in pixels, as at the first start.
constexpr int kHeight = 620;        // Fixed: likewise.
constexpr int kLowHeight = 360;     // Fixed: of the window without its pane.
constexpr int kWideWidth = 900;     // Fixed: of the window with more columns.
constexpr int kSongRow = 3;         // Fixed: whose song is shown; the last one of fewer.
constexpr int kMeasures = 8;        // Fixed: passed before it is.
constexpr int kArguments = 4;       // Fixed: in front of the songs.

QStringList const kOwnKinds{"wav", "mp3", "aiff", "aif", "caf", "m4a"}; // that the window lists

using CColours = std::initializer_list<std::pair<QPalette::ColorRole, char const*>>;

QPalette Coloured(CColours colours, char const* faded) {
    QPalette palette;
    for (auto const& [role, colour] : colours) {
        palette.setColor(role, QColor(colour));
    }
    for (auto const role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, QColor(faded));
    }
    return palette;
}

/// The colours of dark desktops and of those for eyes that need contrast. Placeholders are left
/// unset, as such desktops do.
QPalette PaletteOf(std::string const& name) {
    if (name == "dark") {
        return Coloured({{QPalette::Window, "#2a2e32"},
                         {QPalette::WindowText, "#fcfcfc"},
                         {QPalette::Base, "#1b1e20"},
                         {QPalette::AlternateBase, "#232629"},
                         {QPalette::Text, "#fcfcfc"},
                         {QPalette::Button, "#31363b"},
                         {QPalette::ButtonText, "#fcfcfc"},
                         {QPalette::Highlight, "#3daee9"},
                         {QPalette::HighlightedText, "#000000"}},
                        "#888c90");
    }
    return Coloured({{QPalette::Window, "#000000"},
                     {QPalette::WindowText, "#ffffff"},
                     {QPalette::Base, "#000000"},
                     {QPalette::AlternateBase, "#000000"},
                     {QPalette::Text, "#ffffff"},
                     {QPalette::Button, "#000000"},
                     {QPalette::ButtonText, "#ffff00"},
                     {QPalette::Highlight, "#ffff00"},
                     {QPalette::HighlightedText, "#000000"}},
                    "#b0b0b0");
}

/// A window that is brought from one state to the next.
class CSitting {
public:
    explicit CSitting(QString folder) : m_sFolder(std::move(folder)) {
        m_controller.awakeFromNib();
        m_view.setWindow(&m_window);
        m_window.resize(kWidth, kLowHeight);
        m_window.show();
        (void)QTest::qWaitForWindowActive(&m_window);
    }

    ~CSitting() {
        m_controller.applicationWillTerminate();
        m_view.setWindow(nullptr);
    }

    CSitting(CSitting const&) = delete;
    CSitting& operator=(CSitting const&) = delete;

    void Empty() { Draw(m_window, "empty"); }

    /// While the songs are analysed: the window runs, and then it won't be closed. Songs with a
    /// tempo in their tag aren't.
    void Run(std::vector<std::string> const& songs) {
        m_window.addPaths(songs);
        auto* progress = m_window.findChild<QProgressBar*>();
        if (!QTest::qWaitFor([this] { return m_controller.status().m_bRunning; }, kStartMs)) {
            return; // all have their tempo
        }
        auto const isUnderWay = [this, progress] {
            return progress->value() >= kUnderWay || !m_controller.status().m_bRunning;
        };
        (void)QTest::qWaitFor(isUnderWay, kPatienceMs);
        Draw(m_window, "running");
        m_window.close();
        Draw(m_window, "notice");
        (void)QTest::qWaitFor([this] { return !m_controller.status().m_bRunning; }, kPatienceMs);
        (void)QTest::qWaitFor([progress] { return !progress->isVisible(); }, kPatienceMs);
    }

    /// The pane shows a song.
    void Look(char const* state) {
        m_window.resize(kWidth, kHeight);
        Act("actionPane");
        ChooseSong();
        m_window.findChild<CSongPane*>()->takeFocus();
        for (int measure = 0; measure < kMeasures; ++measure) {
            QTest::keyClick(m_window.focusWidget(), Qt::Key_Right, Qt::ControlModifier);
        }
        Table()->setFocus();
        Draw(m_window, state);
    }

    void Filter() {
        auto* query = m_window.findChild<QLineEdit*>("query");
        Settle([query] { query->setText("120-130"); });
        Draw(m_window, "filter");
        query->clear();
    }

    /// With the pane shut.
    void Problems() {
        Act("actionPane");
        m_window.resize(kWidth, kLowHeight);
        m_window.findChild<QToolButton*>("chipProblems")->click();
        Choose(0, 0);
        Draw(m_window, "problems");
        m_window.findChild<QToolButton*>("chipAll")->click();
        m_window.resize(kWidth, kHeight);
        Act("actionPane");
    }

    /// A tempo is being typed, in a table that is sorted by it.
    void Typing() {
        Act("actionSort3");
        Settle([this] { Choose(1, CFileTableModel::kTempoColumn); });
        Act("actionType");
        Draw(m_window, "typing");
        QTest::keyClick(Table()->findChild<QLineEdit*>("tempoEditor"), Qt::Key_Escape);
        Act("actionSort3");
        Act("actionSort3"); // as added
    }

    void Columns() {
        auto* menu = m_window.findChild<CColumnsMenu*>();
        for (char const* const column : {"column3", "column4", "column5", "column6", "column9"}) {
            menu->findChild<QAction*>(column)->trigger();
        }
        m_window.resize(kWideWidth, kHeight);
        ChooseSong();
        Draw(m_window, "columns");
        m_window.resize(kWidth, kHeight);
        menu->findChild<QAction*>("columnsAsAtFirst")->trigger();
    }

    void Menus() {
        std::pair<char const*, char const*> const menus[] = {
            {"menu", "menu"}, {"correctionMenu", "corrections"}, {"columnsMenu", "further"}};
        for (auto const& [name, state] : menus) {
            auto* menu = m_window.findChild<QMenu*>(name);
            menu->popup(m_window.mapToGlobal(QPoint()));
            Draw(*menu, state);
            menu->hide();
        }
        auto* table = Table();
        QTimer::singleShot(500, &m_window, [this] {
            if (QWidget* menu = QApplication::activePopupWidget(); menu != nullptr) {
                Draw(*menu, "row");
                menu->hide();
            }
        });
        QPoint const place = table->visualRect(table->currentIndex()).center();
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, table->mapToGlobal(place));
        QApplication::sendEvent(table->viewport(), &event);
    }

    /// Songs that have no beat grid yet are to be taken along with one.
    void Export() {
        QTimer::singleShot(500, &m_window, [this] {
            if (QWidget* dialog = QApplication::activeModalWidget(); dialog != nullptr) {
                auto* formats = dialog->findChild<QComboBox*>("exportFormat");
                formats->setCurrentIndex(formats->findText("(xml)", Qt::MatchContains));
                auto const* gather = dialog->findChild<QPushButton*>("exportGather");
                dialog->findChild<QComboBox*>("exportWhich")->setCurrentIndex(1); // all rows
                (void)QTest::qWaitFor([gather] { return gather->isVisible(); }, kPatienceMs);
                Draw(*dialog, "ungathered");
                dialog->findChild<QPushButton*>("exportGather")->click();
                auto const* save = dialog->findChild<QPushButton*>("exportSave");
                (void)QTest::qWaitFor([save] { return save->isEnabled(); }, kPatienceMs);
                Draw(*dialog, "export");
                dialog->close();
            }
        });
        Act("actionExport");
    }

    void Dialog(char const* action, char const* state) {
        QTimer::singleShot(500, &m_window, [this, state] {
            if (QWidget* dialog = QApplication::activeModalWidget(); dialog != nullptr) {
                Draw(*dialog, state);
                dialog->close();
            }
        });
        Act(action);
    }

    /// The bar tells which files of the folder were left out.
    void Kinds(std::string const& folder) {
        m_window.addPaths({folder});
        auto* notices = m_window.findChild<CNoticeBar*>();
        (void)QTest::qWaitFor([notices] { return notices->isVisible(); }, kStartMs);
        Draw(m_window, "kinds");
    }

private:
    CFileTableView* Table() { return m_window.findChild<CFileTableView*>("fileTable"); }

    void ChooseSong() {
        int const row = std::min(kSongRow, Table()->model()->rowCount() - 1);
        Settle([&] { Choose(row, 0); });
    }

    /// This row alone, whatever key is held down.
    void Choose(int row, int column) {
        Table()->selectionModel()->setCurrentIndex(Table()->model()->index(row, column),
                                                   QItemSelectionModel::ClearAndSelect |
                                                       QItemSelectionModel::Rows);
    }

    /// Waits for the song that `change` has the pane show.
    void Settle(std::function<void()> const& change) {
        QSignalSpy settled(m_window.findChild<CSongPane*>(), &CSongPane::settled);
        change();
        (void)settled.wait(kSettleMs);
    }

    void Act(char const* name) { m_window.findChild<QAction*>(name)->trigger(); }

    void Draw(QWidget& widget, char const* state) {
        QTest::qWait(100); // what is under way in the window
        if (!widget.grab().save(m_sFolder + "/" + state + ".png")) {
            std::fprintf(stderr, "%s.png can't be written\n", state);
        }
    }

    QString m_sFolder;
    QtBpmView m_view;
    BPMController m_controller{m_view};
    BpmWindow m_window{m_controller};
};

} // namespace

int main(int argc, char** argv) {
    SetUpAudio();
    QTemporaryDir const settings; // nobody's own are read or changed
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
    for (char const* const home : {"XDG_STATE_HOME", "XDG_CACHE_HOME"}) {
        qputenv(home, settings.path().toLocal8Bit());
    }
    QApplication app(argc, argv);
    QStringList const words = QApplication::arguments();
    if (words.size() <= kArguments) {
        std::fputs("desktop_pictures light|dark|contrast LOCALE FOLDER SONG...\n", stderr);
        return 2;
    }
    QApplication::setStyle("Fusion");
    if (words[1] != "light") {
        QApplication::setPalette(PaletteOf(words[1].toStdString()));
    }
    COutlines const outlines;
    QLocale const locale(words[2]);
    CLanguage const language(locale);
    QTemporaryDir const music; // the songs get tags
    std::vector<std::string> songs;
    for (QString const& song : words.mid(kArguments)) {
        QString const copy = music.filePath(QFileInfo(song).fileName());
        QFile::copy(song, copy);
        if (kOwnKinds.contains(QFileInfo(song).suffix())) {
            songs.push_back(copy.toStdString());
        }
    }
    QDir().mkpath(words[3]);
    {
        CSitting sitting(words[3]);
        sitting.Empty();
        sitting.Dialog("actionPreferences", "preferences");
        sitting.Run(songs);
        sitting.Look("done");
        sitting.Filter();
        sitting.Problems();
        sitting.Columns();
        sitting.Typing();
        sitting.Menus();
        sitting.Export();
        sitting.Dialog("actionKeys", "keys");
    }
    CSitting again(words[3]);
    again.Kinds(music.path().toStdString());
    again.Look("known");
    return 0;
}
