#!/usr/bin/python3
"""read_hints.py <program> <x11 or wayland>: reads the letters above the piano over AT-SPI, on the keyboard layouts of many
countries, which the program is given one after the other while it runs.

Runs on the display that DISPLAY names, on a session bus of its own (dbus-run-session); with "wayland" under Weston, in a window
of that display whose keyboard it takes.
"""
import contextlib
import ctypes
import glob
import os
import shutil
import subprocess
import sys
import tempfile

from screen_reader import LIMIT_S, find, find_application, running_program, wait_for

# A layout, its variant, and what stands on the keys that play, from middle C upwards.
LAYOUTS = [
    ("us", "", "Z S X D C V G B H N J M Q 2 W 3 E R 5 T 6 Y 7 U I 9 O 0 P [ = ]"),
    ("gb", "", "Z S X D C V G B H N J M Q 2 W 3 E R 5 T 6 Y 7 U I 9 O 0 P [ = ]"),
    ("de", "", "Y S X D C V G B H N J M Q 2 W 3 E R 5 T 6 Z 7 U I 9 O 0 P Ü ´ +"),
    ("fr", "", "W S X D C V G B H N J , A é Z \" E R ( T - Y è U I ç O à P ^ = $"),
    ("es", "", "Z S X D C V G B H N J M Q 2 W 3 E R 5 T 6 Y 7 U I 9 O 0 P ` ¡ +"),
    ("it", "", "Z S X D C V G B H N J M Q 2 W 3 E R 5 T 6 Y 7 U I 9 O 0 P è ì +"),
    ("br", "", "Z S X D C V G B H N J M Q 2 W 3 E R 5 T 6 Y 7 U I 9 O 0 P ´ = ["),
    ("pt", "", "Z S X D C V G B H N J M Q 2 W 3 E R 5 T 6 Y 7 U I 9 O 0 P + « ´"),
    ("se", "", "Z S X D C V G B H N J M Q 2 W 3 E R 5 T 6 Y 7 U I 9 O 0 P Å ´ ¨"),
    ("cz", "", "Y S X D C V G B H N J M Q ě W š E R ř T ž Z ý U I í O é P ú ´ )"),
    ("pl", "", "Z S X D C V G B H N J M Q 2 W 3 E R 5 T 6 Y 7 U I 9 O 0 P [ = ]"),
    ("tr", "", "Z S X D C V G B H N J M Q 2 W 3 E R 5 T 6 Y 7 U I 9 O 0 P Ğ - Ü"),
    ("ru", "", "Я Ы Ч В С М П И Р Т О Ь Й 2 Ц 3 У К 5 Е 6 Н 7 Г Ш 9 Щ 0 З Х = Ъ"),
    ("ua", "", "Я І Ч В С М П И Р Т О Ь Й 2 Ц 3 У К 5 Е 6 Н 7 Г Ш 9 Щ 0 З Х = Ї"),
    ("gr", "", "Ζ Σ Χ Δ Ψ Ω Γ Β Η Ν Ξ Μ ; 2 ς 3 Ε Ρ 5 Τ 6 Υ 7 Θ Ι 9 Ο 0 Π [ = ]"),
    ("il", "", "ז ד ס ג ב ה ע נ י מ ח צ / 2 ' 3 ק ר 5 א 6 ט 7 ו ן 9 ם 0 פ ] = ["),
    ("us", "dvorak", "; O Q E J K I X D B H M ' 2 , 3 . P 5 Y 6 F 7 G C 9 R 0 L / ] ="),
    ("us", "colemak", "Z R X S C V D B H K N M Q 2 W 3 F P 5 G 6 J 7 L U 9 Y 0 ; [ = ]"),
    ("jp", "", "Z S X D C V G B H N J M Q 2 W 3 E R 5 T 6 Y 7 U I 9 O 0 P @ ^ ["),
]
MOST_LAYOUTS = 4  # of one keyboard
BY_PLACE = "ComputerKeys=2\n"


def use_layouts(layouts):
    subprocess.run(["setxkbmap", "-layout", ",".join(l for l, _, _ in layouts), "-variant", ",".join(v for _, v, _ in layouts)],
                   check=True)


def lock_layout(number):
    """Makes one of the keyboard's layouts the active one, as a desktop's switch does."""
    core_keyboard = 0x100
    xlib = ctypes.CDLL("libX11.so.6")
    xlib.XOpenDisplay.restype = ctypes.c_void_p
    display = ctypes.c_void_p(xlib.XOpenDisplay(None))
    xlib.XkbLockGroup(display, core_keyboard, number)
    xlib.XSync(display, 0)
    xlib.XCloseDisplay(display)


def find_hints(pid):
    """The bar, which tells the letters as its description: those of a US keyboard, or any others that are as many."""
    app = find_application(pid)
    return app and find(app, lambda node: len((node.get_description() or "").split(" ")) == len(LAYOUTS[0][2].split(" ")))


def expect_hints(hints, layout):
    name, variant, expected = layout
    told = ""

    def is_told():
        nonlocal told
        hints.clear_cache()
        told = hints.get_description()
        return told == expected

    try:
        wait_for("the letters", is_told)
    except SystemExit:
        raise SystemExit(f"FAILED: {name}({variant}) shows\n{told}\ninstead of\n{expected}") from None


def read_on_x11(program):
    use_layouts(LAYOUTS[:1])
    with running_program(program, "en_US", {"QT_QPA_PLATFORM": "xcb"}, BY_PLACE) as pid:
        hints = wait_for("the letters above the piano", lambda: find_hints(pid))
        for layout in LAYOUTS:
            use_layouts([layout])
            expect_hints(hints, layout)


@contextlib.contextmanager
def running_compositor():
    """The folder with the socket of a compositor whose window has the display's keyboard."""
    with tempfile.TemporaryDirectory() as runtime:
        process = subprocess.Popen(
            ["weston", "--backend=x11-backend.so", "--shell=kiosk-shell.so", "--use-pixman", "--no-config", "--width=1350",
             "--height=750", "--idle-time=0", "--socket=kivora-hints"],
            env=dict(os.environ, XDG_RUNTIME_DIR=runtime), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        try:
            wait_for("the compositor", lambda: os.path.exists(runtime + "/kivora-hints"))
            yield runtime
        finally:
            process.terminate()
            process.wait(LIMIT_S)


def focus_compositor():
    """Its window has no name, and is the last one where the root is counted."""
    windows = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", ".*"], check=False, capture_output=True,
                             text=True).stdout.split()
    focus = ["xdotool", "windowfocus", windows[-1], "mousemove", "640", "20", "click", "1"] if windows else ["false"]
    return subprocess.run(focus, check=False, capture_output=True).returncode == 0


def read_on_wayland(program):
    for first in range(0, len(LAYOUTS), MOST_LAYOUTS):
        layouts = LAYOUTS[first:first + MOST_LAYOUTS]
        use_layouts(layouts)
        with running_compositor() as runtime, running_program(
                program, "en_US", {"QT_QPA_PLATFORM": "wayland", "WAYLAND_DISPLAY": "kivora-hints", "XDG_RUNTIME_DIR": runtime},
                BY_PLACE) as pid:
            hints = wait_for("the letters above the piano", lambda: find_hints(pid))
            wait_for("the compositor's window", focus_compositor)
            for number, layout in enumerate(layouts):
                lock_layout(number)
                expect_hints(hints, layout)


def main():
    program, system = sys.argv[1:3]
    if system == "wayland" and not (shutil.which("weston") and glob.glob("/usr/lib/*/qt6/plugins/platforms/libqwayland*")):
        print("Not checked: weston or qt6-wayland is not installed.")
        return
    {"x11": read_on_x11, "wayland": read_on_wayland}[system](program)
    print(f"{system}: the letters of {len(LAYOUTS)} layouts")


main()
