"""What the tests over AT-SPI have in common: the program that runs, its place on the bus, and waiting for what it tells."""
import contextlib
import os
import subprocess
import tempfile
import time
import warnings

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

warnings.simplefilter("ignore", DeprecationWarning)  # of names that the library of Debian 12 has no others for

LIMIT_S = 60
SHORT_MS = 800

Atspi.set_timeout(LIMIT_S * 1000, LIMIT_S * 1000)  # of a machine that is busy with other tests


def wait_for(what, condition):
    """Polls, as there is no event for everything; ends the run when the time is up."""
    end = time.monotonic() + LIMIT_S
    while time.monotonic() < end:
        try:
            found = condition()
        except GLib.Error:
            found = None  # something went while it was looked at
        if found:
            return found
        GLib.MainContext.default().iteration(False)
        time.sleep(0.02)
    raise SystemExit(f"FAILED: {what} did not come")


def find(node, condition):
    if condition(node):
        return node
    for i in range(node.get_child_count()):
        child = node.get_child_at_index(i)
        found = find(child, condition) if child is not None else None
        if found is not None:
            return found
    return None


def find_application(pid):
    desktop = Atspi.get_desktop(0)
    for i in range(desktop.get_child_count()):
        child = desktop.get_child_at_index(i)
        if child is not None and child.get_process_id() == pid:
            return child
    return None


@contextlib.contextmanager
def running_program(program, locale, variables, settings=""):
    """The process number of the program, which runs with these settings, in a home folder of its own, until the end of the
    block."""
    with tempfile.TemporaryDirectory() as home:
        os.makedirs(home + "/data/Brennholt/Kivora")
        with open(home + "/data/Brennholt/Kivora/Kivora.ini", "w", encoding="utf-8") as file:
            # Without settings the card of the first start stands where the arpeggiators are.
            file.write("[Kivora]\n" + settings)
        environment = dict(os.environ, HOME=home, XDG_DATA_HOME=home + "/data", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
                           KIVORA_AUDIO_DRIVER="file", KIVORA_AUDIO_FILE=home + "/sound.wav", KIVORA_MIDI="portmidi",
                           **variables)
        process = subprocess.Popen([program, "--locale", locale], env=environment)
        try:
            yield process.pid
        finally:
            process.terminate()
            process.wait(LIMIT_S)
