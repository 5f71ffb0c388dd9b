// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Songs with all that was heard of them: told how many are known, shown, and written.

#include "desktop/ExportDialog.h"

#include "desktop/SongGatherer.h"
#include "desktop/Texts.h"
#include "export/SongFileName.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QLabel>
#include <QLocale>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStringList>
#include <algorithm>
#include <set>
#include <utility>

namespace {

constexpr char kVersion[] = TACTUS_VERSION;
constexpr std::size_t kPreviewSongs = 3;   // Fixed: they have many lines, or long ones.
constexpr qsizetype kPreviewLines = 40;    // Fixed: a page.
constexpr qsizetype kPreviewLetters = 300; // Fixed: of a line.

QString Shortened(std::string const& text) {
    QStringList lines = QString::fromStdString(text).split(QLatin1Char('\n'));
    if (lines.size() > kPreviewLines) {
        lines = lines.first(kPreviewLines) << QStringLiteral("…");
    }
    for (QString& line : lines) {
        if (line.size() > kPreviewLetters) {
            line = line.left(kPreviewLetters) + QStringLiteral("…");
        }
    }
    return lines.join(QLatin1Char('\n'));
}

/// While many songs are read, which takes its time.
class CWaitCursor {
public:
    CWaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    CWaitCursor(CWaitCursor const&) = delete;
    CWaitCursor& operator=(CWaitCursor const&) = delete;
    ~CWaitCursor() { QGuiApplication::restoreOverrideCursor(); }
};

} // namespace

bool CExportDialog::isIntoFolder() const {
    Format const chosen = format();
    ESongFormat const* const songFormat = std::get_if<ESongFormat>(&chosen);
    return songFormat != nullptr && IsOneASong(*songFormat) && rows().size() > 1;
}

// They are looked for; what is found is shown then.
void CExportDialog::showSongs() {
    m_pPreview->clear();
    std::vector<std::string> paths;
    for (CExportRow const& row : rows()) {
        paths.push_back(row.m_sPath);
    }
    m_pGatherer->look(std::move(paths), NeedsEnvelopes(std::get<ESongFormat>(format())));
}

void CExportDialog::showGathering() {
    Format const chosen = format();
    ESongFormat const* const songFormat = std::get_if<ESongFormat>(&chosen);
    if (songFormat == nullptr) {
        return;
    }
    CGathering const& state = m_pGatherer->state();
    bool const isIdle = state.m_step == CGathering::EStep::Idle;
    bool const isHearing = state.m_step == CGathering::EStep::Hearing;
    bool const canHear = isIdle && state.m_nMissing > state.m_nInVain;
    QString const text = GatheringText(state);
    m_pGathered->setText(text);
    m_pGathering->setVisible(!text.isEmpty());
    m_pGather->setText(isHearing ? tr("Stop") : tr("Find beat grids"));
    m_pGather->setVisible(isHearing || canHear);
    m_pSave->setEnabled(isIdle && state.m_nMissing < state.m_nSongs);
    if (isIdle) {
        showFirstSongs(*songFormat);
    }
}

QString CExportDialog::GatheringText(CGathering const& state) {
    QString const all = QLocale().toString(static_cast<qulonglong>(state.m_nSongs));
    auto const missing = static_cast<int>(state.m_nMissing);
    switch (state.m_step) {
    case CGathering::EStep::Hearing:
        return tr("Finding beat grids: %L1 of %L2 …")
            .arg(state.m_nHeard + state.m_nInVain + 1)
            .arg(std::max<std::size_t>(state.m_nMissing, 1));
    case CGathering::EStep::Looking:
        return tr("Looking for beat grids …");
    case CGathering::EStep::Idle:
        break;
    }
    if (missing == 0) {
        return {};
    }
    bool const canHear = state.m_nMissing > state.m_nInVain;
    if (state.m_nSongs == 1) {
        return canHear ? tr("This song has no beat grid yet.") : tr("This song can't be heard.");
    }
    QString const text =
        canHear
            ? tr("%Ln of %1 row(s) have no beat grid yet and will be missing.", nullptr, missing)
            : tr("%Ln of %1 row(s) can't be heard and will be missing.", nullptr, missing);
    return text.arg(all);
}

void CExportDialog::showFirstSongs(ESongFormat format) {
    CGathering const& state = m_pGatherer->state();
    if (format == ESongFormat::Midi) {
        m_pPreview->setPlainText(tr("What goes into this file is no text."));
    } else if (state.m_nMissing < state.m_nSongs) {
        std::size_t const most = IsOneASong(format) ? 1 : kPreviewSongs;
        m_pPreview->setPlainText(Shortened(SongsText(songs(most), format, kVersion)));
    }
}

/// The first of the songs that are known, in the order of the rows.
std::vector<CTakenSong> CExportDialog::songs(std::size_t most) const {
    std::vector<CTakenSong> songs;
    for (CExportRow const& row : rows()) {
        if (songs.size() >= most) {
            break;
        }
        if (std::optional<CTakenSong> song = m_pGatherer->song(row.m_sPath)) {
            songs.push_back(*std::move(song));
            songs.back().m_sMessage = row.m_sMessage;
        }
    }
    return songs;
}

bool CExportDialog::saveSongs(QString const& path, ESongFormat format) {
    CWaitCursor const waiting;
    std::vector<CTakenSong> const all = songs(rows().size());
    if (isIntoFolder()) {
        return saveInto(path, all, format);
    }
    std::string const text = all.empty() ? std::string() : SongsText(all, format, kVersion);
    if (text.empty()) {
        tellProblem(tr("There are no beats to be written."));
        return false;
    }
    bool const isWritten = write(path, text);
    if (isWritten) {
        tellExported(all.size(), path);
    }
    return isWritten;
}

// No file that is there already is replaced.
bool CExportDialog::saveInto(QString const& folder, std::vector<CTakenSong> const& songs,
                             ESongFormat format) {
    std::set<std::string> taken;
    for (QString const& name : QDir(folder).entryList(QDir::AllEntries | QDir::Hidden)) {
        taken.insert(QFile::encodeName(name).toStdString());
    }
    std::string const ending = std::string(".") + EndingOf(format);
    std::size_t written = 0;
    for (CTakenSong const& song : songs) {
        std::string const text = SongsText(std::span(&song, 1), format, kVersion);
        if (text.empty()) {
            continue;
        }
        std::string const name = SongFileName(song.m_sPath, ending.c_str(), taken);
        if (!write(folder + QLatin1Char('/') + QString::fromStdString(name), text)) {
            return false;
        }
        ++written;
    }
    if (written == 0) {
        tellProblem(tr("There are no beats to be written."));
        return false;
    }
    tellExported(written, folder);
    return true;
}

void CExportDialog::tellExported(std::size_t songs, QString const& place) {
    m_sSummary =
        tr("%Ln song(s) exported to “%1”.", nullptr, static_cast<int>(songs)).arg(Isolated(place));
    if (std::size_t const left = rows().size() - songs; left > 0) {
        m_sSummary +=
            QLatin1Char(' ') + tr("%Ln row(s) left out.", nullptr, static_cast<int>(left));
    }
}
