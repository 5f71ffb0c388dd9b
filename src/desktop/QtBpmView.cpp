// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/QtBpmView.h"

#include "desktop/BpmWindow.h"

#include <utility>

namespace {

constexpr int kDeliveryMilliseconds = 16;      // Derived: 1000 / 60, a frame of a usual screen.
constexpr std::size_t kRowsPerDelivery = 2000; // Tuned: bench/desktop, well under 100 ms each.

} // namespace

QtBpmView::QtBpmView(QObject* parent) : QObject(parent) {
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &QtBpmView::deliver);
    connect(
        this, &QtBpmView::woken, this, [this] { m_timer.start(kDeliveryMilliseconds); },
        Qt::QueuedConnection);
}

void QtBpmView::setWindow(BpmWindow* window) {
    std::scoped_lock const guard(m_lock);
    m_pWindow = window;
    if (window != nullptr) {
        window->setCanClose(m_bCanClose);
    }
}

template <typename Change>
void QtBpmView::note(Change change) {
    {
        std::scoped_lock const guard(m_lock);
        change(m_notes);
        if (std::exchange(m_bWoken, true)) {
            return;
        }
    }
    emit woken();
}

void QtBpmView::reloadRow(std::size_t row) {
    note([row](CNotes& notes) { notes.m_vRows.insert(row); });
}

void QtBpmView::reloadAll() {
    note([](CNotes& notes) { notes.m_bAllRows = true; });
}

void QtBpmView::rowsAdded() {
    note([](CNotes& notes) { notes.m_bRowsAdded = true; });
}

void QtBpmView::statusChanged() {
    note([](CNotes& notes) { notes.m_bStatus = true; });
}

// The one call that takes effect at once: the window keeps the answer in an atomic flag.
void QtBpmView::setCanClose(bool canClose) {
    std::scoped_lock const guard(m_lock);
    m_bCanClose = canClose;
    if (m_pWindow != nullptr) {
        m_pWindow->setCanClose(canClose);
    }
}

void QtBpmView::openHomePage() {
    if (m_pWindow != nullptr) {
        m_pWindow->openHomePage();
    }
}

void QtBpmView::deliver() {
    CNotes notes;
    {
        std::scoped_lock const guard(m_lock);
        notes = std::exchange(m_notes, {});
        m_bWoken = false;
    }
    if (m_pWindow == nullptr) {
        return;
    }
    if (notes.m_bRowsAdded && m_pWindow->takeAddedRows(kRowsPerDelivery)) {
        rowsAdded();
    }
    if (notes.m_bAllRows) {
        m_pWindow->reloadAll();
    } else {
        for (std::size_t const row : notes.m_vRows) {
            m_pWindow->reloadRow(row);
        }
    }
    if (notes.m_bStatus || notes.m_bRowsAdded) {
        m_pWindow->showStatus();
    }
}
