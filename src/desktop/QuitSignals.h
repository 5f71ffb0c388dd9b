// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <array>

/// Turns SIGTERM, SIGINT and SIGHUP into a signal of the event loop, so that the program ends the
/// way it ends by hand. One object in the process.
/// Thread: main.
class CQuitSignals : public QObject {
    Q_OBJECT

public:
    explicit CQuitSignals(QObject* parent = nullptr);
    ~CQuitSignals() override;

signals:
    void quitRequested();

private:
    std::array<int, 2> m_vPipe{-1, -1};
};
