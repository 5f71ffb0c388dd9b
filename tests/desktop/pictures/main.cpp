// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Draws the window in its states, to be looked at and for the guide:
//
//     desktop_pictures light|dark|contrast LOCALE FOLDER SONG...
//
// Each state goes into FOLDER as a PNG; `CSitting` names them. QT_SCALE_FACTOR makes them larger.
// scripts/guide_pictures.py has all of them drawn for the guide.

#include "desktop/Language.h"
#include "desktop/Outlines.h"
#include "desktop/pictures/Sitting.h"
#include "platform/AudioSetup.h"
#include "support/Unprivileged.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QPalette>
#include <QSettings>
#include <cstdio>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr int kArguments = 4; // Fixed: in front of the songs.

QStringList const kOwnKinds{"wav", "mp3", "aiff", "aif", "caf", "m4a"}; // that the window lists

using CColours = std::initializer_list<std::pair<QPalette::ColorRole, char const*>>;

QPalette Coloured(CColours colours, char const* faded) {
    QPalette palette;
    for (auto const& [role, colour] : colours) {
        palette.setColor(role, QColor(colour));
    }
    for (auto const role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, QColor(faded));
    }
    return palette;
}

/// The colours of dark desktops and of those for eyes that need contrast. Placeholders are left
/// unset, as such desktops do.
QPalette PaletteOf(std::string const& name) {
    if (name == "dark") {
        return Coloured({{QPalette::Window, "#2a2e32"},
                         {QPalette::WindowText, "#fcfcfc"},
                         {QPalette::Base, "#1b1e20"},
                         {QPalette::AlternateBase, "#232629"},
                         {QPalette::Text, "#fcfcfc"},
                         {QPalette::Button, "#31363b"},
                         {QPalette::ButtonText, "#fcfcfc"},
                         {QPalette::Highlight, "#3daee9"},
                         {QPalette::HighlightedText, "#000000"}},
                        "#888c90");
    }
    return Coloured({{QPalette::Window, "#000000"},
                     {QPalette::WindowText, "#ffffff"},
                     {QPalette::Base, "#000000"},
                     {QPalette::AlternateBase, "#000000"},
                     {QPalette::Text, "#ffffff"},
                     {QPalette::Button, "#000000"},
                     {QPalette::ButtonText, "#ffff00"},
                     {QPalette::Highlight, "#ffff00"},
                     {QPalette::HighlightedText, "#000000"}},
                    "#b0b0b0");
}

/// The home of somebody whose songs these are: pictures name folders, always the same ones. It is
/// gone at the end.
class CHome {
public:
    CHome() : m_bMade(QDir().mkdir(m_folder.path())) {}
    ~CHome() {
        if (m_bMade) {
            m_folder.removeRecursively();
        }
    }
    CHome(CHome const&) = delete;
    CHome& operator=(CHome const&) = delete;

    [[nodiscard]] bool isMade() const { return m_bMade; }

    [[nodiscard]] QString path() const { return m_folder.path(); }

    /// Makes a folder. Returns: its path.
    [[nodiscard]] QString folder(QString const& name) const {
        m_folder.mkpath(name);
        return m_folder.filePath(name);
    }

private:
    QDir m_folder{QDir::temp().filePath("mira")};
    bool m_bMade = false;
};

/// Copies of `songs`, which get tags. Returns: the paths of those that the window lists.
std::vector<std::string> CopySongs(QStringList const& songs, QString const& music) {
    std::vector<std::string> listed;
    for (QString const& song : songs) {
        QString const copy = music + "/" + QFileInfo(song).fileName();
        QFile::copy(song, copy);
        if (kOwnKinds.contains(QFileInfo(song).suffix())) {
            listed.push_back(copy.toStdString());
        }
    }
    return listed;
}

void DrawFirst(CHome const& home, QString const& folder, std::vector<std::string> const& songs) {
    CSitting sitting(folder);
    sitting.DrawEmpty();
    sitting.DrawDrag(songs.front());
    sitting.DrawDialog("actionPreferences", "preferences");
    sitting.Run(songs);
    sitting.Look("done");
    sitting.DrawSong();
    sitting.DrawSmall();
    sitting.ShutPane();
    sitting.DrawFilters();
    sitting.DrawTyping();
    sitting.DrawMenus();
    sitting.DrawExport(home.folder("Documents") + "/Saturday.xml");
    sitting.DrawDialog("actionKeys", "keys");
    sitting.DrawHidden();
    sitting.DrawCorrections();
    sitting.DrawAgain();
    sitting.DrawColumns();
}

/// Songs that are known, beside what was left out and what can't be read.
void DrawSecond(CHome const& home, QString const& folder) {
    QString const music = home.folder("Music");
    {
        CSitting looking(folder);
        looking.DrawOpenPanel(music.toStdString());
        looking.DrawKinds(music.toStdString());
    }
    QString const closed = home.folder("Music/Old tapes");
    QFile::setPermissions(closed, {});
    {
        CSitting refused(folder);
        CUnprivileged const rights{folder.toStdString(), home.path().toStdString(),
                                   music.toStdString()};
        refused.DrawUnread(music.toStdString());
    }
    QFile::setPermissions(closed, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

} // namespace

int main(int argc, char** argv) {
    SetUpAudio();
    CHome const home; // nobody's own is read or changed
    if (!home.isMade()) {
        std::fprintf(stderr, "%s is in the way\n", qPrintable(home.path()));
        return 2;
    }
    qputenv("HOME", home.path().toLocal8Bit());
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, home.folder(".config"));
    for (char const* const place : {"XDG_STATE_HOME", "XDG_CACHE_HOME"}) {
        qputenv(place, home.folder(".cache").toLocal8Bit());
    }
    QApplication app(argc, argv);
    QStringList const words = QApplication::arguments();
    if (words.size() <= kArguments) {
        std::fputs("desktop_pictures light|dark|contrast LOCALE FOLDER SONG...\n", stderr);
        return 2;
    }
    QApplication::setStyle("Fusion");
    if (words[1] != "light") {
        QApplication::setPalette(PaletteOf(words[1].toStdString()));
    }
    COutlines const outlines;
    CLanguage const language{QLocale(words[2])};
    QDir().mkpath(words[3]);
    DrawFirst(home, words[3], CopySongs(words.mid(kArguments), home.folder("Music")));
    DrawSecond(home, words[3]);
    return 0;
}
