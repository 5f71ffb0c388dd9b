#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""Walks through tactus-desktop with the keyboard and judges by what a screen reader is told.

Every key that the guide lists is pressed in the real window on a virtual display. Ends with 77
where the accessibility bus isn't installed.
"""

import shutil
import sys
import unittest

from driver import make_long, wait_for

for needed in ("/usr/libexec/at-spi-bus-launcher", "dbus-daemon", "Xvfb", "xdotool"):
    if shutil.which(needed) is None:
        print(f"skipped: {needed} is missing")
        sys.exit(77)
try:
    import screen_reader as seen
    from screen_reader import State
except (ImportError, ValueError) as missing:
    print(f"skipped: {missing}")
    sys.exit(77)

from spoken_window import TEMPO, TITLE, UNTITLED, WORLD, Window

# What the menu offers with a key, as the guide has it.
MENU_KEYS = {
    "Analyze all again …": "Shift+F5", "Export …": "Ctrl+E", "Undo": "Ctrl+Z",
    "Redo": "Ctrl+Shift+Z", "Copy": "Ctrl+C", "Select all": "Ctrl+A", "Hide": "Del",
    "Show the song": "F9", "Table or song": "F6", "Preferences …": "Ctrl+,", "Keys …": "F1",
    "Close window": "Ctrl+W", "Quit": "Ctrl+Q"}
CORRECTION_KEYS = {
    "Tempo ×2": "Ctrl+D", "Tempo ÷2": "Ctrl+H", "Tempo 3:2": "Ctrl+3", "Tempo 2:3": "Ctrl+Shift+3",
    "Tempo 4:3": "Ctrl+4", "Tempo 3:4": "Ctrl+Shift+4", "Next reading of the tempo": "Alt+Return",
    "Type the tempo": "F2"}
ELSEWHERE_KEYS = {
    "Add": "Ctrl+O", "Analyze": "F5", "Stop": "Esc", "Menu": "F10", "Filter": "Ctrl+F",
    "Sort by Title": "Ctrl+Alt+1", "Sort by Artist": "Ctrl+Alt+2", "Sort by Tempo": "Ctrl+Alt+3",
    "First and last row": "Home, End", "Filters": "Alt+1, Alt+2, Alt+3, Alt+4, Alt+5",
    "In the song: beat by beat": "Left, Right",
    "In the song: measure by measure": "Ctrl+Left, Ctrl+Right",
    "In the song: to its start and end": "Home, End",
    "In the song: play and pause": "Space", "In the song: tap the tempo": "T",
    "In the song: take the tapped tempo": "Return"}


def tearDownModule():
    WORLD.close()


class TableKeys(Window):
    def test_rows_speak_what_they_show(self):
        self.start()
        self.assertEqual(self.table.rows(),
                         [["Baker", "Yan", "100.00"], ["Able", "Zoe", "120.00"],
                          [UNTITLED, "", "140.00"]])

    def test_home_end_and_arrows_go_over_the_rows(self):
        self.start()
        for key, name in (("End", UNTITLED), ("Home", "Baker"), ("Down", "Able")):
            self.press(key)
            cell = self.reader.wait_focus("table cell", name)
            wait_for(lambda cell=cell: seen.has_state(cell, State.SELECTED), f"{name} selected")

    def test_columns_are_sorted_up_down_and_as_added(self):
        self.start()
        added = ["Baker", "Able", UNTITLED]
        for key, up, down in ((1, ["Able", "Baker", UNTITLED], [UNTITLED, "Baker", "Able"]),
                              (2, [UNTITLED, "Baker", "Able"], ["Able", "Baker", UNTITLED]),
                              (3, ["Baker", "Able", UNTITLED], [UNTITLED, "Able", "Baker"])):
            for order in (up, down, added):
                self.press(f"ctrl+alt+{key}")
                self.wait_rows(TITLE, order)

    def test_all_rows_are_selected_and_copied_as_they_are_shown(self):
        self.start()
        self.press("ctrl+a")
        wait_for(lambda: self.table.selected() == [0, 1, 2], "all rows")
        self.press("ctrl+c", "ctrl+f")
        field = self.reader.wait_focus("text", "Filter")
        self.press("ctrl+v")
        wait_for(lambda: "100.00" in seen.text_of(field) and "Able" in seen.text_of(field)
                 and UNTITLED in seen.text_of(field), "the copied rows")

    def test_words_find_rows_and_escape_shows_all(self):
        self.start()
        self.press("ctrl+f")
        self.reader.wait_focus("text", "Filter")
        self.type("able")
        self.wait_rows(TITLE, ["Able"])
        self.reader.forget()
        self.press("Return")
        wait_for(lambda: seen.role_of(self.reader.focus() or self.window) in ("table", "table cell"),
                 "the focus on the table")
        self.press("ctrl+f", "Escape")
        self.wait_rows(TITLE, ["Baker", "Able", UNTITLED])
        self.press("ctrl+f")
        self.type("110-130")
        self.wait_rows(TEMPO, ["120.00"])

    def test_filters_are_chosen_by_number(self):
        self.start()
        self.select(0)
        self.press("ctrl+d")
        self.wait_find("check box", "By hand 1")
        for key, name, titles in ((2, "To do 0", []), (3, "To review 0", []),
                                  (4, "By hand 1", ["Baker"]), (5, "Problems 0", []),
                                  (1, "All 3", ["Baker", "Able", UNTITLED])):
            self.press(f"alt+{key}")
            chip = self.wait_find("check box", name)
            wait_for(lambda chip=chip: seen.has_state(chip, State.CHECKED), f"{name} checked")
            self.wait_rows(TITLE, titles)
        self.press("shift+Tab", "shift+Tab")
        self.reader.wait_focus("check box", "All 3")
        self.press("Right")
        self.reader.wait_focus("check box", "To do 0")

    def test_hidden_rows_come_back(self):
        self.start()
        self.select(1)
        self.press("Delete")
        self.wait_rows(TITLE, ["Baker", UNTITLED])
        notice = self.wait_find("alert", "1 file hidden")
        for button in ("Bring back", "Close"):
            self.assertIsNotNone(seen.find(notice, "push button", button))
        self.press("ctrl+z")
        self.wait_rows(TITLE, ["Baker", "Able", UNTITLED])
        wait_for(lambda: self.find("alert") is None, "the notice's end")


class TempoKeys(Window):
    def test_ratios_correct_the_tempo_and_undo_names_the_step(self):
        self.start()
        self.select(1)
        for key, tempo in (("ctrl+d", "240.00"), ("ctrl+h", "120.00"), ("ctrl+3", "180.00"),
                           ("ctrl+shift+3", "120.00"), ("ctrl+4", "160.00"),
                           ("ctrl+shift+4", "120.00"), ("ctrl+d", "240.00")):
            self.press(key)
            self.wait_rows(TEMPO, ["100.00", tempo, "140.00"])
        self.assertEqual(seen.description_of(self.table.cell(1, TEMPO)), "set by hand")
        self.wait_find("push button", "Undo: ×2 on 1 file")
        self.press("ctrl+z")
        self.wait_rows(TEMPO, ["100.00", "120.00", "140.00"])
        self.wait_label("Undone: ×2 on 1 file")
        self.press("ctrl+shift+z")
        self.wait_rows(TEMPO, ["100.00", "240.00", "140.00"])
        self.wait_label("Done again: ×2 on 1 file")

    def test_a_ratio_that_would_lead_too_far_is_disabled_and_says_why(self):
        self.start()
        self.select(1)
        for tempo in ("240.00", "480.00", "960.00"):
            self.press("ctrl+d")
            self.wait_rows(TEMPO, ["100.00", tempo, "140.00"])
        button = self.wait_find("push button", "Tempo ×2")
        wait_for(lambda: not seen.has_state(button, State.SENSITIVE), "×2 disabled")
        self.assertIn("A tempo would be above 999.", seen.description_of(button))

    def test_a_tempo_is_typed_and_escape_leaves_it(self):
        self.start()
        self.select(1)
        for keys, tempo in ((("9", "9", "comma", "5", "Return"), "99.50"),
                            (("7", "0", "Escape"), "99.50")):
            self.press("F2")
            self.reader.wait_focus("text", "Tempo")
            self.press("ctrl+a", *keys)
            wait_for(lambda: seen.role_of(self.reader.focus() or self.window)
                     in ("table", "table cell"), "the focus back on the table")
            self.wait_rows(TEMPO, ["100.00", tempo, "140.00"])

    def test_the_next_reading_is_taken_and_told_by_the_pane(self):
        self.start()
        self.select(1)
        self.wait_picture()
        first = self.wait_find("radio button", "120.00")
        wait_for(lambda: seen.has_state(first, State.CHECKED), "the first reading on")
        others = [seen.name_of(node).split()[0] for node in seen.shown_below(self.window)
                  if seen.role_of(node) == "radio button"][1:]
        self.assertNotEqual(others, [])
        self.press("alt+Return")
        self.wait_rows(TEMPO, ["100.00", others[0], "140.00"])
        second = self.wait_find("radio button", others[0])
        wait_for(lambda: seen.has_state(second, State.CHECKED), "the second reading on")
        self.assertFalse(seen.has_state(first, State.CHECKED))


class PaneKeys(Window):
    def test_the_pane_opens_shuts_and_takes_the_focus(self):
        self.start()
        self.select(0)
        self.wait_picture()
        self.press("F9")
        wait_for(lambda: self.find("filler", "Song") is None, "the pane shut")
        self.press("Return")
        self.wait_picture()
        self.press("F6")
        self.reader.wait_focus("slider", "Some measures")
        self.press("F6")
        self.reader.wait_focus("table", "Files")
        self.press("F6")
        self.reader.wait_focus("slider", "Some measures")
        self.press("F9")
        self.reader.wait_focus("table", "Files")

    def test_arrows_go_by_beats_and_measures(self):
        self.start()
        self.select(1)  # 120 BPM: a beat takes 22050 samples
        self.wait_picture()
        self.press("F6")
        strip = self.reader.wait_focus("slider", "Some measures")
        self.assertIn("120.00 BPM found", seen.description_of(strip))
        self.press("Right")
        wait_for(lambda: seen.value_of(strip) > 0, "the first beat")
        first = seen.value_of(strip)

        def go(key):
            before = seen.value_of(strip)
            self.press(key)
            wait_for(lambda: seen.value_of(strip) != before, key)
            return seen.value_of(strip)
        # Of a click track the beats lie within a hundredth of a second.
        self.assertAlmostEqual(go("Right"), first + 22050, delta=441)
        self.assertAlmostEqual(go("Left"), first, delta=0)
        measure = go("ctrl+Right")
        self.assertAlmostEqual(go("ctrl+Right"), measure + 4 * 22050, delta=441)
        self.assertAlmostEqual(go("ctrl+Left"), measure, delta=0)
        self.press("End")
        wait_for(lambda: seen.value_of(strip) > 44 * 44100, "the end")
        self.wait_label("0:4")
        self.press("Home")
        wait_for(lambda: seen.value_of(strip) == 0, "the beginning")
        self.wait_label("0:00.0")

    def test_taps_are_told_and_taken(self):
        self.start()
        self.select(0)
        self.wait_picture()
        self.press("F6")
        self.reader.wait_focus("slider", "Some measures")
        self.world.display.run("xdotool", "key", "--delay", "300", *"ttttt")
        taps = self.wait_label("5 taps: ")
        taken = seen.name_of(taps).split()[-1]
        self.press("Return")
        self.wait_rows(TEMPO, [taken, "120.00", "140.00"])

    def test_playing_says_why_it_can_not(self):
        self.start()
        self.select(0)
        self.wait_picture()
        play = self.wait_find("push button", "Play")
        self.assertFalse(seen.has_state(play, State.SENSITIVE))
        self.assertIn(seen.description_of(play),
                      ("There is no device to play on.",
                       "Playing needs the package tactus-desktop-sound."))
        self.press("F6", "space")
        self.reader.wait_focus("slider", "Some measures")
        self.assertEqual(seen.name_of(play), "Play")


class WindowKeys(Window):
    def test_tab_goes_through_every_control_and_each_has_a_name(self):
        self.start()
        self.select(0)
        self.wait_picture()
        self.reader.forget()
        walked = []
        while True:
            self.press("Tab")
            place = wait_for(self.reader.focus, f"a focus behind {walked[-1:]}")
            self.reader.forget()
            control = (seen.role_of(place), seen.name_of(place))
            if walked and control == walked[0]:
                break
            self.assertNotIn(control, walked, "Tab turns in a circle")
            walked.append(control)
        names = [name for _, name in walked]
        self.assertNotIn("", names)
        begin = names.index("All 3")
        order = [name.split(" · ")[0] for name in names[begin:] + names[:begin]]
        # As they stand; Play, Analyze and Stop have nothing to do here.
        self.assertEqual(order, [
            "All 3", "Filter", "Files", "Whole song", "Some measures", "100.00", "Tap", "Add",
            "Tempo ÷2", "Tempo ×2", "Tempo 3:2", "Menu", "Tactus home page"])
        # Of those that exclude each other, the chosen one is reached; arrows go to the others.
        kinds = ("push button", "check box", "radio button", "combo box", "slider", "text", "table")
        wanted = {(seen.role_of(node), seen.name_of(node)) for node in seen.shown_below(self.window)
                  if seen.role_of(node) in kinds
                  and seen.has_state(node, State.FOCUSABLE, State.SENSITIVE)
                  and (seen.role_of(node) not in ("check box", "radio button")
                       or seen.has_state(node, State.CHECKED))}
        self.assertEqual(set(walked), wanted)

    def test_the_menu_shows_the_keys_of_its_entries(self):
        self.start()
        self.press("F10", "Down")
        menu = self.reader.wait_focus("menu item", "Analyze all again").get_parent()
        self.assertEqual((seen.role_of(menu), seen.name_of(menu)), ("popup menu", "Menu"))
        entries = {seen.name_of(entry): seen.key_of(entry) for entry in seen.children_of(menu)}
        self.assertEqual({name: key for name, key in entries.items() if key}, MENU_KEYS)
        self.reader.forget()
        self.press("Escape")
        wait_for(self.reader.focus, "the focus back")

    def test_the_list_of_keys_has_every_key(self):
        self.start()
        self.press("F1")
        dialog = wait_for(lambda: self.shown("dialog", "Keys"), "the keys")
        tree = wait_for(lambda: seen.find(dialog, "tree", "Keys"), "their list")
        texts = [seen.name_of(cell) for cell in seen.children_of(tree)
                 if seen.role_of(cell) == "table cell"]
        listed = list(zip(texts[1::2], texts[0::2]))
        for name, key in {**MENU_KEYS, **CORRECTION_KEYS, **ELSEWHERE_KEYS}.items():
            self.assertIn((name.removesuffix(" …"), key), listed)

    def test_dialogues_name_their_controls_and_give_the_focus_back(self):
        self.start()
        self.select(0)
        for key, title, controls in (
                ("ctrl+o", "Add files and folders", ("Add this folder",)),
                ("ctrl+e", "Export", ("Save as …", "Cancel")),
                ("ctrl+comma", "Preferences", ("OK", "Cancel", "Restore defaults")),
                ("shift+F5", "Analyze again", ("Analyze all again", "Cancel")),
                ("F1", "Keys", ("Open the guide", "Close"))):
            self.reader.forget()
            self.press(key)
            dialog = wait_for(lambda title=title: self.shown("dialog", title)
                              or self.shown("alert", title), title)
            wait_for(self.reader.focus, f"a focus in {title}")
            for name in controls:
                self.assertIsNotNone(seen.find(dialog, "push button", name), name)
            self.check_names(dialog, title)
            self.reader.forget()
            self.press("Escape")
            place = wait_for(self.reader.focus, f"the focus after {title}")
            self.assertIn(seen.role_of(place), ("table", "table cell"))

    def check_names(self, dialog, title):
        """Every control has a name, and what shows a choice only is labelled by another."""
        for node in seen.shown_below(dialog):
            role = seen.role_of(node)
            if not seen.has_state(node, State.FOCUSABLE) or role == "label":
                continue
            self.assertNotEqual(seen.name_of(node), "", f"a {role} in {title}")
            if role == "combo box":
                self.assertNotEqual(seen.labels_of(node), [], f"{seen.name_of(node)} in {title}")

    def test_escape_stops_f5_goes_on_and_closing_is_told(self):
        long = [self.folder / f"long{i}.wav" for i in range(60)]
        for path in long:
            make_long(path)
        self.start(*long)
        stop = self.wait_find("push button", "Stop")
        analyze = self.wait_find("push button", "Analyze")
        wait_for(lambda: seen.has_state(stop, State.SENSITIVE), "Stop enabled")
        self.press("ctrl+w")
        notice = self.wait_find("alert", "Still working on ")
        self.reader.wait_focus("push button", "Keep going")
        self.assertIsNotNone(seen.find(notice, "push button", "Stop and close"))
        self.press("space")
        wait_for(lambda: self.find("alert") is None, "the notice's end")
        self.press("Escape")
        wait_for(lambda: seen.has_state(analyze, State.SENSITIVE), "Analyze enabled")
        self.assertFalse(seen.has_state(stop, State.SENSITIVE))
        self.press("F5")
        wait_for(lambda: seen.has_state(stop, State.SENSITIVE), "Stop enabled again")
        self.press("ctrl+q")
        self.assertEqual(self.process.wait(60), 0)

    def test_ctrl_w_closes_the_window(self):
        self.start()
        self.press("ctrl+w")
        self.assertEqual(self.process.wait(60), 0)


if __name__ == "__main__":
    unittest.main()
