// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Draws the window in its states, to be looked at and for the guide:
//
//     desktop_pictures light|dark|contrast LOCALE FOLDER SONG...
//
// empty, preferences, running, notice, done, filter, problems, ungathered, export and keys go into
// FOLDER, each a PNG. QT_SCALE_FACTOR makes them larger.

#include "Language.h"
#include "app/BPMController.h"
#include "desktop/BpmWindow.h"
#include "desktop/FileTableView.h"
#include "desktop/QtBpmView.h"
#include "desktop/SongPane.h"
#include "platform/AudioSetup.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QPalette>
#include <QProgressBar>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <cstdio>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr int kPatienceMs = 60'000; // Fixed: for all songs.
constexpr int kStartMs = 3000;      // Fixed: until the first of them is heard.
constexpr int kWidth = 900;         // Fixed: of the window, in pixels.
constexpr int kHeight = 680;        // Fixed: likewise.
constexpr int kArguments = 4;       // Fixed: in front of the songs.

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
        m_window.resize(kWidth, kHeight);
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
        (void)QTest::qWaitFor([progress] { return progress->isVisible(); }, kPatienceMs);
        Draw(m_window, "running");
        m_window.close();
        Draw(m_window, "notice");
        (void)QTest::qWaitFor([this] { return !m_controller.status().m_bRunning; }, kPatienceMs);
        (void)QTest::qWaitFor([progress] { return !progress->isVisible(); }, kPatienceMs);
    }

    /// The pane shows the song of the first row.
    void Look() {
        auto* pane = m_window.findChild<CSongPane*>();
        if (!pane->isVisible()) {
            Act("actionPane");
        }
        QSignalSpy settled(pane, &CSongPane::settled);
        auto* table = m_window.findChild<CFileTableView*>("fileTable");
        table->setCurrentIndex(table->model()->index(0, 0));
        (void)settled.wait(kPatienceMs);
        Draw(m_window, "done");
    }

    void Filter() {
        auto* query = m_window.findChild<QLineEdit*>("query");
        query->setText("120-130");
        Draw(m_window, "filter");
        query->clear();
    }

    void Problems() {
        QTest::keyClick(&m_window, Qt::Key_5, Qt::AltModifier);
        Draw(m_window, "problems");
        QTest::keyClick(&m_window, Qt::Key_1, Qt::AltModifier);
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

private:
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
    QLocale const locale(words[2]);
    CLanguage const language(locale);
    QTemporaryDir const music; // the songs get tags
    std::vector<std::string> songs;
    for (QString const& song : words.mid(kArguments)) {
        QString const copy = music.filePath(QFileInfo(song).fileName());
        QFile::copy(song, copy);
        songs.push_back(copy.toStdString());
    }
    QDir().mkpath(words[3]);
    CSitting sitting(words[3]);
    sitting.Empty();
    sitting.Dialog("actionPreferences", "preferences");
    sitting.Run(songs);
    sitting.Look();
    sitting.Filter();
    sitting.Problems();
    sitting.Export();
    sitting.Dialog("actionKeys", "keys");
    return 0;
}
