// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "IDTag/WriteProblem.h"
#include "app/PictureLoader.h"
#include "app/WorkQueue.h"
#include "desktop/SongSound.h"

#include <QString>
#include <QWidget>
#include <atomic>
#include <cstdint>
#include <optional>
#include <string>

class CAccentsView;
class CBeatStrip;
class CElidedLabel;
class CSongBar;
class CSoundControls;
class CTempoLine;
class QLabel;
class QStackedLayout;
class QToolButton;

/// The song that the pane is about.
struct CPaneSong {
    std::string m_sPath; ///< As bytes.
    QString m_sTitle;
    QString m_sArtist;

    friend bool operator==(CPaneSong const&, CPaneSong const&) = default;
};

/// What the list knows of a file's tag; when that changes, the tag may have.
struct CTagSigns {
    std::u16string m_sTempo;
    bool m_bInFile = false;
    bool m_bNotInFile = false;
    EWriteProblem m_problem = EWriteProblem::None;

    friend bool operator==(CTagSigns const&, CTagSigns const&) = default;
};

/// What there is to see of one song: who and what it is, the whole of it, some measures, tempo and
/// accents; or why there is nothing to see. Left and right go from beat to beat, with Ctrl from
/// measure to measure, Space plays and stops.
/// Thread: main; songs are heard on a worker, and only while the pane is shown.
class CSongPane : public QWidget {
    Q_OBJECT

public:
    /// `source` must outlive it.
    CSongPane(IPictureSource& source, CSoundChoice sound, QWidget* parent = nullptr);

    /// Shows this song; nothing: none. The one that is shown already stays as it is.
    void setSong(std::optional<CPaneSong> song);

    /// The tempo that the song has in the list now; 0 for none.
    void setTempo(double bpm);

    /// Reads anew what the song's file says, when these are others than before.
    void setTagSigns(CTagSigns const& signs);

    /// The picture that is shown; null while there is none.
    [[nodiscard]] CSongPicture const* picture() const;

    [[nodiscard]] std::int64_t place() const;

    /// The keys go to the picture from now on.
    void takeFocus();

    [[nodiscard]] bool isPlaying() const { return m_sound.isPlaying(); }

    QSize sizeHint() const override;

signals:
    /// A picture, or the reason for none, has taken the place of "reading".
    void settled();

    /// The song is to have this tempo: a reading was chosen, or one was tapped.
    void tempoChosen(double bpm);

    /// Sent on the worker, received on the main thread.
    void arrived(std::uint64_t request, CSongPicturePtr picture);

    /// Likewise. `tempo`: as it stands in the file's tag.
    void tagRead(std::uint64_t request, QString const& tempo);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void setUpHead(QWidget& page);
    void setUpSound();
    QWidget* makePage();
    void take(std::uint64_t request, CSongPicturePtr const& picture);
    void readTag();
    void showMessage(QString const& text);
    void showPicture(CSongPicturePtr const& picture);
    void goTo(std::int64_t sample, bool isTold);
    void goOn(std::optional<CBeat> const& beat);
    void showPlace();
    void togglePlaying();
    void showPlaying();
    void setTitleFont();

    std::optional<CPaneSong> m_song;
    std::uint64_t m_nRequest = 0; // the latest
    CTagSigns m_signs;
    std::atomic<std::uint64_t> m_nTagRequest = 0; // the latest
    QStackedLayout* m_pStack;
    QLabel* m_pMessage;
    CElidedLabel* m_pTitle;
    QToolButton* m_pPlay;
    QLabel* m_pPlace;
    QLabel* m_pFacts;
    QLabel* m_pTempo;
    CElidedLabel* m_pTag;
    CSongBar* m_pBar;
    CBeatStrip* m_pStrip;
    CAccentsView* m_pAccentsA;
    CAccentsView* m_pAccentsB;
    CSoundControls* m_pControls;
    CTempoLine* m_pTempoLine;
    double m_dTempo = 0.0; // in the list
    CSongPicturePtr m_pShown;
    CSongSound m_sound;
    CWorkQueue m_tags;       // reads them
    CPictureLoader m_loader; // both come last: their end waits for workers that may still deliver
};
