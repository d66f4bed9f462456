#!/usr/bin/env python3
"""Presses real keys and answers real message boxes, and asks nuvhost what the instructions saw.

desktop_test.py NUVHOST            the build for Linux
desktop_test.py WINE NUVHOST.exe   the build for Windows, by the script that runs Wine

Everything happens on an X server of its own (Xvfb), pressed by xdotool; under Wine in a prefix of
its own, since all programs of a prefix share one desktop.
"""

import contextlib
import ctypes
import json
import os
import pathlib
import queue
import re
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import threading
import time

ONE_KEY, ONE_KEY_TEXT, ANY_KEY = "_Nuv_TestOneKey_", "_Nuv_TestOneKeyStr_", "_Nuv_TestAnyChar_"
BOX, BEEP = "_Nuv_System_CSystemMsgBox_", "_Nuv_System_CSystemBeep_"
OK, CANCEL, ABORT, RETRY, IGNORE, YES, NO = range(1, 8)
# By the key of "button(s)": the buttons from left to right, and what Escape presses.
BUTTONS = {0: ([OK], OK), 1: ([OK, CANCEL], CANCEL), 2: ([ABORT, RETRY, IGNORE], None),
           3: ([YES, NO, CANCEL], CANCEL), 4: ([YES, NO], None), 5: ([RETRY, CANCEL], CANCEL)}
ICONS = [64, 48, 32, 16]
EXAMPLE = pathlib.Path(__file__).resolve().parents[2] / "examples/operator"

# The X names of keys, with the code that each must have.
KEYS = {"a": 0x41, "7": 0x37, "space": 0x20, "Left": 0x25, "Prior": 0x21, "F5": 0x74, "KP_Add": 0x6B,
        "semicolon": 0xBA, "slash": 0xBF, "bracketleft": 0xDB, "Shift_L": 0x10, "Control_R": 0x11}
MORE_KEYS = {"Escape": 0x1B, "Num_Lock": 0x90, "Caps_Lock": 0x14, "Print": 0x2C, "Super_L": 0x5B,
             "Menu": 0x5D, "Alt_L": 0x12, "F12": 0x7B, "KP_Enter": 0x0D, "XF86AudioMute": 0xAD}
# Keys by their place, on keyboards that are not American.
FRENCH = {"24": 0x41, "10": 0x31, "47": 0x4D, "15": 0x36, "51": 0xDC, "94": 0xE2, "61": 0xDF}
RUSSIAN = {"38": 0x41, "34": 0xDB, "59": 0xBC}

QUIET = {"stdin": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
failures = []


def check(what, found, expected):
    if found != expected:
        failures.append(f"{what}: {found!r} in place of {expected!r}")
        print("FAILED", failures[-1], flush=True)


def wait_for(condition, seconds=5.0):
    """What the condition gives once it is true, or at the end of the time."""
    end = time.monotonic() + seconds
    while not (value := condition()) and time.monotonic() < end:
        time.sleep(0.02)
    return value


class Display:
    """An X server; `with` ends it."""

    def __init__(self, number=None):
        reading, writing = os.pipe()
        name = [] if number is None else [number]
        self.server = subprocess.Popen(
            ["Xvfb", *name, "-displayfd", str(writing), "-screen", "0", "1024x768x24", "-nolisten", "tcp",
             "-noreset"], pass_fds=[writing], stdout=subprocess.DEVNULL, **QUIET)
        os.close(writing)
        with os.fdopen(reading) as file:
            self.name = f":{file.readline().strip()}"
        if self.name == ":":
            sys.exit("Xvfb does not start")
        self.environment = {**os.environ, "DISPLAY": self.name}

    def __enter__(self):
        return self

    def end(self, *_):
        self.server.kill()
        self.server.wait()

    __exit__ = end

    def do(self, *words):
        return subprocess.run(words, env=self.environment, stdout=subprocess.PIPE, timeout=20, check=False,
                              **QUIET).stdout.decode()

    def xdotool(self, *words):
        return self.do("xdotool", *map(str, words))

    def windows(self, title):
        """The windows to be seen whose title begins so: numbers and titles."""
        numbers = self.xdotool("search", "--onlyvisible", "--class", "").split()
        titles = [(n, self.xdotool("getwindowname", n).rstrip("\n")) for n in numbers]
        return [(n, found) for n, found in titles if found.startswith(title)]


class Host:
    """`nuvhost exec`, asked call by call; `with` ends it."""

    def __init__(self, command, environment):
        self.process = subprocess.Popen([*command, "exec"], stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, env=environment)
        self.answers = queue.Queue()
        threading.Thread(target=lambda: [*map(self.answers.put, self.process.stdout)], daemon=True).start()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.stdin.close()
        try:
            check("exit code of nuvhost", self.process.wait(timeout=5), 0)
        except subprocess.TimeoutExpired:
            self.process.kill()
            check("end of nuvhost", "still running", "ended")

    def ask(self, instruction, inputs=(), constants=()):
        request = {"instr": instruction, "in": list(inputs), "const": list(constants)}
        self.process.stdin.write(json.dumps(request).encode() + b"\n")
        self.process.stdin.flush()

    def answer(self, seconds=20.0):
        """The results of the call; None where it has not ended."""
        try:
            answer = json.loads(self.answers.get(timeout=seconds))
        except queue.Empty:
            return None
        return answer["out"] if answer.get("status") == 0 else answer

    def call(self, *words):
        self.ask(*words)
        return self.answer()


def no_display(command, environment):
    with Host(command, {k: v for k, v in environment.items() if k != "DISPLAY"}) as host:
        check("any key without a display", host.call(ANY_KEY), [False, 0])
        check("a key without a display", host.call(ONE_KEY, [65]), [False])
        check("a beep without a display", host.call(BEEP), [])
        check("a box without a display", host.call(BOX), [0])


def holding(display, host, keys):
    """Each key alone: the one that is down, and none before and after."""
    for name, code in keys.items():
        display.xdotool("keydown", name)
        wait_for(lambda: host.call(ANY_KEY)[0], 2)
        check(f"any key, {name} held", host.call(ANY_KEY), [True, code])
        check(f"the key, {name} held", host.call(ONE_KEY, [code + 0.9]), [True])
        display.xdotool("keyup", name)
        wait_for(lambda: not host.call(ANY_KEY)[0], 2)
        check(f"any key, {name} released", host.call(ANY_KEY), [False, 0])


def keys(display, host):
    holding(display, host, KEYS)
    display.xdotool("keydown", 62, "keydown", "b")
    wait_for(lambda: host.call(ONE_KEY, [0x42])[0], 2)
    check("the lowest of two", host.call(ANY_KEY), [True, 0x10])
    for code, down in {0x10: True, 0xA0: False, 0xA1: True, 0x42: True, 0x43: False}.items():
        check(f"key {code} of two", host.call(ONE_KEY_TEXT, [f"  {code}abc"]), [down])
    display.xdotool("keyup", "b", "keyup", 62)
    wait_for(lambda: not host.call(ANY_KEY)[0], 2)


def native_keys(display, host):
    holding(display, host, MORE_KEYS)
    display.xdotool("key", "Caps_Lock")  # off again
    for button, code in {1: 1, 3: 2, 2: 4, 8: 5, 9: 6}.items():
        display.xdotool("mousedown", button)
        if code > 4:  # of the mouse these alone are keys
            check(f"key {code}, mouse button {button} held", host.call(ONE_KEY, [code]), [True])
        seen = [True, code] if code > 4 else [False, 0]
        check(f"any key, mouse button {button} held", host.call(ANY_KEY), seen)
        display.xdotool("mouseup", button)
    # Pressed by its place, since a digit by name would be pressed with Shift. Num Lock is on.
    holding(display, host, {"87": 0x61, "91": 0x6E})
    display.xdotool("key", "Num_Lock")
    holding(display, host, {"87": 0x23, "91": 0x2E})
    display.do("setxkbmap", "fr")
    holding(display, host, FRENCH)
    display.do("setxkbmap", "ru")
    holding(display, host, RUSSIAN)
    display.do("setxkbmap", "us")


def shown(display):
    """The window of the message box that comes up, given the focus."""
    found = wait_for(lambda: display.windows("Talvane - "), 10)
    check("message boxes", len(found), 1)
    if not found:
        sys.exit("no message box appears")
    display.xdotool("windowfocus", "--sync", found[0][0])
    return found[0][0]


@contextlib.contextmanager
def box(display, host, constants=(), inputs=()):
    """A message box: its window."""
    host.ask(BOX, inputs, constants)
    yield shown(display)
    wait_for(lambda: not display.windows("Talvane - "))


def answers(display, host, constants, key, expected):
    with box(display, host, constants):
        display.xdotool("key", key)
        check(f"{key} in a box of {constants}", host.answer(), expected)


def click(display, window, from_left, answer):
    """Clicks along the bottom of a window until `answer`, given seconds to wait, has one."""
    words = dict(re.findall(r"(\w+)=(\d+)", display.xdotool("getwindowgeometry", "--shell", window)))
    left, top, width, height = (int(words[w]) for w in ("X", "Y", "WIDTH", "HEIGHT"))
    steps = range(4, width, 14)
    for x in steps if from_left else reversed(steps):
        display.xdotool("mousemove", left + x, top + height - 24, "click", 1)
        if (found := answer(0.05)) is not None:
            return found
    return answer(2)


def dialogs(display, host):
    for style, (buttons, cancel) in BUTTONS.items():
        for i, button in enumerate(buttons):
            answers(display, host, [style, ICONS[i], 256 * i], "Return", [button])
        for from_left, button in ((True, buttons[0]), (False, buttons[-1])):
            with box(display, host, [style]) as window:
                check(f"click, buttons {style}, from the left: {from_left}",
                      click(display, window, from_left, host.answer), [button])
        if cancel == CANCEL:
            answers(display, host, [style, 16], "Escape", [CANCEL])
    answers(display, host, [1, 64, 512], "Return", [OK])  # where the default button is missing


def close(display, window):
    """What the close button of a window manager sends."""
    xcb = ctypes.CDLL("libxcb.so.1")
    xcb.xcb_connect.restype = ctypes.c_void_p
    xcb.xcb_intern_atom_reply.restype = ctypes.POINTER(ctypes.c_uint32)
    connection = ctypes.c_void_p(xcb.xcb_connect(display.name.encode(), None))

    def atom(name):
        cookie = xcb.xcb_intern_atom(connection, 0, len(name), name)
        return xcb.xcb_intern_atom_reply(connection, cookie, None)[2]

    xcb.xcb_send_event(connection, 0, int(window), 0, struct.pack(
        "=BBHII5I", 33, 32, 0, int(window), atom(b"WM_PROTOCOLS"), atom(b"WM_DELETE_WINDOW"), 0, 0, 0, 0))
    atom(b"WM_PROTOCOLS")  # answered once the message is on its way
    xcb.xcb_disconnect(connection)


def native_dialogs(display, host):
    """Where Wine is unlike Windows: it answers Escape by Cancel even if there is no such button."""
    answers(display, host, [], "Escape", [OK])
    for style, end in ((2, "Escape"), (4, "Escape"), (4, "close")):
        with box(display, host, [style]) as window:
            close(display, window) if end == "close" else display.xdotool("key", end)
            check(f"{end}, buttons {style}", host.answer(0.3), None)
            if end == "close":  # the box comes again
                wait_for(lambda: not any(n == window for n, _ in display.windows("Talvane - ")))
                shown(display)
            display.xdotool("key", "Return")
            check(f"Enter after {end}, buttons {style}", host.answer(), BUTTONS[style][0][:1])
    for style, code in {0: OK, 1: CANCEL, 3: CANCEL}.items():
        with box(display, host, [style]) as window:
            close(display, window)
            check(f"closed, buttons {style}", host.answer(), [code])
    check("buttons that are none", host.call(BOX, [], [9]), [0])


def texts(display, host):
    """One character U+0000 to U+00FF stands for each byte."""
    rows = {"Message Box instruction": [], "h\u00e9": ["h\u00e9"], "\u00e9": ["\u00c3\u00a9"],
            "\u20ac\u2122": ["\u0080\u0099"], "\u00ed\u00a0\u20ac": ["\u00ed\u00a0\u0080"]}
    rows["x" * 3000] = ["x" * 3000, "".join(map(chr, range(1, 256))) + "\n" + "line\n" * 20]
    for title, inputs in rows.items():
        with box(display, host, [], inputs) as window:
            check("title", display.xdotool("getwindowname", window)[:-1], "Talvane - " + title)
            display.xdotool("key", "Return")
            check(f"Enter under {title!r}", host.answer(), [OK])


def example(display, command):
    """The operator holds Ctrl and releases the part, which is the left button."""
    readme = (EXAMPLE / "README.md").read_text(encoding="utf-8")
    run = subprocess.Popen([*command, "run", EXAMPLE / "program.json"], env=display.environment,
                           stdin=subprocess.DEVNULL, stdout=subprocess.PIPE)

    def report(seconds):
        with contextlib.suppress(subprocess.TimeoutExpired):
            return run.communicate(timeout=seconds)[0].decode()

    window = shown(display)
    display.xdotool("keydown", "Control_L")
    text = click(display, window, True, report)
    display.xdotool("keyup", "Control_L")
    check("the example's report in its page", f"```text\n{text}```" in readme, True)


def dying_display(command):
    with Display() as display, Host(command, display.environment) as host:
        display.xdotool("keydown", "a")
        check("a key before the display dies", host.call(ANY_KEY), [True, 0x41])
        with box(display, host, [4]):
            display.server.kill()
            check("a box whose display dies", host.answer(), [0])
        check("a box after that", host.call(BOX), [0])
        check("any key after that", host.call(ANY_KEY), [False, 0])
        display.server.wait()
        with Display(display.name) as reborn:
            reborn.xdotool("keydown", "b")
            check("a key when the display is back", host.call(ANY_KEY), [True, 0x42])
            reborn.end()
            check("a beep when it is gone again", host.call(BEEP), [])


@contextlib.contextmanager
def wine_prefix(wine):
    """A prefix that has all but its registry from the usual one."""
    base = pathlib.Path(os.environ.get("WINEPREFIX") or pathlib.Path.home() / ".wine")
    if not (base / "drive_c").exists():
        subprocess.run([wine, "wineboot", "-i"], check=True, timeout=120)
    with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as folder:
        for file in [*base.glob("*.reg"), base / ".update-timestamp"]:
            shutil.copy(file, folder)
        # Without a window manager, else Wine waits two seconds for it whenever a window closes.
        with open(f"{folder}/user.reg", "a", encoding="utf-8") as registry:
            registry.write('\n[Software\\\\Wine\\\\X11 Driver]\n"Managed"="N"\n')
        os.mkdir(f"{folder}/dosdevices")
        for name, target in (("drive_c", base / "drive_c"), ("dosdevices/c:", "../drive_c"),
                             ("dosdevices/z:", "/")):
            os.symlink(target, f"{folder}/{name}")
        os.environ["WINEPREFIX"] = folder
        try:
            yield
        finally:
            end_wine()


def end_wine():
    """Ends all programs in the prefix."""
    for what in ("-k", "-w"):
        subprocess.run(["wineserver", what], check=False, timeout=20)


def windows_build(command):
    no_display(command, os.environ)
    end_wine()
    with Display() as display:
        # Keys are seen while a window of Wine has the focus. They come before the boxes: a key
        # whose release goes to no window would stay down.
        helper = subprocess.Popen([command[0], "notepad"], env=display.environment)
        found = wait_for(lambda: display.windows("Untitled"), 20)
        check("windows of Wine", len(found), 1)
        display.xdotool("windowfocus", "--sync", found[0][0])
        with Host(command, display.environment) as host:
            keys(display, host)
            helper.kill()
            helper.wait()
            dialogs(display, host)
        example(display, command)
        end_wine()


def native_build(command):
    no_display(command, os.environ)
    with Display() as display, Host(command, display.environment) as host:
        keys(display, host)
        native_keys(display, host)
        dialogs(display, host)
        native_dialogs(display, host)
        texts(display, host)
        example(display, command)
    dying_display(command)


def main(command):
    if missing := [tool for tool in ("Xvfb", "xdotool") if shutil.which(tool) is None]:
        sys.exit(f"needed and not installed: {missing}; run scripts/setup")
    os.environ.pop("DISPLAY", None)
    signal.signal(signal.SIGALRM, lambda *_: sys.exit("not done after 150 s"))
    signal.alarm(150)
    started = time.monotonic()
    if len(command) > 1:
        with wine_prefix(command[0]):
            windows_build(command)
    else:
        native_build(command)
    print(f"{len(failures)} failed, in {time.monotonic() - started:.1f} s")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
