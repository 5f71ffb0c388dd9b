# SPDX-FileCopyrightText: 2026 The Tactus authors
# SPDX-License-Identifier: MIT
"""What a screen reader knows of a window: names, roles and states on the accessibility bus.

Objects vanish while they are asked; such answers count as none and are asked for again.
"""

import subprocess

import gi

gi.require_version("Atspi", "2.0")
# pylint: disable=wrong-import-position
from gi.repository import Atspi, GLib

from driver import wait_for

State = Atspi.StateType


def start_session_bus(environment):
    """A session bus of its own, put into the environment; it starts the accessibility bus."""
    process = subprocess.Popen(
        ["dbus-daemon", "--session", "--nofork", "--print-address=1"], env=environment, text=True,
        stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    environment["DBUS_SESSION_BUS_ADDRESS"] = process.stdout.readline().strip()
    environment["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
    return process


def asked(question, otherwise=None):
    """The answer; `otherwise` when the object, or the whole program, has gone."""
    try:
        return question()
    except GLib.Error:
        return otherwise


def name_of(node):
    return asked(node.get_name, "")


def description_of(node):
    return asked(node.get_description, "")


def role_of(node):
    return asked(node.get_role_name, "")


def has_state(node, *states):
    found = asked(node.get_state_set)
    return found is not None and all(found.contains(state) for state in states)


def children_of(node):
    count = asked(node.get_child_count, 0)
    found = (asked(lambda i=i: node.get_child_at_index(i)) for i in range(count))
    return [child for child in found if child is not None]


def shown_below(node):
    """All that is on the screen below a node, the node first; a table stands for its cells."""
    yield node
    if role_of(node) in ("table", "tree", "combo box"):
        return
    for child in children_of(node):
        if has_state(child, State.SHOWING):
            yield from shown_below(child)


def find(node, role, name=None):
    """The first on the screen with this role and, where one is given, this beginning of a name."""
    for child in shown_below(node):
        if role_of(child) == role and (name is None or name_of(child).startswith(name)):
            return child
    return None


def text_of(node):
    """What stands in a field."""
    length = asked(lambda: Atspi.Text.get_character_count(node), 0)
    return asked(lambda: Atspi.Text.get_text(node, 0, length), "")


def value_of(node):
    return asked(lambda: Atspi.Value.get_current_value(node))


def key_of(node):
    """The key of what a menu has to offer."""
    return asked(lambda: Atspi.Action.get_key_binding(node, 0), "")


def labels_of(node):
    """Names of what says what a control is for."""
    labels = []
    for relation in asked(node.get_relation_set, []):
        if relation.get_relation_type() == Atspi.RelationType.LABELLED_BY:
            labels += [name_of(relation.get_target(i)) for i in range(relation.get_n_targets())]
    return labels


class Table:
    """Rows and cells as they are spoken."""

    def __init__(self, node):
        self.node = node

    def cell(self, row, column):
        return asked(lambda: Atspi.Table.get_accessible_at(self.node, row, column))

    def rows(self):
        """Texts of all rows; None while the table changes."""
        count = asked(lambda: Atspi.Table.get_n_rows(self.node), 0)
        width = asked(lambda: Atspi.Table.get_n_columns(self.node), 0)
        cells = [[self.cell(row, column) for column in range(width)] for row in range(count)]
        if any(cell is None for row in cells for cell in row):
            return None
        return [[name_of(cell) for cell in row] for row in cells]

    def column(self, column):
        rows = self.rows()
        return None if rows is None else [row[column] for row in rows]

    def selected(self):
        """The rows whose first cell says that it is selected."""
        count = asked(lambda: Atspi.Table.get_n_rows(self.node), 0)
        return [row for row in range(count)
                if (cell := self.cell(row, 0)) and has_state(cell, State.SELECTED)]


class Reader:
    """Follows the focus, as a screen reader does, by what the window tells of it."""

    def __init__(self):
        Atspi.init()
        self._place = None
        self._listener = Atspi.EventListener.new(self._follow)
        self._listener.register("object:state-changed:focused")
        self._desktop = Atspi.get_desktop(0)
        self._desktop.set_cache_mask(Atspi.Cache.NONE)

    def _follow(self, event):
        if event.detail1 == 1:
            self._place = event.source

    def listen(self):
        while GLib.MainContext.default().iteration(False):
            pass

    def focus(self):
        """What has the focus; None while nothing has, or it is on its way."""
        self.listen()
        return self._place if self._place and has_state(self._place, State.FOCUSED) else None

    def forget(self):
        """The next focus is news, also one that comes back to where it was."""
        self.listen()
        self._place = None

    def wait_focus(self, role, name=""):
        def there():
            place = self.focus()
            fits = place and role_of(place) == role and name_of(place).startswith(name)
            return place if fits else None
        return wait_for(there, f"the focus on the {role} {name}")

    def windows(self, program):
        """The program's windows on the screen; one that ran before may still be listed, without any."""
        self.listen()
        return [window for application in children_of(self._desktop)
                if name_of(application) == program for window in children_of(application)
                if has_state(window, State.SHOWING)]
