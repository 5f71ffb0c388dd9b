// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/BpmWindow.h"

#include "WindowFixture.h"
#include "desktop/ImageClickView.h"
#include "desktop/OpenPanel.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QListView>
#include <QMenu>
#include <QPaintEvent>
#include <QProxyStyle>
#include <QSignalSpy>
#include <QStatusBar>
#include <QStyleOptionMenuItem>
#include <QTest>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <filesystem>
#include <gtest/gtest.h>
#include <thread>

namespace {

/// Takes the addresses that the program wants opened.
class CBrowser : public QObject {
    Q_OBJECT

public:
    CBrowser() {
        QDesktopServices::setUrlHandler("file", this, "open");
        QDesktopServices::setUrlHandler("https", this, "open");
    }
    ~CBrowser() override {
        QDesktopServices::unsetUrlHandler("file");
        QDesktopServices::unsetUrlHandler("https");
    }

    int pages = 0;

public slots:
    void open(QUrl const&) { ++pages; }
};

/// Adds up what is painted of a widget.
class CPaintWatch : public QObject {
public:
    explicit CPaintWatch(QWidget* widget) { widget->installEventFilter(this); }

    bool eventFilter(QObject* object, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            painted += static_cast<QPaintEvent*>(event)->region();
        }
        return QObject::eventFilter(object, event);
    }

    QRegion painted;
};

/// Takes down what the entries of a menu show.
class CMenuWatch : public QProxyStyle {
public:
    void drawControl(ControlElement element, QStyleOption const* option, QPainter* painter,
                     QWidget const* widget) const override {
        if (auto const* entry = qstyleoption_cast<QStyleOptionMenuItem const*>(option)) {
            texts << entry->text;
        }
        QProxyStyle::drawControl(element, option, painter, widget);
    }

    mutable QStringList texts;
};

using BpmWindowTest = WindowTest;

} // namespace

TEST_F(BpmWindowTest, EverythingBearsItsName) {
    EXPECT_TRUE(window.windowTitle().startsWith("Tactus"));
    EXPECT_TRUE(window.accessibleName().startsWith("Tactus"));
    EXPECT_EQ(table->accessibleName(), "Files");
    EXPECT_EQ(window.findChild<QProgressBar*>()->accessibleName(), "Overall progress");
    EXPECT_EQ(window.statusBar()->accessibleName(), "Status bar");
    QStringList names;
    for (QAction* entry : window.findChild<QToolBar*>("toolbar")->actions()) {
        if (!entry->text().isEmpty()) {
            names << entry->text();
        }
    }
    EXPECT_EQ(names.join(","), "Add,Analyze,Stop,Menu");
    for (QToolButton* button :
         window.findChild<QToolBar*>("toolbar")->findChildren<QToolButton*>()) {
        if (button->defaultAction() != nullptr) {
            QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(button);
            EXPECT_EQ(seen->text(QAccessible::Name), button->defaultAction()->text());
            EXPECT_EQ(button->focusPolicy(), Qt::TabFocus);
        }
    }
}

TEST_F(BpmWindowTest, ActionsHaveTheirKeys) {
    EXPECT_EQ(action("actionAdd")->shortcut(), QKeySequence("Ctrl+O"));
    EXPECT_EQ(action("actionAnalyze")->shortcut(), QKeySequence("F5"));
    EXPECT_EQ(action("actionRescan")->shortcut(), QKeySequence("Shift+F5"));
    EXPECT_EQ(action("actionStop")->shortcut(), QKeySequence("Esc"));
    EXPECT_EQ(action("actionKeys")->shortcut(), QKeySequence("F1"));
    EXPECT_EQ(action("actionPreferences")->shortcut(), QKeySequence("Ctrl+,"));
    EXPECT_EQ(action("actionCopy")->shortcut(), QKeySequence("Ctrl+C"));
    EXPECT_EQ(action("actionQuit")->shortcut(), QKeySequence("Ctrl+Q"));
    EXPECT_EQ(action("actionClose")->shortcut(), QKeySequence("Ctrl+W"));
    EXPECT_EQ(action("actionMenu")->shortcut(), QKeySequence("F10"));
    EXPECT_EQ(action("actionSort1")->shortcut(), QKeySequence("Ctrl+Alt+1"));
    EXPECT_EQ(action("actionSort3")->shortcut(), QKeySequence("Ctrl+Alt+3"));
}

TEST_F(BpmWindowTest, AnEmptyWindowOffersOnlyWhatMakesSense) {
    EXPECT_TRUE(action("actionAdd")->isEnabled());
    EXPECT_TRUE(action("actionHelp")->isEnabled());
    EXPECT_FALSE(action("actionAnalyze")->isEnabled());
    EXPECT_FALSE(action("actionRescan")->isEnabled());
    EXPECT_FALSE(action("actionStop")->isEnabled());
    EXPECT_FALSE(window.findChild<QProgressBar*>()->isVisible());
}

TEST_F(BpmWindowTest, ADroppedNestedFolderIsAnalysed) {
    std::filesystem::create_directories(folder / "album/disc/side");
    writeClip("album/disc/side/a.wav");
    writeClip("album/b.wav");
    drop({folder / "album"});
    ASSERT_TRUE(waitUntilIdle());
    ASSERT_EQ(table->model()->rowCount(), 2);
    EXPECT_EQ(cell(0, 0), "b.wav");
    EXPECT_EQ(cell(1, 0), "a.wav");
    EXPECT_EQ(cell(0, 2), "120.00");
    EXPECT_EQ(cell(1, 2), "120.00");
}

TEST_F(BpmWindowTest, TheSameFileDroppedTwiceIsOneRow) {
    std::string const file = writeClip("a.wav");
    drop({file, file});
    drop({file});
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(table->model()->rowCount(), 1);
}

TEST_F(BpmWindowTest, DropsReachTheWindowThroughTheTable) {
    EXPECT_TRUE(window.acceptDrops());
    EXPECT_FALSE(table->acceptDrops());
    EXPECT_FALSE(table->viewport()->acceptDrops());
}

TEST_F(BpmWindowTest, ADragWithoutFilesIsRefused) {
    QMimeData data;
    data.setText("no files");
    QDragEnterEvent enter({100, 100}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(&window, &enter);
    EXPECT_FALSE(enter.isAccepted());
}

TEST_F(BpmWindowTest, ThePanelAddsFilesAndFoldersAndAnalysesThem) {
    std::filesystem::create_directory(folder / "album");
    writeClip("album/b.wav");
    writeClip("a.wav");
    bool hasChosen = false;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        auto* panel = qobject_cast<COpenPanel*>(QApplication::activeModalWidget());
        if (panel == nullptr || hasChosen) {
            return;
        }
        hasChosen = true;
        panel->setDirectory(QString::fromStdString(folder.Path()));
        auto* list = panel->findChild<QListView*>("listView");
        EXPECT_TRUE(
            QTest::qWaitFor([&] { return list->model()->rowCount(list->rootIndex()) == 2; }));
        list->selectAll();
        panel->accept();
    });
    timer.start(10);
    QTest::keyClick(&window, Qt::Key_O, Qt::ControlModifier);
    timer.stop();
    EXPECT_TRUE(hasChosen);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(table->model()->rowCount(), 2);
    EXPECT_EQ(cell(0, 2), "120.00");
    EXPECT_EQ(cell(1, 2), "120.00");
}

TEST_F(BpmWindowTest, TheEndOfTheSessionIsNotRefused) {
    open({writeLong("a.wav")});
    ASSERT_TRUE(waitUntilRunning());
    window.letClose();
    EXPECT_TRUE(window.close());
}

TEST_F(BpmWindowTest, EscapeStopsTheBatchAndF5GoesOn) {
    open({writeLong("a.wav"), writeClip("b.wav")});
    ASSERT_TRUE(waitUntilRunning());
    EXPECT_TRUE(action("actionStop")->isEnabled());
    EXPECT_FALSE(action("actionAnalyze")->isEnabled());
    QTest::keyClick(&window, Qt::Key_Escape);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(cell(0, 2), "");
    EXPECT_EQ(cell(1, 2), "");
    EXPECT_FALSE(action("actionStop")->isEnabled());
    ASSERT_TRUE(action("actionAnalyze")->isEnabled());
    writeClip("a.wav");
    QTest::keyClick(&window, Qt::Key_F5);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(cell(0, 2), "120.00");
    EXPECT_EQ(cell(1, 2), "120.00");
}

TEST_F(BpmWindowTest, AnalyzeAgainTakesEverythingAndAsksNothingAboutItsOwnTempos) {
    std::string const file = writeClip("a.wav");
    open({file});
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_FALSE(action("actionAnalyze")->isEnabled());
    WriteText(file, "no music any more");
    QTest::keyClick(&window, Qt::Key_F5, Qt::ShiftModifier);
    ASSERT_TRUE(QTest::qWaitFor([this] { return cell(0, 2) == "0.00"; }));
}

TEST_F(BpmWindowTest, ProgressAndFileNameAreShownWhileAFileRuns) {
    open({writeLong("a.wav")});
    ASSERT_TRUE(waitUntilRunning());
    auto* progress = window.findChild<QProgressBar*>();
    EXPECT_EQ(label("activity"), "Analyzing “a.wav” · 1 of 1");
    EXPECT_TRUE(progress->isVisible());
    EXPECT_TRUE(QTest::qWaitFor([&] { return progress->value() > 0; }, 60'000));
    EXPECT_TRUE(QString::fromStdString(cell(0, 2)).endsWith('%'));
    QTest::keyClick(&window, Qt::Key_Escape);
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_FALSE(progress->isVisible());
}

TEST_F(BpmWindowTest, HelpAndThePictureOpenTheHomePage) {
    CBrowser browser;
    action("actionHelp")->trigger();
    EXPECT_EQ(browser.pages, 1);
    QTest::mouseClick(window.findChild<QxImageClickView*>("imageView"), Qt::LeftButton);
    EXPECT_EQ(browser.pages, 2);
}

TEST_F(BpmWindowTest, CopyTakesTheSelectedRows) {
    open({writeClip("a.wav")});
    ASSERT_TRUE(waitUntilIdle());
    QTest::keyClick(table, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(table, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text().toStdString(), "a.wav\t\t120.00\n");
}

TEST_F(BpmWindowTest, QuitAsksForTheEndEvenDuringAnAnalysis) {
    QSignalSpy quits(&window, &BpmWindow::quitRequested);
    open({writeLong("a.wav")});
    ASSERT_TRUE(waitUntilRunning());
    QTest::keyClick(&window, Qt::Key_Q, Qt::ControlModifier);
    EXPECT_EQ(quits.count(), 1);
}

TEST_F(BpmWindowTest, NotificationsFromAWorkerChangeOneCellEachAtMost) {
    for (int i = 0; i < 500; ++i) {
        controller.addFile(CString::FromPath("/missing/" + std::to_string(i)));
    }
    ASSERT_TRUE(waitUntilIdle());
    QSignalSpy const changed(table->model(), &QAbstractItemModel::dataChanged);
    QSignalSpy const layout(table->model(), &QAbstractItemModel::layoutChanged);
    std::thread worker([this] {
        for (int percent = 0; percent <= 100; ++percent) {
            CUserInfo const info{{kUserDataKey, static_cast<void*>(controller.fileAtRow(321))},
                                 {kPercentKey, std::to_string(percent) + "%"}};
            CNotificationCenter::Default().Post(kFileProgressNotification, &info);
        }
    });
    worker.join();
    EXPECT_TRUE(QTest::qWaitFor([this] { return cell(321, 2) == "100%"; }));
    EXPECT_TRUE(QTest::qWaitFor([&] { return changed.count() >= 1; })); // However busy the machine.
    QTest::qWait(50);
    EXPECT_LE(changed.count(), 101);
    for (auto const& signal : changed) {
        EXPECT_EQ(signal[0].toModelIndex(), table->model()->index(321, 2));
        EXPECT_EQ(signal[1].toModelIndex(), table->model()->index(321, 2));
    }
    EXPECT_EQ(layout.count(), 0);
}

TEST_F(BpmWindowTest, AProgressNotificationPaintsItsCellAndNoOther) {
    for (int i = 0; i < 10; ++i) {
        controller.addFile(CString::FromPath("/missing/" + std::to_string(i)));
    }
    ASSERT_TRUE(waitUntilIdle());
    QTest::qWait(50);
    CPaintWatch watch(table->viewport());
    CUserInfo const info{{kUserDataKey, static_cast<void*>(controller.fileAtRow(3))},
                         {kPercentKey, std::string("50%")}};
    CNotificationCenter::Default().Post(kFileProgressNotification, &info);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !watch.painted.isEmpty(); }));
    QRect const cell = table->visualRect(table->model()->index(3, 2));
    EXPECT_TRUE(cell.contains(watch.painted.boundingRect()));
}

TEST_F(BpmWindowTest, KeysInTheMenuRunFromLeftToRightInMirroredWindowsToo) {
    CMenuWatch watch;
    auto* menu = window.findChild<QMenu*>("menu");
    menu->setStyle(&watch);
    menu->setLayoutDirection(Qt::RightToLeft);
    (void)menu->grab();
    EXPECT_TRUE(watch.texts.contains("Preferences …\t\u200ECtrl+,\u200E"))
        << watch.texts.join('|').toStdString();
    watch.texts.clear();
    menu->setLayoutDirection(Qt::LeftToRight);
    (void)menu->grab();
    EXPECT_TRUE(watch.texts.contains("Preferences …\tCtrl+,"));
    menu->setStyle(nullptr);
}

TEST_F(BpmWindowTest, ManyRowsReachTheTableInPortions) {
    int mostAtOnce = 0;
    QObject::connect(table->model(), &QAbstractItemModel::rowsInserted,
                     [&](QModelIndex const&, int first, int last) {
                         mostAtOnce = std::max(mostAtOnce, last - first + 1);
                     });
    for (int i = 0; i < 50'000; ++i) {
        controller.addFile(CString::FromPath("/missing/" + std::to_string(i)));
    }
    ASSERT_TRUE(waitUntilIdle());
    EXPECT_EQ(table->model()->rowCount(), 50'000);
    EXPECT_LE(mostAtOnce, 2'000);
}

#include "BpmWindowTest.moc"
