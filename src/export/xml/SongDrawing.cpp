// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// From top to bottom: names and facts; envelope upwards and bass downwards over one time line; fade
// points above and mix points below it; beats and measures; accents on the left, readings on the
// right.

#include "export/xml/SongDrawing.h"

#include "export/DecimalText.h"
#include "export/TakenSong.h"
#include "export/TempoMap.h"
#include "export/xml/XmlText.h"
#include "song/KeyCodes.h"

#include <algorithm>
#include <filesystem>
#include <pugixml.hpp>
#include <vector>

namespace {

// Fixed: the layout, in the picture's units.
constexpr double kWidth = 1000.0;
constexpr double kHeight = 430.0;
constexpr double kLeft = 20.0;
constexpr double kRight = 980.0;
constexpr double kEnvelopeTop = 70.0;
constexpr double kTimeLine = 200.0;
constexpr double kBassBottom = 260.0;
constexpr double kBeatsTop = 268.0;
constexpr double kBeatsBottom = 288.0;
constexpr double kMarkSize = 6.0;
constexpr double kBarsTop = 330.0;
constexpr double kBarsBottom = 400.0;
constexpr double kReadingsLeft = 520.0;
constexpr double kBarWidth = 16.0;
constexpr int kColumns = 960;
constexpr std::size_t kMostReadings = 6;

constexpr char kStyle[] =
    "\n:root { --paper: #ffffff; --ink: #20242a; --quiet: #8a919c; --energy: #3a78b8;"
    " --bass: #b8662f; --beat: #b9c0ca; --measure: #59616c; --part: #eef1f5; --mix: #2f8a4e;"
    " --fade: #8a4fb0; }\n"
    "@media (prefers-color-scheme: dark) { :root { --paper: #16181c; --ink: #e6e8eb;"
    " --quiet: #8d949e; --energy: #6aa9e6; --bass: #e39a63; --beat: #4a515b; --measure: #a3abb6;"
    " --part: #23272e; --mix: #62c784; --fade: #c08be4; } }\n"
    "text { fill: var(--ink); font: 13px sans-serif; } .name { font-size: 20px; }"
    " .quiet { fill: var(--quiet); } .paper { fill: var(--paper); } .part { fill: var(--part); }"
    " .energy { fill: var(--energy); } .bass { fill: var(--bass); } .mix { fill: var(--mix); }"
    " .fade { fill: var(--fade); } .beat { stroke: var(--beat); stroke-width: .5; }"
    " .measure { stroke: var(--measure); stroke-width: .7; }\n";

std::string Unit(double value) {
    return DecimalText(value, 2);
}

/// Appends "X,Y", with a space before all but the first.
void AddPoint(std::string& points, double x, double y) {
    points += points.empty() ? "" : " ";
    points += Unit(x);
    points += ',';
    points += Unit(y);
}

/// The picture on its way.
class CDrawing {
public:
    explicit CDrawing(CTakenSong const& song) : m_song(song) {
        m_root = m_document.append_child("svg");
        Set(m_root, "xmlns", "http://www.w3.org/2000/svg");
        Set(m_root, "viewBox", "0 0 " + Unit(kWidth) + " " + Unit(kHeight));
        Set(m_root, "role", "img");
        m_root.append_child("title").text().set(XmlText(Name()).c_str());
        m_root.append_child("desc").text().set(kDrawingMark);
        m_root.append_child("style").text().set(kStyle);
        AddBox("paper", 0.0, 0.0, kWidth, kHeight);
    }

    void AddFacts() {
        AddText("name", kLeft, 30.0, Name());
        std::string facts = DecimalText(m_song.m_dTempo, 2) + " BPM";
        std::string const key = PlainKey(m_song.m_harmony);
        facts += key.empty() ? "" : " · " + key + " · " + CamelotCode(m_song.m_harmony);
        AddText("quiet", kLeft, 52.0, facts + " · " + DecimalText(m_song.m_dSeconds, 1) + " s");
    }

    void AddParts() {
        if (m_song.m_dIntroEnd > 0.0) {
            AddBox("part", kLeft, kEnvelopeTop, XOf(m_song.m_dIntroEnd) - kLeft,
                   kBassBottom - kEnvelopeTop);
        }
        double const outro = XOf(m_song.m_dOutroStart);
        if (m_song.m_dOutroStart > 0.0 && outro < kRight) {
            AddBox("part", outro, kEnvelopeTop, kRight - outro, kBassBottom - kEnvelopeTop);
        }
    }

    /// Levels from the time line on to `edge`, above or below it.
    void AddEnvelope(char const* kind, CLevels const& levels, double edge) {
        std::size_t const size = levels.m_vLevels.size();
        if (size == 0) {
            return;
        }
        std::string points;
        AddPoint(points, kLeft, kTimeLine);
        for (std::size_t column = 0; column < kColumns; ++column) {
            std::size_t const from = column * size / kColumns;
            std::size_t const to = std::max((column + 1) * size / kColumns, from + 1);
            auto const begin = levels.m_vLevels.begin();
            auto const highest =
                *std::max_element(begin + static_cast<std::ptrdiff_t>(from),
                                  begin + static_cast<std::ptrdiff_t>(std::min(to, size)));
            double const y = kTimeLine + (edge - kTimeLine) * static_cast<double>(highest) / 255.0;
            AddPoint(points, kLeft + static_cast<double>(column), y);
        }
        AddPoint(points, kRight, kTimeLine);
        pugi::xml_node shape = m_root.append_child("polygon");
        Set(shape, "class", kind);
        Set(shape, "points", points);
    }

    void AddBeats() {
        for (CBeatTime const& beat : WholeBeats(m_song.m_beats)) {
            bool const isDownbeat = beat.m_nPlace == 1;
            AddLine(isDownbeat ? "measure" : "beat", XOf(beat.m_dSeconds),
                    isDownbeat ? kBeatsTop : (kBeatsTop + kBeatsBottom) / 2.0, kBeatsBottom);
        }
    }

    void AddPoints(char const* kind, std::vector<double> const& seconds, double y, double tip) {
        for (double const point : seconds) {
            double const x = XOf(point);
            pugi::xml_node shape = m_root.append_child("polygon");
            Set(shape, "class", kind);
            std::string points;
            AddPoint(points, x - kMarkSize / 2, y);
            AddPoint(points, x + kMarkSize / 2, y);
            AddPoint(points, x, tip);
            Set(shape, "points", points);
        }
    }

    /// Accents of a measure's half beats, one bar each.
    void AddAccents(char const* kind, std::vector<float> const& weights, double left) {
        float const top = weights.empty() ? 0.0f : *std::ranges::max_element(weights);
        for (std::size_t i = 0; i < weights.size() && top > 0.0f; ++i) {
            AddBar(kind, left + static_cast<double>(i) * (kBarWidth + 2.0),
                   static_cast<double>(std::max(weights[i], 0.0f) / top), std::to_string(i / 2 + 1),
                   i % 2 == 0);
        }
    }

    void AddReadings() {
        auto const& readings = m_song.m_candidates.m_vCandidates;
        for (std::size_t i = 0; i < std::min(readings.size(), kMostReadings); ++i) {
            AddBar("energy", kReadingsLeft + 75.0 * static_cast<double>(i),
                   static_cast<double>(readings[i].m_fScore),
                   DecimalText(static_cast<double>(readings[i].m_fBpm), 2), true);
        }
    }

    void AddHeading(double x, char const* text) { AddText("quiet", x, kBarsTop - 12.0, text); }

    [[nodiscard]] std::string Text() const { return TextOf(m_document); }

private:
    static void Set(pugi::xml_node node, char const* name, std::string const& value) {
        node.append_attribute(name).set_value(XmlText(value).c_str());
    }

    [[nodiscard]] double XOf(double seconds) const {
        double const share = m_song.m_dSeconds > 0.0 ? seconds / m_song.m_dSeconds : 0.0;
        return kLeft + (kRight - kLeft) * std::clamp(share, 0.0, 1.0);
    }

    [[nodiscard]] std::string Name() const {
        if (m_song.m_sTitle.empty()) {
            return std::filesystem::path(m_song.m_sPath).filename().native();
        }
        return m_song.m_sArtist.empty() ? m_song.m_sTitle
                                        : m_song.m_sArtist + " – " + m_song.m_sTitle;
    }

    void AddText(char const* kind, double x, double y, std::string const& text) {
        pugi::xml_node node = m_root.append_child("text");
        Set(node, "class", kind);
        Set(node, "x", Unit(x));
        Set(node, "y", Unit(y));
        node.text().set(XmlText(text).c_str());
    }

    void AddBox(char const* kind, double x, double y, double width, double height) {
        pugi::xml_node node = m_root.append_child("rect");
        Set(node, "class", kind);
        Set(node, "x", Unit(x));
        Set(node, "y", Unit(y));
        Set(node, "width", Unit(std::max(width, 0.0)));
        Set(node, "height", Unit(height));
    }

    void AddLine(char const* kind, double x, double top, double bottom) {
        pugi::xml_node node = m_root.append_child("line");
        Set(node, "class", kind);
        Set(node, "x1", Unit(x));
        Set(node, "x2", Unit(x));
        Set(node, "y1", Unit(top));
        Set(node, "y2", Unit(bottom));
    }

    void AddBar(char const* kind, double x, double share, std::string const& text, bool isNamed) {
        double const height = (kBarsBottom - kBarsTop) * std::clamp(share, 0.0, 1.0);
        AddBox(kind, x, kBarsBottom - height, kBarWidth, height);
        if (isNamed) {
            AddText("quiet", x, kBarsBottom + 16.0, text);
        }
    }

    CTakenSong const& m_song;
    pugi::xml_document m_document;
    pugi::xml_node m_root;
};

} // namespace

std::string SongDrawingOf(CTakenSong const& song) {
    CDrawing drawing(song);
    drawing.AddFacts();
    drawing.AddParts();
    drawing.AddEnvelope("energy", song.m_energy, kEnvelopeTop);
    drawing.AddEnvelope("bass", song.m_bass, kBassBottom);
    drawing.AddPoints("fade", song.m_vFades, kEnvelopeTop - kMarkSize, kEnvelopeTop);
    drawing.AddPoints("mix", song.m_vIntroMixes, kBassBottom + kMarkSize, kBassBottom);
    drawing.AddPoints("mix", song.m_vOutroMixes, kBassBottom + kMarkSize, kBassBottom);
    drawing.AddBeats();
    drawing.AddHeading(kLeft, "Accents of a measure: all, bass");
    drawing.AddAccents("energy", song.m_vEnergyAccents, kLeft);
    drawing.AddAccents("bass", song.m_vBassAccents, kLeft + 170.0);
    drawing.AddHeading(kReadingsLeft, "Readings of the tempo");
    drawing.AddReadings();
    return drawing.Text();
}
