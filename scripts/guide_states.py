# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""What the window's pictures show, how it is dressed in them, and the guide's page of them."""

from typing import NamedTuple


class Look(NamedTuple):
    name: str
    colours: str
    locale: str
    scale: str
    title: str


class State(NamedTuple):
    name: str
    title: str
    sentence: str


LOOKS = [Look("light", "light", "en_GB", "1", "Light"),
         Look("dark", "dark", "en_GB", "1", "Dark"),
         Look("contrast", "contrast", "en_GB", "1", "High contrast"),
         Look("large", "light", "en_GB", "2", "200 %"),
         Look("german", "light", "de_DE", "1", "German"),
         Look("arabic", "light", "ar_EG", "1", "Arabic")]

STATES = [
    State("empty", "Empty", "Before there is a file, the window says what it does, and that it writes."),
    State("drag", "Files over the window", "A frame says that they can be dropped."),
    State("open", "Adding files", "Ctrl+O lists files and folders; greyed ones come in with their folder only."),
    State("running", "Analyzing", "The row and the line at the bottom tell how far it is."),
    State("notice", "Closing meanwhile", "The window stays, says why, and asks."),
    State("ended", "After a run", "The line at the bottom says what came of it; a mark tells of a problem."),
    State("stopped", "After a stop", "Tempos that are still to be found again are faint."),
    State("kinds", "Other kinds", "Files of other kinds were left out; here nothing is written, as the line at "
          "the bottom says."),
    State("unread", "A folder that is closed", "It could not be read, and is named."),
    State("folders", "Folders that could not be read", "All of them, one a line."),
    State("hidden", "Hidden rows", "They can be brought back; no file was touched."),
    State("reading", "The pane, reading", "The song of the selected row is being heard."),
    State("done", "A song", "The pane shows what its tempo was found from."),
    State("pane", "The keyboard in the pane", "A frame is around the picture that has it."),
    State("playing", "Playing", "The button stops it; the line is where the sound is."),
    State("taps", "Tapping", "Eight taps make a tempo, which Enter takes."),
    State("tip", "Under the pointer", "A tip tells time, measure and beat."),
    State("unheard", "A file that is no music", "The line below the table and the pane say why."),
    State("filter", "Filtered by tempo", "The rows from 120 to 175."),
    State("problems", "Filtered by problems", "The rows with a problem; the line below says which."),
    State("review", "To review", "The rows whose tempo has another likely reading."),
    State("typing", "Typing a tempo", "In a table that is sorted by it."),
    State("corrected", "Corrected", "Two tempos were doubled: pencils, and a way back at the bottom."),
    State("undone", "Taken back", "The line at the bottom says what."),
    State("hand", "By hand", "The rows whose tempo a person has set."),
    State("columns", "More columns", "Other reading, key, length, state, and whether it is stored."),
    State("small", "As small as it gets", "With the pane open nothing is cut off."),
    State("menu", "The menu", "Everything that has no button."),
    State("corrections", "Its tempos", "The ratios, the next reading, and typing."),
    State("further", "Its columns", "Those that can be shown beside title, artist and tempo."),
    State("row", "A row's own menu", "What can be done with the selected rows."),
    State("question", "A question", "Tempos that came with the files are replaced only when you say so."),
    State("ungathered", "Export, before", "It tells how many rows have no beat grid yet."),
    State("export", "Export", "The first lines of what is written."),
    State("exported", "Exported", "How many songs went where."),
    State("preferences", "Preferences", "As they are at first."),
    State("stored", "What is stored", "The preferences list all that is remembered."),
    State("keys", "Keys", "Every key, with a button that opens this guide."),
]


def picture(look, state):
    place = f"window/{look.name}/{state.name}.png"
    return f"[![{state.title}, {look.title}]({place})]({place})"


def page():
    lines = ["# Pictures of the window", "",
             "Every state of [the window](window.md), as it looks in light and dark colours, in those of high",
             "contrast, at twice the size, in German, and in Arabic from right to left. Open a picture to see it in",
             "its own size."]
    for state in STATES:
        lines += ["", f"## {state.title}", "", state.sentence]
        for left, right in zip(LOOKS[::2], LOOKS[1::2]):
            lines += ["", f"| {left.title} | {right.title} |", "|---|---|",
                      f"| {picture(left, state)} | {picture(right, state)} |"]
    return "\n".join(lines) + "\n"
