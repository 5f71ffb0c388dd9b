# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Plays one template of genres.py: a list of notes with human timing, and the MIDI file of them."""

import random
import struct

from genres import STYLES

TICKS = 960  # a beat of the MIDI file
DRUMS = {"kick": 36, "snare": 38, "rim": 37, "clap": 39, "hat": 42, "pedal": 44, "ohat": 46,
         "ride": 51, "crash": 49, "cymbal": 49, "tamb": 54, "cow": 56, "shaker": 70, "clave": 75,
         "guiro": 73, "congahi": 63, "congalo": 64, "bongohi": 60, "bongolo": 61, "timbale": 65,
         "agogo": 67, "surdo": 41}
KEEPERS = ("hat", "ohat", "ride", "shaker")  # what a player thins out or fills up at will
TOMS = (50, 48, 47, 45, 43)
STROKES = {"X": 118, "x": 92, "o": 50, "s": 60}
MAJOR = (0, 2, 4, 5, 7, 9, 11)
MINOR = (0, 2, 3, 5, 7, 8, 10)
# Degrees of the chords, one a bar.
PROGRESSIONS = ((0, 3, 4, 0), (0, 4, 5, 3), (0, 5, 3, 4), (0, 0, 3, 4), (0, 3), (1, 4, 0, 0),
                (0, 0, 0, 0), (5, 3, 0, 4), (0, 0, 3, 3, 0, 0, 4, 0))


class Style:
    """A genre: its range, its bar, its instruments and its templates."""

    def __init__(self, head):
        words = head.split()
        self.name = words[0]
        self.low, self.high = (float(w) for w in words[1].split("-"))
        self.beats, self.steps = (int(w) for w in words[2].split("x"))
        fields = dict(w.split("=") for w in words[3:])
        self.jitter = float(fields.get("jitter", 5)) / 1000
        self.swing = float(fields.get("swing", 0))
        self.melody = float(fields.get("melody", 0.4))
        self.programs = {k: [int(p) for p in fields[k].split(",") if p != "-"]
                         for k in ("kit", "bass", "comp", "lead", "pad") if k in fields}
        self.templates = []


def read_styles(text=STYLES):
    styles = []
    for line in text.splitlines():
        if line and line[0] != " ":
            styles.append(Style(line))
        elif line.strip():
            styles[-1].templates.append(dict(w.split("=") for w in line.split()))
    return styles


class Player:
    """One piece: draws everything that a template leaves open from `seed`."""

    def __init__(self, style, template, seed, seconds):
        self.rng = random.Random(seed)
        self.style = style
        self.patterns = dict(template)
        rng = self.rng
        self.bpm = round(style.low * (style.high / style.low) ** rng.random(), 2)
        self.bars = max(4, round(seconds * self.bpm / 60 / style.beats))
        self.bar_steps = style.beats * style.steps
        self.step = 60 / self.bpm / style.steps
        self.scale = rng.choice((MAJOR, MAJOR, MINOR))
        self.key = rng.randrange(12)
        self.chords = rng.choice(PROGRESSIONS)
        self.lag = {}
        self.notes = []  # (seconds, length, channel, key, velocity)
        self.vary_drums()

    def vary_drums(self):
        """Thins out or fills up the pattern that keeps time, as players do."""
        rng, steps = self.rng, self.style.steps
        for voice in [v for v in KEEPERS if v in self.patterns]:
            pattern = self.patterns[voice]
            if voice == "ohat" or rng.random() < 0.6 or len(pattern) % steps:
                continue
            if steps == 4:
                cells = ("x...", "x.x.", "xoxo", "..x.") if rng.random() < 0.6 else ("x.xx", "xxx.")
                self.patterns[voice] = rng.choice(cells) * (len(pattern) // 4)
            elif steps == 2:
                self.patterns[voice] = rng.choice(("x.", "xx", "xo")) * (len(pattern) // 2)

    def degree(self, n):
        return self.scale[n % 7] + 12 * (n // 7)

    def at(self, step):
        """Seconds of a step, swung."""
        late = self.style.swing * self.step if step % 2 else 0
        return step * self.step + late

    def add(self, voice, step, length, channel, key, velocity):
        lag = self.lag.setdefault(voice, self.rng.gauss(0, self.style.jitter / 2))
        start = self.at(step) + lag + self.rng.gauss(0, self.style.jitter)
        velocity = max(12, min(127, round(velocity * self.rng.uniform(0.88, 1.1))))
        self.notes.append((max(0.0, start), length * self.step * 0.92, channel, key, velocity))

    def hold(self, pattern, i):
        """Steps from i that a note there sounds."""
        n = 1
        while n < len(pattern) and pattern[(i + n) % len(pattern)] == "-":
            n += 1
        return n

    def drum_bar(self, bar, fill):
        first = bar * self.bar_steps
        for voice, key in DRUMS.items():
            pattern = self.patterns.get(voice)
            for i in range(self.bar_steps if pattern else 0):
                stroke = STROKES.get(pattern[(first + i) % len(pattern)])
                late = fill and i >= self.bar_steps - self.style.steps and voice != "kick"
                if stroke and not late and self.rng.random() > 0.015:
                    self.add(voice, first + i, 1, 9, key, stroke)
        if fill:
            self.fill(first + self.bar_steps - self.style.steps)

    def fill(self, first):
        toms = sorted(self.rng.sample(TOMS, 3), reverse=True)
        for i in range(self.style.steps):
            if self.rng.random() < 0.8:
                self.add("fill", first + i, 1, 9, toms[min(2, 3 * i // self.style.steps)],
                         90 + 20 * (i % 2 == 0))

    def bass_bar(self, bar, chord):
        pattern = self.patterns.get("bass")
        first = bar * self.bar_steps
        for i in range(self.bar_steps if pattern else 0):
            mark = pattern[(first + i) % len(pattern)]
            offsets = {"r": 0, "f": -3, "t": 2, "o": 7, "w": self.rng.choice((1, 2, 3, 4, -1))}
            if mark in offsets:
                key = 36 + self.key + self.degree(chord + offsets[mark])
                key -= 12 if key > 50 else 0
                self.add("bass", first + i, self.hold(pattern, (first + i) % len(pattern)), 0, key,
                         100 if i % self.style.steps == 0 else 88)

    def comp_bar(self, bar, chord, voice="comp", channel=1, loud=78):
        pattern = self.patterns.get(voice)
        first = bar * self.bar_steps
        tone = 0
        for i in range(self.bar_steps if pattern else 0):
            mark = pattern[(first + i) % len(pattern)]
            length = self.hold(pattern, (first + i) % len(pattern))
            base = 55 + (self.key + 5) % 12  # the key's root from G3 on
            if mark in "xXs":
                for d in (0, 2, 4):
                    self.add(voice, first + i, length, channel, base + self.degree(chord + d),
                             loud * (0.7 if mark == "s" else 1))
            elif mark in "alf":
                degree = {"l": -7, "f": -3}.get(mark, (0, 2, 4, 7, 4, 2)[tone % 6])
                tone += mark == "a"
                self.add(voice, first + i, max(length, 2), channel,
                         base + self.degree(chord + degree), loud + 12 * (mark == "l"))

    def motif(self):
        """Rhythm of two bars: (step, length) with more notes on strong steps."""
        steps, starts = self.style.steps, []
        for i in range(2 * self.bar_steps):
            strong = 1.7 if i % self.bar_steps == 0 else 1.3 if i % steps == 0 else \
                0.8 if steps % 2 == 0 and i % (steps // 2) == 0 else 0.35
            if self.rng.random() < self.style.melody * strong:
                starts.append(i)
        ends = starts[1:] + [2 * self.bar_steps]
        return [(s, min(e - s, 2 * steps)) for s, e in zip(starts, ends)]

    def melody_bars(self, bar, motif, degree):
        for i, length in motif:
            degree += self.rng.choice((-2, -1, -1, 0, 1, 1, 2))
            degree = max(-2, min(11, degree))
            self.add("lead", bar * self.bar_steps + i, length, 2,
                     65 + (self.key + 7) % 12 + self.degree(degree), 92)
        return degree

    def play(self):
        rng, length = self.rng, self.rng.choice((4, 4, 8))
        layers, motif, degree = {}, self.motif(), 4
        for bar in range(self.bars):
            if bar % length == 0:
                first = bar == 0
                layers = {"drums": rng.random() > (0.25 if first else 0.08),
                          "bass": rng.random() > (0.3 if first else 0.06),
                          "comp": rng.random() > 0.1, "lead": rng.random() < 0.6}
                if rng.random() < 0.5:
                    motif = self.motif()
            chord = self.chords[bar % len(self.chords)]
            if layers["drums"]:
                self.drum_bar(bar, bar % length == length - 1 and rng.random() < 0.7)
            if layers["bass"]:
                self.bass_bar(bar, chord)
            if layers["comp"] or not layers["drums"]:
                self.comp_bar(bar, chord)
            if self.style.programs.get("pad"):
                for d in (0, 4):
                    self.notes.append((self.at(bar * self.bar_steps), self.bar_steps * self.step, 3,
                                       48 + self.key + self.degree(chord + d), 60))
            if layers["lead"] and self.style.programs.get("lead") and bar % 2 == 0:
                degree = self.melody_bars(bar, motif, degree)
        return self

    def midi(self):
        """The piece as a MIDI file of one track."""
        rng, events = self.rng, []
        for channel, voice in ((0, "bass"), (1, "comp"), (2, "lead"), (3, "pad"), (9, "kit")):
            program = rng.choice(self.style.programs.get(voice) or [0])
            volume = {"kit": 112, "bass": 104, "comp": 84, "lead": 88, "pad": 58}[voice]
            events.append((0, 0, bytes((0xC0 | channel, program))))
            level = max(20, min(127, round(volume * rng.uniform(0.72, 1.14))))
            events.append((0, 0, bytes((0xB0 | channel, 7, level))))
        for start, length, channel, key, velocity in self.notes:
            key = max(0, min(127, key))
            on, off = (round(t * self.bpm / 60 * TICKS) for t in (start, start + length))
            events.append((on, 2, bytes((0x90 | channel, key, velocity))))
            events.append((max(off, on + 1), 1, bytes((0x80 | channel, key, 0))))
        events.sort(key=lambda e: e[:2])
        microseconds = round(60e6 / self.bpm)
        track = b"\x00\xff\x51\x03" + microseconds.to_bytes(3, "big")
        now = 0
        for tick, _, message in events:
            track += variable(tick - now) + message
            now = tick
        track += b"\x00\xff\x2f\x00"
        head = b"MThd" + struct.pack(">IHHH", 6, 0, 1, TICKS)
        return head + b"MTrk" + struct.pack(">I", len(track)) + track


def variable(n):
    """A MIDI variable-length number."""
    out = bytes((n & 127,))
    while n > 127:
        n >>= 7
        out = bytes((n & 127 | 128,)) + out
    return out
