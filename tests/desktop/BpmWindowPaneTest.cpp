// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "WindowFixture.h"
#include "desktop/PictureView.h"
#include "desktop/Settings.h"
#include "desktop/SongPane.h"
#include "support/Process.h"

#include <QAbstractItemModel>
#include <QClipboard>
#include <QHeaderView>
#include <QLineEdit>
#include <QSettings>
#include <QSignalSpy>
#include <fstream>
#include <iterator>
#include <map>

namespace {

struct BpmWindowPaneTest : WindowTest {
    BpmWindowPaneTest() { forget(); }
    ~BpmWindowPaneTest() override { forget(); }

    static void forget() {
        QSettings(QSettings::IniFormat, QSettings::UserScope, "tactus", "tactus-desktop").clear();
    }

    CSongPane* pane = window.findChild<CSongPane*>("songPane");
};

/// Everything that the table tells of itself, cell by cell.
std::vector<std::string> Everything(CFileTableView const& table) {
    std::vector<std::string> told;
    QAbstractItemModel const& model = *table.model();
    for (int row = 0; row < model.rowCount(); ++row) {
        for (int column = 0; column < model.columnCount(); ++column) {
            for (int const role :
                 {int(Qt::DisplayRole), int(Qt::TextAlignmentRole),
                  int(Qt::AccessibleDescriptionRole), int(CFileTableModel::kProblemRole),
                  int(CFileTableModel::kUntitledRole), int(CFileTableModel::kAwaitsRole)}) {
                told.push_back(model.index(row, column).data(role).toString().toStdString());
            }
        }
    }
    return told;
}

std::map<std::string, std::string> Files(std::string const& folder) {
    std::map<std::string, std::string> files;
    for (auto const& entry : std::filesystem::directory_iterator(folder)) {
        std::ifstream in(entry.path(), std::ios::binary);
        files[entry.path().filename()] = {std::istreambuf_iterator<char>(in), {}};
    }
    return files;
}

/// What a window makes of a folder with four files, walked through with the keyboard.
struct CSession {
    std::vector<std::string> m_vTold;
    std::string m_sCopied;
    std::map<std::string, std::string> m_files;
};

CSession Work(CTempFolder const& originals, bool withPane) {
    CTempFolder const folder;
    for (auto const& entry : std::filesystem::directory_iterator(originals / "")) {
        std::filesystem::copy(entry.path(), folder / entry.path().filename().string());
    }
    QtBpmView view;
    BPMController controller(view);
    controller.awakeFromNib();
    BpmWindow window(controller);
    view.setWindow(&window);
    if (withPane) {
        window.openPaneAtStart();
    }
    window.show();
    auto* table = window.findChild<CFileTableView*>("fileTable");
    auto* pane = window.findChild<CSongPane*>("songPane");
    EXPECT_EQ(pane->isVisible(), withPane);
    window.addPaths({folder / "a.mp3", folder / "b.mp3", folder / "c.wav", folder / "none.wav"});
    EXPECT_TRUE(QTest::qWaitFor(
        [&] {
            CBatchStatus const status = controller.status();
            return !status.m_bAdding && !status.m_bRunning && status.m_nRows == 4 &&
                   table->model()->rowCount() == 4 &&
                   !window.findChild<QProgressBar*>()->isVisible();
        },
        60'000));
    for (int row = 0; row < table->model()->rowCount(); ++row) {
        QSignalSpy settled(pane, &CSongPane::settled);
        table->selectRow(row);
        EXPECT_TRUE(!withPane || settled.wait(20'000));
    }
    table->selectAll();
    table->copySelection();
    CSession session{Everything(*table), QApplication::clipboard()->text().toStdString(),
                     Files(folder / "")};
    controller.applicationWillTerminate();
    view.setWindow(nullptr);
    return session;
}

} // namespace

TEST_F(BpmWindowPaneTest, F9OpensAndShutsItAndIsRemembered) {
    EXPECT_FALSE(pane->isVisible());
    EXPECT_EQ(CSettings().PaneOpen(), std::nullopt);
    QTest::keyClick(&window, Qt::Key_F9);
    EXPECT_TRUE(pane->isVisible());
    EXPECT_TRUE(action("actionPane")->isChecked());
    EXPECT_EQ(CSettings().PaneOpen(), true);
    QTest::keyClick(&window, Qt::Key_F9);
    EXPECT_FALSE(pane->isVisible());
    EXPECT_EQ(CSettings().PaneOpen(), false);
    window.openPaneAtStart();
    EXPECT_FALSE(pane->isVisible());
}

TEST_F(BpmWindowPaneTest, TheFirstStartOpensItAndStoresNothing) {
    window.openPaneAtStart();
    EXPECT_TRUE(pane->isVisible());
    EXPECT_EQ(window.size(), QSize(760, 620));
    EXPECT_EQ(CSettings().PaneOpen(), std::nullopt);
}

TEST_F(BpmWindowPaneTest, NothingInTheOpenPaneIsSqueezed) {
    QSize const shut = window.minimumSize();
    action("actionPane")->trigger();
    open({writeClip("a.wav")});
    ASSERT_TRUE(waitUntilIdle());
    QSignalSpy settled(pane, &CSongPane::settled);
    table->selectRow(0);
    ASSERT_TRUE(settled.wait(20'000));
    window.resize(1, 1);
    QTest::qWait(50);
    EXPECT_GE(pane->width(), pane->minimumSizeHint().width());
    EXPECT_GE(pane->height(), pane->minimumSizeHint().height());
    action("actionPane")->trigger();
    EXPECT_EQ(window.minimumSize(), shut);
}

TEST_F(BpmWindowPaneTest, EnterOpensIt) {
    open({writeClip("a.wav")});
    ASSERT_TRUE(waitUntilIdle());
    table->selectRow(0);
    table->setFocus();
    QTest::keyClick(table, Qt::Key_Return);
    EXPECT_TRUE(pane->isVisible());
    QTest::keyClick(table, Qt::Key_Enter);
    EXPECT_TRUE(pane->isVisible());
}

TEST_F(BpmWindowPaneTest, TheSelectedSongIsShownWhileItIsOpen) {
    open({writeClip("a.wav"), writeClip("b.wav")});
    ASSERT_TRUE(waitUntilIdle());
    table->selectRow(0);
    QTest::qWait(50);
    EXPECT_EQ(pane->picture(), nullptr); // shut: nothing is heard
    QSignalSpy settled(pane, &CSongPane::settled);
    QTest::keyClick(&window, Qt::Key_F9);
    ASSERT_TRUE(settled.wait(10'000));
    ASSERT_NE(pane->picture(), nullptr);
    EXPECT_EQ(pane->picture()->Seconds(), 1.0);
    EXPECT_EQ(label("paneTitle"), "a.wav");
    table->setFocus();
    QTest::keyClick(table, Qt::Key_Down);
    ASSERT_TRUE(settled.wait(10'000));
    EXPECT_EQ(label("paneTitle"), "b.wav");
    QTest::keyClick(&window, Qt::Key_F9);
    EXPECT_EQ(pane->picture(), nullptr); // and nothing kept
}

TEST_F(BpmWindowPaneTest, AFilterThatLeavesTheSongsRowLeavesTheSongAsItIs) {
    open({writeClip("a.wav"), writeClip("b.wav")});
    ASSERT_TRUE(waitUntilIdle());
    window.openPaneAtStart();
    QSignalSpy settled(pane, &CSongPane::settled);
    table->selectRow(1);
    ASSERT_TRUE(settled.wait(10'000));
    pane->takeFocus();
    QTest::keyClick(window.focusWidget(), Qt::Key_End);
    std::int64_t const place = pane->place();
    ASSERT_GT(place, 0);
    auto* query = window.findChild<QLineEdit*>("query");
    query->setText("b.w");
    ASSERT_EQ(table->model()->rowCount(), 1);
    EXPECT_NE(pane->picture(), nullptr);
    EXPECT_EQ(pane->place(), place);
    query->setText("a.w");
    EXPECT_EQ(pane->picture(), nullptr); // another row has taken the place of its row
    ASSERT_TRUE(settled.wait(10'000));
    EXPECT_EQ(label("paneTitle"), "a.wav");
}

TEST_F(BpmWindowPaneTest, F6GoesToTheSongAndBack) {
    open({writeClip("a.wav")});
    ASSERT_TRUE(waitUntilIdle());
    QTest::keyClick(&window, Qt::Key_F6);
    EXPECT_TRUE(table->hasFocus()); // shut
    window.openPaneAtStart();
    QSignalSpy settled(pane, &CSongPane::settled);
    table->selectRow(0);
    ASSERT_TRUE(settled.wait(10'000));
    QTest::keyClick(&window, Qt::Key_F6);
    EXPECT_TRUE(window.findChild<CBeatStrip*>("beatStrip")->hasFocus());
    QTest::keyClick(&window, Qt::Key_F6);
    EXPECT_TRUE(table->hasFocus());
    QTest::keyClick(&window, Qt::Key_F6);
    QTest::keyClick(&window, Qt::Key_F9);
    EXPECT_TRUE(table->hasFocus());
}

TEST_F(BpmWindowPaneTest, ClosingWhileASongIsHeardEndsAtOnce) {
    std::string const file = writeLong("long.wav");
    window.openPaneAtStart();
    open({file});
    ASSERT_TRUE(waitUntilRunning());
    action("actionStop")->trigger();
    ASSERT_TRUE(waitUntilIdle());
    table->selectRow(0);
    EXPECT_TRUE(window.close());
}

TEST_F(BpmWindowPaneTest, ListCellsAndFilesAreTheSameWithThePaneAndWithout) {
    CTempFolder const originals;
    WriteWav(originals / "c.wav", MakeSong(128.0, 12.0));
    WriteBytes(originals / "none.wav", std::vector<std::uint8_t>(100, 7));
    Ffmpeg({"-i", originals / "c.wav", "-metadata", "title=Feelings", "-metadata",
            "artist=Some band", "-id3v2_version", "3", originals / "a.mp3"});
    Ffmpeg({"-i", originals / "c.wav", "-metadata", "TBPM=99", "-id3v2_version", "3",
            originals / "b.mp3"});
    CSession const shut = Work(originals, false);
    CSession const open = Work(originals, true);
    EXPECT_EQ(shut.m_vTold, open.m_vTold);
    EXPECT_EQ(shut.m_sCopied, open.m_sCopied);
    EXPECT_EQ(shut.m_files, open.m_files);
    EXPECT_EQ(shut.m_vTold.size(), 4U * 3 * 6);
    EXPECT_NE(shut.m_files.at("a.mp3"), Files(originals / "").at("a.mp3")); // its tempo was stored
    EXPECT_EQ(shut.m_files.at("b.mp3"), Files(originals / "").at("b.mp3"));
}
