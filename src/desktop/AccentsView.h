// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/SongPicture.h"

#include <QString>
#include <QWidget>
#include <array>

/// The accents of a measure as eight bars behind a name.
/// Thread: main.
class CAccentsView : public QWidget {
    Q_OBJECT

public:
    using Accents = std::array<float, kAccentSteps>;

    CAccentsView(QString name, QWidget* parent);

    /// Weights from 0 to 1; hidden when all are 0.
    void setAccents(Accents const& accents);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] int nameWidth() const;

    QString m_sName;
    Accents m_fAccents{};
};
