#!/usr/bin/env python3
"""Drives samples/framework_demo under Wine with real key strokes and clicks on a display of its own.

    framework.py [--program FILE] [--hello FILE] [--screenshots FOLDER] [NAME...]

Each test starts the program anew, acts as its user, and reads what it says with --trace. NAME picks tests by a part of
their names. Ends with "N passed, N failed"; the exit code is 0 when nothing failed. Needs Wine, Xvfb, xdotool and
ImageMagick.
"""

import argparse
import contextlib
import os
import re
import subprocess
import sys
import threading
import time

ROOT = os.path.abspath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
SCREEN = (1024, 768)
PATIENCE = 30.0  # seconds for anything to happen
QUIET = 0.8      # seconds in which nothing may happen
MAIN_WINDOW = "Framework demo"


class Failure(Exception):
    pass


def wait_for(what, condition, patience=PATIENCE):
    """The first result of condition() that counts as true."""
    end = time.monotonic() + patience
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() > end:
            raise Failure(f"waited {patience:.0f} s for {what}")
        time.sleep(0.05)


@contextlib.contextmanager
def display():
    """An X server of our own, on a number that it chooses itself."""
    read_end, write_end = os.pipe()
    server = subprocess.Popen(
        ["Xvfb", "-displayfd", str(write_end), "-screen", "0", f"{SCREEN[0]}x{SCREEN[1]}x24", "-nolisten", "tcp"],
        pass_fds=[write_end], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    os.close(write_end)
    try:
        with os.fdopen(read_end) as pipe:
            number = pipe.readline().strip()
        if not number:
            raise SystemExit("framework: error: Xvfb doesn't start")
        os.environ["DISPLAY"] = ":" + number
        yield
    finally:
        server.terminate()
        server.wait()


def run(*command):
    return subprocess.run(command, capture_output=True, text=True, timeout=PATIENCE).stdout


def windows(title):
    """The visible windows of exactly this title."""
    found = run("xdotool", "search", "--onlyvisible", "--name", f"^{re.escape(title)}$").split()
    return [int(window) for window in found]


def geometry(window):
    """x, y, width, height on the screen, without the frame."""
    answer = dict(line.split("=") for line in run("xdotool", "getwindowgeometry", "--shell", str(window)).split())
    return tuple(int(answer[key]) for key in ("X", "Y", "WIDTH", "HEIGHT"))


def pixel(x, y):
    """Red, green and blue on the screen."""
    data = subprocess.run(["import", "-window", "root", "-crop", f"1x1+{x}+{y}", "-depth", "8", "rgb:-"],
                          capture_output=True, timeout=PATIENCE).stdout
    return tuple(data)


class Demo:
    """The running program and its user."""

    programs = []

    def __init__(self, options, *arguments):
        self.options = options
        before = set(windows(MAIN_WINDOW))
        self.lines = []
        self.seen = 0
        self.process = subprocess.Popen(
            [os.path.join(ROOT, "scripts", "wine-run.sh"), options.program, "--trace", *arguments],
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        Demo.programs.append(self)
        threading.Thread(target=self.read, daemon=True).start()
        self.expect("document: is the target", 120.0)
        self.window = wait_for("the main window", lambda: set(windows(MAIN_WINDOW)) - before).pop()
        self.focus()

    def read(self):
        for line in self.process.stdout:
            self.lines.append(line.rstrip("\r\n"))

    def focus(self, window=None):
        """Without a window manager, a click is what activates a program's window; dialogs have the focus anyway."""
        if window is None:
            x, y, width, height = geometry(self.window)
            self.click(x + width - 20, y + height - 20)
        else:
            run("xdotool", "windowfocus", "--sync", str(window))
        time.sleep(0.2)

    def move(self, x, y):
        run("xdotool", "windowmove", "--sync", str(self.window), str(x), str(y))
        time.sleep(0.5)

    def expect(self, line, patience=PATIENCE):
        """Waits for a line behind those expected before."""
        def found():
            for number in range(self.seen, len(self.lines)):
                if line in self.lines[number]:
                    self.seen = number + 1
                    return True
            return False
        try:
            wait_for(f'the line "{line}"', found, patience)
        except Failure as failure:
            raise Failure(f"{failure}; the last lines were {self.lines[-5:]}") from None

    def expect_nothing(self, line):
        """No line with this text comes for a while."""
        time.sleep(QUIET)
        found = [said for said in self.lines[self.seen:] if line in said]
        if found:
            raise Failure(f"unexpected: {found}")

    def key(self, *keys):
        for key in keys:
            run("xdotool", "key", "--clearmodifiers", key)
            time.sleep(0.15)

    def type(self, text):
        run("xdotool", "type", "--delay", "60", text)

    def click(self, x, y):
        run("xdotool", "mousemove", str(x), str(y))
        time.sleep(0.1)
        run("xdotool", "click", "1")
        time.sleep(0.2)

    def menu(self, *keys):
        """Opens a menu of the bar by its letter, and goes on with letters."""
        self.key("alt+" + keys[0])
        time.sleep(0.3)
        for key in keys[1:]:
            self.key(key)
            time.sleep(0.3)

    def dialog(self, title):
        window = wait_for(f'the window "{title}"', lambda: windows(title))[0]
        self.focus(window)
        return window

    def answer(self, title, key):
        """Presses a key in a dialog until the dialog is gone."""
        window = self.dialog(title)
        end = time.monotonic() + PATIENCE
        while window in windows(title):
            if time.monotonic() > end:
                raise Failure(f'"{title}" stays open')
            self.key(key)
            time.sleep(0.5)
        self.focus()

    def screenshot(self, name):
        if self.options.screenshots:
            time.sleep(0.7)
            run("import", "-window", "root", os.path.join(self.options.screenshots, name + ".png"))

    def expect_end(self):
        self.expect("application: left the loop")
        self.expect("application: gone")
        code = self.process.wait(PATIENCE)
        if code != 0:
            raise Failure(f"the program's exit code is {code}")

    def stop(self):
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait(PATIENCE)


def check(condition, what):
    if not condition:
        raise Failure(what)


# --- the tests -------------------------------------------------------------------------------------------------------


def starts_as_the_target_and_ends_by_its_accelerator(options):
    demo = Demo(options)
    check(demo.lines[:3] == ["application: is the target", "application: started", "document: is the target"]
          or demo.lines[:4] == ["application: is the target", "application: started",
                                "application: is the target", "document: is the target"],
          f"the beginning was {demo.lines[:4]}")
    demo.key("ctrl+q")
    demo.expect("window: asked to close, agrees")
    demo.expect("command 9: result 1")
    demo.expect_end()


def takes_keys_and_every_attachment_sees_those_that_are_accelerators(options):
    demo = Demo(options)
    demo.type("Velvet")
    demo.expect('document: text "Velvet"')
    demo.key("BackSpace")
    demo.expect('document: text "Velve"')
    demo.key("ctrl+2")
    demo.expect("document: command 122")
    demo.expect("command 122: result 0")
    # The first attachment took the stroke away from the window; the second one saw it all the same.
    demo.expect("key ")
    demo.expect_nothing("document: text")
    demo.key("ctrl+q")
    demo.expect_end()


def disabled_commands_cant_be_given_and_enabled_ones_can(options):
    demo = Demo(options)
    demo.key("ctrl+c")             # nothing to copy yet
    demo.expect_nothing("command 110")
    demo.menu("e", "c")            # neither from the menu
    demo.expect_nothing("command 110")
    demo.screenshot("disabled")
    demo.key("Escape", "Escape")
    demo.type("x")
    demo.expect('document: text "x"')
    demo.key("ctrl+c")
    demo.expect("document: command 110")
    demo.menu("e", "l")
    demo.expect('document: command 112, text ""')
    demo.key("ctrl+c")
    demo.expect_nothing("command 110")
    demo.key("ctrl+q")
    demo.expect_end()


def submenus_open_by_keys_and_by_clicks(options):
    demo = Demo(options)
    demo.menu("v", "z")
    demo.screenshot("submenu")
    demo.key("d")
    demo.expect("document: command 122")
    # Again with the mouse: View, then the second entry, then the first one of its submenu.
    x, y, _, _ = geometry(demo.window)
    demo.click(x + 88, y + 10)
    demo.click(x + 100, y + 48)
    demo.screenshot("submenu-by-mouse")
    demo.click(x + 200, y + 48)
    demo.expect("document: command 121")
    demo.key("ctrl+q")
    demo.expect_end()


def the_colour_dialog_is_centred_chooses_and_cancels(options):
    demo = Demo(options)
    demo.key("ctrl+k")
    window = demo.dialog("Color")
    time.sleep(1.0)
    x, y, width, height = geometry(window)
    check(abs(x + width // 2 - SCREEN[0] // 2) <= 2, f"the dialog's middle is at {x + width // 2}")
    # A third of the screen less a third of the dialog, whose frame adds to what is measured here.
    frame = SCREEN[1] // 3 - height // 3
    check(frame - 12 <= y <= frame + 28, f"the dialog's top is at {y}, about {frame} was expected")
    demo.screenshot("colour-dialog")
    demo.click(x + 20, y + 55)     # the red field
    demo.key("Return")
    demo.expect("colour 65280 0 0")
    check(not windows("Color"), "the dialog stays open")
    main_x, main_y, _, _ = geometry(demo.window)
    time.sleep(1.0)
    swatch = pixel(main_x + 50, main_y + 180)
    check(swatch == (255, 0, 0), f"the swatch is {swatch}")
    demo.focus()
    demo.key("ctrl+k")
    demo.dialog("Color")
    time.sleep(1.0)
    demo.key("Escape")
    demo.expect("colour 65280 0 0")
    demo.focus()
    demo.menu("v", "b")
    demo.expect("colour 0 0 0")
    demo.key("ctrl+q")
    demo.expect_end()


def text_goes_from_one_program_to_another(options):
    one = Demo(options)
    one.move(40, 400)
    two = Demo(options)
    one.focus()
    one.type("from one")
    one.expect('document: text "from one"')
    one.key("ctrl+c")
    one.expect("command 110: result 0")
    two.focus()
    two.key("ctrl+v")
    two.expect('document: command 111, text "from one"')
    two.key("ctrl+q")
    two.expect_end()
    one.focus()
    one.key("ctrl+q")
    one.expect_end()


def a_clipboard_that_another_program_holds_is_no_error(options):
    one = Demo(options)
    one.move(40, 400)
    two = Demo(options)
    one.focus()
    one.type("text")
    one.key("ctrl+c")
    one.expect("command 110: result 0")
    one.menu("t", "h")
    one.expect("application: clipboard held")
    two.focus()
    two.key("ctrl+v")
    two.expect("document: nothing to paste")
    two.type("y")
    two.key("ctrl+c")
    two.expect("command 110: result 0")
    two.key("ctrl+q")
    two.expect_end()
    one.focus()
    one.key("ctrl+q")
    one.expect_end()


def a_program_that_has_pasted_keeps_the_clipboard_until_it_copies(options):
    one = Demo(options)
    one.move(40, 400)
    two = Demo(options)
    one.focus()
    one.type("text")
    one.key("ctrl+c")
    one.expect("command 110: result 0")
    two.focus()
    two.key("ctrl+v")
    two.expect('document: command 111, text "text"')
    one.focus()
    one.menu("t", "h")
    one.expect("application: clipboard not to be had")
    two.focus()
    two.key("ctrl+c")
    two.expect("command 110: result 0")
    one.focus()
    one.menu("t", "h")
    one.expect("application: clipboard held")
    one.key("ctrl+q")
    one.expect_end()
    two.focus()
    two.key("ctrl+q")
    two.expect_end()


def information_is_shown_by_its_command(options):
    demo = Demo(options)
    demo.key("F1")
    demo.dialog("About the demo")
    demo.screenshot("about")
    demo.answer("About the demo", "Return")
    demo.expect("command 18: result 0")
    demo.key("ctrl+q")
    demo.expect_end()


def a_failed_check_shows_its_box_and_goes_on(options):
    demo = Demo(options)
    demo.menu("t", "f")
    demo.dialog("CP_Debug")
    demo.screenshot("failed-check")
    demo.expect_nothing("application: went on")
    demo.answer("CP_Debug", "Return")
    demo.expect("application: went on behind the failed check")
    demo.expect("command 141: result 0")
    demo.key("ctrl+q")
    demo.expect_end()


def a_missing_menu_is_reported_and_goes_on(options):
    demo = Demo(options)
    demo.menu("t", "m")
    demo.dialog("CP_Debug")
    demo.screenshot("missing-menu")
    demo.answer("CP_Debug", "Return")
    demo.expect("application: went on without the menu")
    demo.key("ctrl+q")
    demo.expect_end()


def a_thrown_exception_ends_the_loop_after_its_report(options):
    demo = Demo(options)
    demo.menu("t", "t")
    demo.dialog("CP_Exception")
    demo.screenshot("exception")
    demo.expect_nothing("application: left the loop")
    demo.answer("CP_Exception", "Return")
    demo.expect_end()


def a_window_that_refuses_to_close_keeps_the_program(options):
    demo = Demo(options)
    demo.menu("t", "k")
    demo.expect("command 140: result 0")
    demo.key("ctrl+q")
    demo.expect("window: asked to close, refuses")
    demo.expect("command 9: result 0")
    demo.type("on")
    demo.expect('document: text "on"')
    demo.menu("t", "k")
    demo.expect("command 140: result 0")
    demo.key("ctrl+q")
    demo.expect("window: asked to close, agrees")
    demo.expect_end()


def runs_without_a_menu_bar(options):
    demo = Demo(options, "--no-menus")
    demo.type("no menus")
    demo.expect('document: text "no menus"')
    demo.key("ctrl+c")             # no accelerators either
    demo.expect_nothing("command 110")
    demo.screenshot("no-menus")
    demo.key("alt+F4")
    demo.expect("window: asked to close, agrees")
    demo.expect_end()


def a_report_when_the_application_is_gone_does_no_harm(options):
    demo = Demo(options, "--report-at-end")
    demo.key("ctrl+q")
    demo.expect("application: left the loop")
    window = wait_for("the report", lambda: windows("CP_Exception"))[0]
    # The report updates the menus, whose handles stand for menus that went with their window.
    demo.focus(window)
    demo.screenshot("report-at-end")
    demo.key("Return")
    demo.expect("application: gone")
    check(demo.process.wait(PATIENCE) == 0, "the program fails")


def the_smallest_program_greets_and_quits(options):
    before = set(windows("Hello"))
    program = subprocess.Popen([os.path.join(ROOT, "scripts", "wine-run.sh"), options.hello],
                               stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    try:
        window = wait_for("the window", lambda: set(windows("Hello")) - before, 120.0).pop()
        x, y, width, height = geometry(window)
        run("xdotool", "mousemove", str(x + width - 20), str(y + height - 20), "click", "1")
        time.sleep(0.5)
        for key in ("alt+f", "g"):
            run("xdotool", "key", key)
            time.sleep(0.3)
        wait_for("the greeting", lambda: windows("Hello, world"))
        for key in ("alt+h", "a"):
            run("xdotool", "key", key)
            time.sleep(0.3)
        about = wait_for("the information", lambda: windows("About Hello"))[0]
        run("xdotool", "windowfocus", "--sync", str(about))
        time.sleep(0.5)
        run("xdotool", "key", "Return")
        wait_for("the end of the information", lambda: not windows("About Hello"))
        run("xdotool", "mousemove", str(x + width - 20), str(y + height - 20), "click", "1")
        time.sleep(0.5)
        for key in ("alt+f", "q"):
            run("xdotool", "key", key)
            time.sleep(0.3)
        check(program.wait(PATIENCE) == 0, "the program fails")
    finally:
        if program.poll() is None:
            program.kill()
        program.wait(PATIENCE)


def the_documentation_shows_the_smallest_program_as_it_is(options):
    with open(os.path.join(ROOT, "docs", "framework.md"), encoding="utf-8") as file:
        blocks = re.findall(r"```(?:cpp|rc)\n(.*?)```", file.read(), re.DOTALL)
    for name in ("main.cpp", "hello.rc"):
        with open(os.path.join(ROOT, "samples", "framework_hello", name), encoding="utf-8") as file:
            check(file.read() in blocks, f"docs/framework.md doesn't show samples/framework_hello/{name}")


TESTS = [
    starts_as_the_target_and_ends_by_its_accelerator,
    takes_keys_and_every_attachment_sees_those_that_are_accelerators,
    disabled_commands_cant_be_given_and_enabled_ones_can,
    submenus_open_by_keys_and_by_clicks,
    the_colour_dialog_is_centred_chooses_and_cancels,
    text_goes_from_one_program_to_another,
    a_clipboard_that_another_program_holds_is_no_error,
    a_program_that_has_pasted_keeps_the_clipboard_until_it_copies,
    information_is_shown_by_its_command,
    a_failed_check_shows_its_box_and_goes_on,
    a_missing_menu_is_reported_and_goes_on,
    a_thrown_exception_ends_the_loop_after_its_report,
    a_window_that_refuses_to_close_keeps_the_program,
    runs_without_a_menu_bar,
    a_report_when_the_application_is_gone_does_no_harm,
    the_smallest_program_greets_and_quits,
    the_documentation_shows_the_smallest_program_as_it_is,
]


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--program", default=os.path.join(ROOT, "build", "win32", "bin", "framework_demo.exe"))
    parser.add_argument("--hello", default=os.path.join(ROOT, "build", "win32", "bin", "framework_hello.exe"))
    parser.add_argument("--screenshots", help="folder for pictures of the screen")
    parser.add_argument("names", nargs="*")
    options = parser.parse_args()
    for program in (options.program, options.hello):
        if not os.path.isfile(program):
            raise SystemExit(f"framework: error: there is no {program}")
    if options.screenshots:
        os.makedirs(options.screenshots, exist_ok=True)
    passed = failed = 0
    with display():
        for test in TESTS:
            if options.names and not any(name in test.__name__ for name in options.names):
                continue
            start = time.monotonic()
            try:
                test(options)
                outcome = "ok"
                passed += 1
            except (Failure, subprocess.TimeoutExpired) as failure:
                outcome = f"FAILED: {failure}"
                failed += 1
                if options.screenshots:
                    run("import", "-window", "root", os.path.join(options.screenshots, f"failed-{test.__name__}.png"))
            finally:
                for demo in Demo.programs:
                    demo.stop()
                Demo.programs.clear()
            print(f"[{time.monotonic() - start:5.1f} s] {test.__name__.replace('_', ' ')}: {outcome}", flush=True)
    print(f"{passed} passed, {failed} failed")
    return 1 if failed or not passed else 0


if __name__ == "__main__":
    sys.exit(main())
