// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/BpmView.h"

#include <QObject>
#include <QTimer>
#include <mutex>
#include <set>

class BpmWindow;

/// Carries the controller's calls from any thread to the window on the main thread. Calls only
/// leave a note; the main thread works the notes off at most sixty times a second, so that
/// neither thread can flood the other.
class QtBpmView : public QObject, public IBpmView {
    Q_OBJECT

public:
    /// Notes are kept until a window is there.
    explicit QtBpmView(QObject* parent = nullptr);

    /// Thread: main. Null takes the window away again.
    void setWindow(BpmWindow* window);

    void reloadRow(std::size_t row) override;
    void reloadAll() override;
    void rowsAdded() override;
    void statusChanged() override;
    void setCanClose(bool canClose) override;
    void openHomePage() override;

signals:
    /// There are notes. Sent on the thread that left them, received on the main thread.
    void woken();

private:
    struct CNotes {
        std::set<std::size_t> m_vRows;
        bool m_bAllRows = false;
        bool m_bRowsAdded = false;
        bool m_bStatus = false;
    };

    template <typename Change>
    void note(Change change);
    void deliver();

    std::mutex m_lock; // Guards the four members below.
    CNotes m_notes;
    bool m_bWoken = false;
    bool m_bCanClose = true;
    BpmWindow* m_pWindow = nullptr;
    QTimer m_timer;
};
