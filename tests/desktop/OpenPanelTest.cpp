// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/OpenPanel.h"

#include <QAction>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QStandardPaths>
#include <QStyledItemDelegate>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>
#include <QTreeView>
#include <gtest/gtest.h>
#include <memory>

namespace {

bool EndsWith(std::string const& text, std::string const& end) {
    return text.size() >= end.size() &&
           text.compare(text.size() - end.size(), end.size(), end) == 0;
}

/// A panel over a folder that holds a.mp3, b.m4a, c.txt and the folder sub. Texts are hidden,
/// m4a files are shown but can't be chosen.
struct OpenPanelTest : testing::Test {
    OpenPanelTest() {
        for (char const* name : {"a.mp3", "b.m4a", "c.txt", "d.mp3"}) {
            QFile file(root.filePath(name));
            EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        }
        QDir(root.path()).mkdir("sub");
        panel.setDirectory(root.path());
        panel.show();
        list = panel.findChild<QListView*>("listView");
    }

    /// The entry's place in the panel; invalid when it isn't listed.
    QModelIndex entry(QString const& name) const {
        QModelIndex found;
        EXPECT_TRUE(
            QTest::qWaitFor([&] { return list->model()->rowCount(list->rootIndex()) >= 4; }));
        for (int row = 0; row < list->model()->rowCount(list->rootIndex()); ++row) {
            QModelIndex const index = list->model()->index(row, 0, list->rootIndex());
            if (index.data().toString() == name) {
                found = index;
            }
        }
        return found;
    }

    void select(QString const& name) {
        list->selectionModel()->select(entry(name),
                                       QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }

    /// Types into the panel's line, key by key.
    void type(char const* text) {
        auto* line = panel.findChild<QLineEdit*>("fileNameEdit");
        entry("a.mp3");
        line->clear();
        QTest::keyClicks(line, text);
    }

    std::string path(char const* name) const { return root.filePath(name).toStdString(); }

    QTemporaryDir root;
    COpenPanel panel{{[](std::string const& shown) { return !EndsWith(shown, ".txt"); },
                      [](std::string const& chosen) { return !EndsWith(chosen, ".m4a"); }}};
    QListView* list = nullptr;
};

using Paths = std::vector<std::string>;

} // namespace

TEST_F(OpenPanelTest, ListsWhatTheRuleShows) {
    EXPECT_TRUE(entry("a.mp3").isValid());
    EXPECT_TRUE(entry("b.m4a").isValid());
    EXPECT_TRUE(entry("sub").isValid());
    EXPECT_FALSE(entry("c.txt").isValid());
}

TEST_F(OpenPanelTest, GreysWhatCannotBeChosen) {
    EXPECT_TRUE(entry("a.mp3").flags().testFlag(Qt::ItemIsEnabled));
    EXPECT_FALSE(entry("b.m4a").flags().testFlag(Qt::ItemIsEnabled));
    EXPECT_FALSE(entry("b.m4a").flags().testFlag(Qt::ItemIsSelectable));
}

TEST_F(OpenPanelTest, TakesFilesAndFoldersTogether) {
    select("a.mp3");
    select("d.mp3");
    select("sub");
    panel.accept();
    EXPECT_EQ(panel.result(), QDialog::Accepted);
    Paths chosen = panel.chosenPaths();
    std::sort(chosen.begin(), chosen.end());
    EXPECT_EQ(chosen, (Paths{path("a.mp3"), path("d.mp3"), path("sub")}));
}

TEST_F(OpenPanelTest, TheButtonTakesASingleFolder) {
    select("sub");
    QPushButton* button = panel.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open);
    ASSERT_NE(button, nullptr);
    ASSERT_TRUE(button->isEnabled());
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(panel.result(), QDialog::Accepted);
    EXPECT_EQ(panel.chosenPaths(), (Paths{path("sub")}));
}

TEST_F(OpenPanelTest, ADoubleClickOnAFolderEntersIt) {
    QModelIndex const folder = entry("sub");
    emit list->activated(folder);
    EXPECT_TRUE(panel.isVisible());
    EXPECT_EQ(panel.directory().dirName(), "sub");
    EXPECT_TRUE(panel.chosenPaths().empty());
}

TEST_F(OpenPanelTest, SeveralTypedNamesAreAllTaken) {
    type("\"a.mp3\" \"d.mp3\"");
    panel.accept();
    EXPECT_EQ(panel.result(), QDialog::Accepted);
    EXPECT_EQ(panel.chosenPaths(), (Paths{path("a.mp3"), path("d.mp3")}));
}

TEST_F(OpenPanelTest, ATypedNameOfAGreyedKindIsToldAndThePanelStays) {
    type("b.m4a");
    panel.accept();
    EXPECT_TRUE(panel.isVisible());
    EXPECT_TRUE(panel.chosenPaths().empty());
    auto const* told = panel.findChild<QLabel*>("panelNotice");
    EXPECT_TRUE(told->isVisible());
    EXPECT_TRUE(told->text().startsWith("“b.m4a” can't be chosen here"))
        << told->text().toStdString();
    type("a.mp3");
    panel.accept();
    EXPECT_EQ(panel.chosenPaths(), (Paths{path("a.mp3")}));
}

TEST_F(OpenPanelTest, WithEveryKindATypedNameIsToldToBeNoMusic) {
    COpenPanel every{{[](std::string const&) { return true; },
                      [](std::string const& chosen) { return !EndsWith(chosen, ".txt"); }, true}};
    every.setDirectory(root.path());
    every.show();
    QTest::keyClicks(every.findChild<QLineEdit*>("fileNameEdit"), "c.txt");
    every.accept();
    EXPECT_TRUE(every.isVisible());
    EXPECT_EQ(every.findChild<QLabel*>("panelNotice")->text(),
              "“c.txt” is neither a folder nor a music file of a kind that is read.");
}

TEST_F(OpenPanelTest, OneBadNameAmongSeveralKeepsThePanelOpen) {
    type("\"a.mp3\" \"missing.mp3\"");
    panel.accept();
    EXPECT_TRUE(panel.isVisible());
    EXPECT_TRUE(panel.chosenPaths().empty());
    EXPECT_EQ(panel.findChild<QLabel*>("panelNotice")->text(), "There is no “missing.mp3” here.");
}

TEST_F(OpenPanelTest, ATypedFolderIsEntered) {
    type("sub");
    panel.accept();
    EXPECT_TRUE(panel.isVisible());
    EXPECT_EQ(panel.directory().dirName(), "sub");
    EXPECT_TRUE(panel.chosenPaths().empty());
}

TEST_F(OpenPanelTest, TheFolderThatOneIsInCanBeTaken) {
    entry("sub");
    QTest::mouseClick(panel.findChild<QPushButton*>("takeFolder"), Qt::LeftButton);
    EXPECT_EQ(panel.result(), QDialog::Accepted);
    EXPECT_EQ(panel.chosenPaths(), (Paths{root.path().toStdString()}));
}

TEST_F(OpenPanelTest, MusicIsAmongThePlaces) {
    QString const music = QStandardPaths::writableLocation(QStandardPaths::MusicLocation);
    if (QDir().mkpath(music)) {
        COpenPanel const other{
            {[](std::string const&) { return true; }, [](std::string const&) { return true; }}};
        EXPECT_TRUE(other.sidebarUrls().contains(QUrl::fromLocalFile(music)));
    }
}

TEST_F(OpenPanelTest, NamesHaveTheRoomThatTheOtherColumnsLeave) {
    entry("sub");
    auto const* tree = panel.findChild<QTreeView*>("treeView");
    QHeaderView const* header = tree->header();
    EXPECT_EQ(header->length(), tree->viewport()->width());
    for (int column = 1; column < header->count(); ++column) {
        EXPECT_GE(header->sectionSize(column), header->sectionSizeHint(column)) << column;
    }
}

TEST_F(OpenPanelTest, CancellingChoosesNothing) {
    select("a.mp3");
    panel.reject();
    EXPECT_EQ(panel.result(), QDialog::Rejected);
    EXPECT_TRUE(panel.chosenPaths().empty());
}

TEST_F(OpenPanelTest, NothingCanBeDeletedRenamedOrMade) {
    select("a.mp3");
    EXPECT_FALSE(entry("a.mp3").flags().testFlag(Qt::ItemIsEditable));
    EXPECT_FALSE(entry("sub").flags().testFlag(Qt::ItemIsDropEnabled));
    EXPECT_FALSE(panel.findChild<QAction*>("qt_delete_action")->isEnabled());
    EXPECT_FALSE(panel.findChild<QAction*>("qt_rename_action")->isEnabled());
    // Where files can be deleted, the key would ask first and wait for an answer.
    ASSERT_FALSE(panel.findChild<QToolButton*>("newFolderButton")->isEnabled());
    QTest::keyClick(list, Qt::Key_Delete);
    EXPECT_TRUE(QFile::exists(root.filePath("a.mp3")));
}

TEST_F(OpenPanelTest, ItLeavesNoSettingsBehind) {
    QString const config = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    QFile settings(config + "/QtProject.conf");
    bool const wasThere = settings.open(QIODevice::ReadOnly);
    QByteArray const before = wasThere ? settings.readAll() : QByteArray();
    settings.close();
    auto other = std::make_unique<COpenPanel>(COpenPanelRules{
        [](std::string const&) { return true; }, [](std::string const&) { return true; }});
    other->setDirectory(root.path());
    other->show();
    other->reject();
    other.reset();
    EXPECT_EQ(settings.open(QIODevice::ReadOnly), wasThere);
    EXPECT_EQ(wasThere ? settings.readAll() : QByteArray(), before);
}

TEST_F(OpenPanelTest, InAMirroredWindowNamesAndPathsKeepTheirDirection) {
    auto* folder = panel.findChild<QComboBox*>("lookInCombo");
    folder->setFixedSize(400, 30);
    QImage const unmirrored = folder->grab().toImage();
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    auto const* delegate = qobject_cast<QStyledItemDelegate*>(panel.itemDelegate());
    ASSERT_NE(delegate, nullptr);
    // Between "first strong isolate" and its end, the number stays in front.
    EXPECT_EQ(delegate->displayText("01 a.mp3", QLocale::c()),
              QChar(0x2068) + QString("01 a.mp3") + QChar(0x2069));
    EXPECT_EQ(folder->grab().toImage(), unmirrored);
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
}
