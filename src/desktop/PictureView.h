// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/PictureSource.h"
#include "desktop/PicturePaint.h"

#include <QPixmap>
#include <QWidget>
#include <cstdint>
#include <optional>

/// A part of a song's picture with the place where one is. The picture is painted once and kept
/// until what it shows has changed; a place that moves costs a line. A screen reader takes it for a
/// slider along the song.
/// Units: samples at the engine's rate.
/// Thread: main.
class CPictureView : public QWidget {
    Q_OBJECT

public:
    explicit CPictureView(QWidget* parent);

    /// Null: there is nothing to show.
    void setPicture(CSongPicturePtr picture);

    /// Moves to `sample`. `isTold`: a screen reader speaks it.
    void setPlace(std::int64_t sample, bool isTold);

    [[nodiscard]] CSongPicture const* picture() const { return m_pPicture.get(); }
    [[nodiscard]] std::int64_t place() const { return m_nPlace; }

    /// What is shown of the song.
    [[nodiscard]] virtual CPictureSpan span() const = 0;

    QSize minimumSizeHint() const override;

signals:
    /// The user wants to go to `sample`.
    void placeChosen(std::int64_t sample);

protected:
    virtual void paintPicture(QPainter& painter, CPictureColors const& colors) const = 0;
    virtual void onPictureChanged() {}
    virtual void onPlaceChanged() {}

    /// What is shown has changed.
    void repaintPicture();

    /// The sample at a place in the widget, within the song.
    [[nodiscard]] std::int64_t sampleAt(double x) const;

    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;

private:
    void paintFocus(QPainter& painter, CPictureColors const& colors) const;
    [[nodiscard]] QRect placeRect() const;

    CSongPicturePtr m_pPicture;
    std::int64_t m_nPlace = 0;
    QPixmap m_kept; // null when it must be painted again
};

/// The whole song; a press goes to where it was.
class CSongBar : public CPictureView {
    Q_OBJECT

public:
    explicit CSongBar(QWidget* parent);

    [[nodiscard]] CPictureSpan span() const override;
    QSize sizeHint() const override;

    /// The part that the strip shows, to be framed; empty frames nothing.
    void setFrame(double first, double last);

protected:
    void paintPicture(QPainter& painter, CPictureColors const& colors) const override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    double m_dFrameFirst = 0.0;
    double m_dFrameLast = 0.0;
};

/// Some measures: the wheel zooms about the pointer, a drag pans, a click goes there.
class CBeatStrip : public CPictureView {
    Q_OBJECT

public:
    explicit CBeatStrip(QWidget* parent);

    [[nodiscard]] CPictureSpan span() const override;
    QSize sizeHint() const override;

    /// Shows `factor` times as much, and what is at `x` stays there.
    void zoom(double factor, double x);

signals:
    /// What is shown has changed.
    void spanChanged();

protected:
    void paintPicture(QPainter& painter, CPictureColors const& colors) const override;
    void onPictureChanged() override;
    void onPlaceChanged() override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void show(double first, double shown);

    double m_dFirst = 0.0;
    double m_dShown = 1.0;         // samples from edge to edge
    std::optional<double> m_grabX; // of a press, until its button is released
    double m_dGrabFirst = 0.0;
    bool m_bPanning = false;
};
