// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/BPMController.h"
#include "desktop/BpmWindow.h"
#include "desktop/FileTableView.h"
#include "desktop/QtBpmView.h"
#include "support/ClickTrack.h"
#include "support/TempFolder.h"
#include "support/WavFile.h"

#include <QAction>
#include <QApplication>
#include <QDragEnterEvent>
#include <QLabel>
#include <QMimeData>
#include <QProgressBar>
#include <QTest>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

/// The real window over the real controller.
struct WindowTest : testing::Test {
    WindowTest() {
        controller.awakeFromNib();
        view.setWindow(&window);
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    ~WindowTest() override {
        controller.applicationWillTerminate();
        view.setWindow(nullptr);
    }

    std::string writeClip(std::string const& name) const {
        WriteWav(folder / name, MakeClickTrack(120.0, 1.0));
        return folder / name;
    }

    std::string writeLong(std::string const& name) const {
        constexpr std::uint32_t kBytes = 15 * 60 * 88200; // a quarter of an hour, all zeros
        CWavShape shape;
        shape.m_nClaimedData = kBytes;
        WriteBytes(folder / name, MakeWav(shape, {}));
        std::filesystem::resize_file(folder / name, kBytes + 44);
        return folder / name;
    }

    void open(std::vector<std::string> const& files) {
        std::vector<CString> paths;
        for (std::string const& file : files) {
            paths.push_back(CString::FromPath(file));
        }
        controller.openFile(std::move(paths));
    }

    bool waitUntilIdle() {
        return QTest::qWaitFor(
            [this] {
                CBatchStatus const status = controller.status();
                auto const rows = static_cast<std::size_t>(table->model()->rowCount());
                return !status.m_bAdding && !status.m_bRunning && rows == status.m_nRows &&
                       !window.findChild<QProgressBar*>()->isVisible();
            },
            60'000);
    }

    bool waitUntilRunning() {
        return QTest::qWaitFor([this] { return label("activity").startsWith("Analyzing"); },
                               60'000);
    }

    void drop(std::vector<std::string> const& files) {
        QMimeData data;
        QList<QUrl> urls;
        for (std::string const& file : files) {
            urls << QUrl::fromLocalFile(QString::fromStdString(file));
        }
        data.setUrls(urls);
        QPoint const place(100, 100);
        QDragEnterEvent enter(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(&window, &enter);
        EXPECT_TRUE(enter.isAccepted());
        EXPECT_EQ(enter.dropAction(), Qt::CopyAction);
        QDropEvent event(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(&window, &event);
        EXPECT_EQ(event.dropAction(), Qt::CopyAction);
    }

    QString label(char const* name) const { return window.findChild<QLabel*>(name)->text(); }
    QAction* action(char const* name) const { return window.findChild<QAction*>(name); }

    std::string cell(int row, int column) const {
        return table->model()->index(row, column).data().toString().toStdString();
    }

    CTempFolder folder;
    QtBpmView view;
    BPMController controller{view};
    BpmWindow window{controller};
    CFileTableView* table = window.findChild<CFileTableView*>("fileTable");
};
