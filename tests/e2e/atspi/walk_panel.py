#!/usr/bin/python3
"""walk_panel.py <program> <locale>: walks the panel, its menu and its dialogs over AT-SPI as a screen reader does.

Every control that the keyboard can reach has a name and a role that says what it is; what can be switched tells its state,
what has a value tells it and its range, and what a mouse can press has an action. Runs on the display that DISPLAY names, on
a session bus of its own (dbus-run-session). Exits with 1 and the list of what is missing.
"""
import subprocess
import sys
import time

from screen_reader import LIMIT_S, SHORT_MS, Atspi, GLib, find, find_application, running_program, wait_for

State = Atspi.StateType
Role = Atspi.Role

# What a control can be, and what each kind has to offer.
ACTIVE = {Role.PUSH_BUTTON, Role.TOGGLE_BUTTON, Role.CHECK_BOX, Role.RADIO_BUTTON, Role.PUSH_BUTTON_MENU}
VALUED = {Role.SLIDER, Role.DIAL, Role.SPIN_BUTTON, Role.SCROLL_BAR}
ENTRIES = {Role.MENU_ITEM, Role.CHECK_MENU_ITEM, Role.RADIO_MENU_ITEM, Role.MENU}
OTHERS = {Role.COMBO_BOX, Role.LIST, Role.LIST_ITEM, Role.TEXT, Role.ENTRY, Role.PANEL, Role.FRAME, Role.DIALOG,
          Role.ALERT, Role.LABEL, Role.DOCUMENT_WEB, Role.SCROLL_PANE, Role.TABLE, Role.TREE,
          Role.FILLER, Role.GROUPING, Role.LINK, Role.TABLE_CELL, Role.POPUP_MENU, Role.WINDOW, Role.VIEWPORT,
          Role.STATIC, Role.PAGE_TAB, Role.LAYERED_PANE}


# How the ways to some dialogs are called.
ABOUT = {"en_US": "About", "ru_RU": "О программе"}
SOUND_CHECK = {"en_US": "Sound Check...", "ru_RU": "Проверка звука..."}
PITCH_BEND = {"en_US": "Pitch bend", "ru_RU": "Высота тона"}
OPENED_BY_THE_MENU = {
    "en_US": ["Test My Keyboard...", "Velocity...", "How the Metronome Sounds...", "Latch and Swing...", "MIDI Learn..."],
    "ru_RU": ["Проверка клавиатуры...", "Сила нажатия клавиш...", "Как звучит метроном...", "Удержание и свинг...",
              "Управление с MIDI-клавиатуры..."],
}


class Walk:
    def __init__(self, pid):
        self.pid = pid
        self.missing = []
        self.controls = 0

    def application(self):
        return find_application(self.pid)

    def windows(self):
        app = self.application()
        children = [app.get_child_at_index(i) for i in range(app.get_child_count())] if app else []
        return [c for c in children if c is not None and c.get_state_set().contains(State.SHOWING)]

    def check(self, node, where):
        """One node and what is below it."""
        states = node.get_state_set()
        if not states.contains(State.SHOWING) and not states.contains(State.VISIBLE):
            return
        role = node.get_role()
        name = node.get_name() or ""
        place = f"{where} / {name or '?'} ({node.get_role_name()})"
        is_control = role in ACTIVE | VALUED | ENTRIES or (states.contains(State.FOCUSABLE) and role in OTHERS)
        if states.contains(State.FOCUSABLE) and role not in ACTIVE | VALUED | ENTRIES | OTHERS:
            self.missing.append(f"{place}: has no role that says what it is")
        is_separator = role in ENTRIES and not states.contains(State.SENSITIVE) and not name
        if is_control and not is_separator:
            self.controls += 1
            if not name and role != Role.SCROLL_BAR and role != Role.FRAME:
                self.missing.append(f"{place}: has no name")
            actions = node.get_action_iface()
            is_at_work = states.contains(State.SENSITIVE)
            if is_at_work and role in ACTIVE | ENTRIES and (actions is None or actions.get_n_actions() == 0):
                self.missing.append(f"{place}: has no action")
            if is_at_work and role in ACTIVE | VALUED and not states.contains(State.FOCUSABLE) and role != Role.SCROLL_BAR:
                self.missing.append(f"{place}: cannot be reached without a mouse")
            if states.contains(State.CHECKED) and not (states.contains(State.CHECKABLE) or role in ENTRIES | ACTIVE):
                self.missing.append(f"{place}: is checked and cannot be")
            if role in VALUED:
                value = node.get_value_iface()
                if value is None:
                    self.missing.append(f"{place}: has no value")
                elif not value.get_minimum_value() <= value.get_current_value() <= value.get_maximum_value():
                    self.missing.append(f"{place}: has a value outside of its range")
        for i in range(node.get_child_count()):
            child = node.get_child_at_index(i)
            if child is not None:
                self.check(child, place)


def press(*keys):
    subprocess.run(["xdotool", "key", *keys], check=True)


def act(node):
    """Carries out a node's first action. One that opens a dialog answers when that is closed, which is not waited for."""
    Atspi.set_timeout(SHORT_MS, SHORT_MS)
    try:
        node.get_action_iface().do_action(0)
    except GLib.Error:
        pass
    finally:
        Atspi.set_timeout(LIMIT_S * 1000, LIMIT_S * 1000)


def main():
    program, locale = sys.argv[1:3]
    with running_program(program, locale, {"QT_QPA_PLATFORM": "xcb"}) as pid:
        walk(pid, locale)


def walk(pid, locale):
    walker = Walk(pid)
    wait_for("the program on the bus", walker.application)
    window = wait_for("the window", lambda: next(iter(walker.windows()), None))
    number = wait_for("the window on the display", lambda: subprocess.run(
        ["xdotool", "search", "--onlyvisible", "--name", "^Kivora LX$"], capture_output=True, text=True,
        check=False).stdout.split("\n")[0])

    def focus():
        subprocess.run(["xdotool", "windowfocus", number], check=False)
        return window.get_state_set().contains(State.ACTIVE)

    wait_for("the keyboard's focus", focus)
    walker.check(window, locale)
    panel = walker.controls
    keys = find(window, lambda node: node.get_child_count() == 61)
    if panel < 35 or keys is None:
        walker.missing.append(f"{locale}: only {panel} controls on the panel, or no piano")
    else:
        # A key is played and told by its action, without a mouse.
        key = keys.get_child_at_index(24)
        def is_pressed():
            key.get_action_iface().do_action(0)  # for a moment, in which a busy machine may not look
            return key.get_state_set().contains(State.PRESSED)

        wait_for("the key that was pressed", is_pressed)
        wait_for("the key that was let go", lambda: not key.get_state_set().contains(State.PRESSED))

    for key, what in (("F4", "the settings"), ("F2", "the list of presets"), ("F3", "the list for saving")):
        wait_for("the keyboard's focus", focus)
        press(key)
        dialog = wait_for(what, lambda: next((w for w in walker.windows()
                                              if w.get_role() == Role.DIALOG), None))
        before = walker.controls
        walker.check(dialog, locale)
        if walker.controls - before < 3:
            walker.missing.append(f"{locale}: nothing to work in {what}")
        subprocess.run(["xdotool", "search", "--onlyvisible", "--name", dialog.get_name(), "windowfocus"], check=False)
        wait_for("the dialog's focus", lambda: dialog.get_state_set().contains(State.ACTIVE))
        press("Escape")
        wait_for("the end of " + what, lambda: not any(w.get_role() == Role.DIALOG for w in walker.windows()))

    def dialogs():
        return [w for w in walker.windows() if w.get_role() in (Role.DIALOG, Role.ALERT)]

    def take_focus(dialog, what):
        subprocess.run(["xdotool", "search", "--onlyvisible", "--name", dialog.get_name(), "windowfocus"], check=False)
        wait_for("the focus of " + what, lambda: dialog.get_state_set().contains(State.ACTIVE))

    def walk_what_opens(node, what):
        before = dialogs()
        act(node)
        opened = wait_for(what, lambda: next((w for w in dialogs() if w not in before), None))
        counted = walker.controls
        walker.check(opened, locale)
        if walker.controls == counted:
            walker.missing.append(f"{locale}: nothing to work in {what}")
        take_focus(opened, what)
        press("Escape")
        wait_for("the end of " + what, lambda: len(dialogs()) == len(before))

    def button(inside, name):
        return wait_for(name, lambda: find(inside, lambda n: n.get_name() == name and n.get_role() in ACTIVE))

    wait_for("the keyboard's focus", focus)
    walk_what_opens(button(window, ABOUT[locale]), "the credits")
    wait_for("the keyboard's focus", focus)
    press("F4")
    settings = wait_for("the settings", lambda: next(iter(dialogs()), None))
    walk_what_opens(button(settings, SOUND_CHECK[locale]), "the sound check")
    take_focus(settings, "the settings")
    press("Escape")
    wait_for("the end of the settings", lambda: not dialogs())

    wait_for("the keyboard's focus", focus)
    # A menu that pops up is no child of anything; a screen reader hears of the entry that gets the focus.
    heard = []
    listener = Atspi.EventListener.new(lambda event: heard.append(event.source))
    listener.register("object:state-changed:focused")
    press("F10")
    press("Down")
    again = time.monotonic() + LIMIT_S / 10

    def heard_entry():
        nonlocal again
        entry = next((n for n in heard if n.get_role() in ENTRIES), None)
        if entry is None and time.monotonic() > again:
            press("Down")  # the first one may have come before the program knew that somebody listens
            again = time.monotonic() + LIMIT_S / 10
        return entry

    entry = wait_for("an entry of the menu", heard_entry)
    menu = entry.get_parent()
    before = walker.controls
    walker.check(menu, locale)
    if walker.controls - before < 20:
        walker.missing.append(f"{locale}: only {walker.controls - before} entries in the menu")
    entries = {name: find(menu, lambda n, name=name: n.get_name() == name) for name in OPENED_BY_THE_MENU[locale]}
    press("Escape")
    for name, entry in entries.items():
        wait_for("the keyboard's focus", focus)
        walk_what_opens(entry, name)
    wait_for("the keyboard's focus", focus)
    before = walker.controls
    press("alt+w")
    wait_for("the wheels and pedals", lambda: find(window, lambda n: n.get_name() == PITCH_BEND[locale]
                                                   and n.get_state_set().contains(State.SHOWING)))
    walker.check(window, locale)
    if walker.controls - before <= panel:
        walker.missing.append(f"{locale}: nothing more on the panel with its wheels and pedals")
    listener.deregister("object:state-changed:focused")

    for line in walker.missing:
        print("MISSING", line)
    print(f"{locale}: {panel} controls on the panel, {walker.controls} in all")
    if walker.missing:
        raise SystemExit(1)


main()
