"""Where the system tests run the built plug-in: a display and a Wine session of their own, a folder for each test."""

import contextlib
import os
import re
import shutil
import struct
import subprocess
import tempfile
import time

from rows import ROWS

ROOT = os.path.abspath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
PATIENCE = 40.0  # seconds for anything to happen


class Failure(Exception):
    pass


def check(condition, what):
    if not condition:
        raise Failure(what)


def same(actual, wanted, what):
    """Fails on the first difference of two values, lists or byte strings."""
    if actual == wanted:
        return
    if isinstance(wanted, (bytes, list)) and isinstance(actual, type(wanted)):
        if len(actual) != len(wanted):
            raise Failure(f"{what}: {len(actual)} long, expected {len(wanted)}")
        at = next(i for i, pair in enumerate(zip(actual, wanted)) if pair[0] != pair[1])
        if not isinstance(wanted[at], (list, bytes)):
            raise Failure(f"{what}: {actual[at]!r} at {at}, expected {wanted[at]!r}")
        same(actual[at], wanted[at], f"{what}, {at}")
    raise Failure(f"{what}: {actual!r}, expected {wanted!r}")


def wait_for(what, condition, patience=PATIENCE):
    """The first result of condition() that counts as true."""
    end = time.monotonic() + patience
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() > end:
            raise Failure(f"waited {patience:.0f} s for {what}")
        time.sleep(0.03)


class Session:
    """A display and a Wine session, with nothing shared with any other."""

    def __init__(self, folder):
        self.prefix = os.path.join(folder, "wine")
        template = os.environ.get("VM_WINEPREFIX", os.path.join(ROOT, "build", "wine"))
        subprocess.run([os.path.join(ROOT, "scripts", "wine-init.sh")], check=True)
        # Wine replaces the files that it changes, so the rest may be shared with the template.
        if subprocess.run(["cp", "-al", template, self.prefix], stderr=subprocess.DEVNULL).returncode != 0:
            shutil.rmtree(self.prefix, ignore_errors=True)
            subprocess.run(["cp", "-a", template, self.prefix], check=True)
        registry = os.path.join(self.prefix, "user.reg")
        with open(registry, "rb") as file:
            contents = file.read()
        os.remove(registry)
        with open(registry, "wb") as file:
            # Without a window manager, Wine draws the frames of its windows itself.
            file.write(contents + b'\n[Software\\\\Wine\\\\X11 Driver]\n"Managed"="N"\n')
        read_end, write_end = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write_end), "-screen", "0", "800x600x24", "-nolisten", "tcp"],
            pass_fds=[write_end], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(write_end)
        with os.fdopen(read_end) as pipe:
            number = pipe.readline().strip()
        check(number, "Xvfb doesn't start")
        self.env = dict(os.environ, DISPLAY=":" + number, WINEPREFIX=self.prefix, WINEARCH="win32", WINEDEBUG="-all",
                        WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d")
        # Kept running between the programs, the session starts them in a fraction of the time.
        subprocess.run(["wineserver", "-p"], env=self.env, check=True)
        self.desktop = subprocess.Popen(["wine", "explorer.exe", "/desktop"], env=self.env, stdin=subprocess.DEVNULL,
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def close(self):
        subprocess.run(["wineserver", "-k"], env=self.env)
        for process in (self.desktop, self.server):
            with contextlib.suppress(subprocess.TimeoutExpired):
                process.terminate()
                process.wait(10)

    def xdotool(self, *arguments):
        return subprocess.run(["xdotool", *arguments], env=self.env, capture_output=True, text=True,
                              timeout=PATIENCE).stdout

    def window(self, title):
        found = self.xdotool("search", "--onlyvisible", "--name", f"^{re.escape(title)}$").split()
        return int(found[0]) if found else None

    def wait_window(self, title):
        return wait_for(f'the window "{title}"', lambda: self.window(title))

    def geometry(self, window):
        answer = dict(line.split("=") for line in self.xdotool("getwindowgeometry", "--shell", str(window)).split())
        return tuple(int(answer[key]) for key in ("X", "Y", "WIDTH", "HEIGHT"))

    def press_cancel(self):
        """Clicks the button of the wait dialog, whose middle is 18 of 175 dialog units from the right and 14 of 71 from
        below."""
        window = self.wait_window("Velvetmoor")
        x, y, width, height = self.geometry(window)
        self.xdotool("mousemove", str(x + width - width * 18 // 175), str(y + height - height * 14 // 71), "click", "1")

    def answer_box(self, key):
        """Presses a key in the report that is shown; false when it went away by itself meanwhile."""
        window = self.window("CP_Debug")
        if window is None:
            return False
        self.xdotool("windowfocus", str(window), "key", key)
        return True

    def screenshot(self, path):
        subprocess.run(["import", "-window", "root", path], env=self.env, timeout=PATIENCE)


class Result:
    def __init__(self, code, out, err):
        self.code, self.out, self.err = code, out.replace("\r", ""), err.replace("\r", "")

    def expect(self, code):
        check(self.code == code, f"exit code {self.code}, expected {code}: {self.err.strip()} {self.out[-600:]}")
        return self


class Lab:
    """A folder with the plug-in, and somebody who plays the effects application."""

    def __init__(self, session, options, folder):
        self.session, self.options, self.folder = session, options, folder
        self.plugin = os.path.join(folder, "plug in")
        os.mkdir(self.plugin)
        os.mkdir(os.path.join(folder, "elsewhere"))
        shutil.copy(os.path.join(options.bin, "VM_PlugIn.8bf"), self.plugin)
        self.processes = []

    def path(self, name):
        return os.path.join(self.folder, name)

    def beside(self, name):
        return os.path.join(self.plugin, name)

    def exists(self, name):
        return os.path.exists(self.beside(name))

    def read(self, name):
        with open(self.beside(name), "rb") as file:
            return file.read()

    def write(self, name, data):
        with open(self.beside(name), "wb") as file:
            file.write(data)

    # --- The effects application ---

    def real_application(self, settings=""):
        shutil.copy(os.path.join(self.options.bin, "Vm.exe"), self.plugin)
        self.write("Vm.settings", settings.encode("ascii"))

    def script(self, steps, start=None):
        """What the stand-in does at its start of that number, or at every one."""
        if not self.exists("Vm.exe"):
            shutil.copy(os.path.join(self.options.bin, "reply_app.exe"), self.beside("Vm.exe"))
        name = "reply.script" if start is None else f"reply-{start}.script"
        self.write(name, "\n".join(steps).encode("ascii"))

    def reply(self, data, before=()):
        """The stand-in keeps the request as `request` and answers with these bytes."""
        self.write("answer", data)
        self.script(["wait-flag", "copy Img.h request", *before, "copy answer Img.h", "done"])

    def started(self):
        return sum(1 for name in os.listdir(self.plugin) if name.startswith("started-"))

    # --- The host ---

    def planes(self, name, width, height, row, pixels):
        """A file of host planes; `pixels` holds rows of pixels."""
        data = f"planes 1 {width} {height} {row.planes} {row.size} {row.mode}\n".encode("ascii")
        samples = [sample for line in pixels for pixel in line for sample in pixel]
        with open(self.path(name), "wb") as file:
            file.write(data + struct.pack(f"<{len(samples)}{'B' if row.size == 1 else 'H'}", *samples))
        return self.path(name)

    def pixels(self, name, row):
        """Rows of pixels of a file of host planes."""
        with open(self.path(name), "rb") as file:
            head = file.readline().split()
            data = file.read()
        width, height = int(head[2]), int(head[3])
        same([int(word) for word in head[4:]], [row.planes, row.size, row.mode], "the header of the output")
        samples = struct.unpack(f"<{width * height * row.planes}{'B' if row.size == 1 else 'H'}", data)
        pixels = [list(samples[i:i + row.planes]) for i in range(0, len(samples), row.planes)]
        return [pixels[i:i + width] for i in range(0, len(pixels), width)]

    def start(self, *options, input="in.planes", output="out.planes"):
        windows = lambda name: "Z:" + self.path(name)
        # Into files: processes of the session that outlive the program would keep a pipe open.
        with open(self.path("host.out"), "wb") as out, open(self.path("host.err"), "wb") as err:
            process = subprocess.Popen(
                ["wine", os.path.join(self.options.bin, "filter_host.exe"), "--trace", "--cd", windows("elsewhere"),
                 *options, "Z:" + self.beside("VM_PlugIn.8bf"), windows(input), windows(output)],
                env=self.session.env, stdin=subprocess.DEVNULL, stdout=out, stderr=err)
        self.processes.append(process)
        return process

    def finish(self, process, patience=PATIENCE):
        try:
            process.wait(patience)
        except subprocess.TimeoutExpired:
            raise Failure(f"the host did not end in {patience:.0f} s; it said {self.said('host.out')[-300:]!r}") from None
        return Result(process.returncode, self.said("host.out"), self.said("host.err"))

    def said(self, name):
        with open(self.path(name), encoding="latin-1") as file:
            return file.read()

    def run(self, *options, **names):
        return self.finish(self.start(*options, **names))

    def run_answering_boxes(self, *options, key="Return", **names):
        """A run in which every report is answered; gives the result and the number of answers."""
        process = self.start(*options, **names)
        answered = 0
        end = time.monotonic() + PATIENCE
        while process.poll() is None:
            answered += self.session.answer_box(key)
            time.sleep(0.1)
            check(time.monotonic() < end, "the host did not end")
        return self.finish(process), answered

    def no_leftovers(self):
        left = [name for name in os.listdir(self.folder) if name.endswith(".tmp")]
        check(not left, f"half-written files are left: {left}")

    def close(self):
        for process in self.processes:
            if process.poll() is None:
                process.kill()
            process.wait()
        # A stand-in that still waits for something must not go on into the next test.
        for name in ("go",):
            self.write(name, b"")


@contextlib.contextmanager
def lab(session, options):
    folder = tempfile.mkdtemp(prefix="vm-system-", dir=options.work)
    made = Lab(session, options, folder)
    try:
        yield made
    finally:
        made.close()
        for _ in range(20):
            shutil.rmtree(folder, ignore_errors=True)
            if not os.path.exists(folder):
                break
            time.sleep(0.1)


def row(name):
    return ROWS[name]
