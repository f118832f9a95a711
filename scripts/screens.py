#!/usr/bin/env python3
"""Takes pictures of Quibra's windows under a display of its own: docs/screens/NAME.png.

    scripts/screens.py [--build build/release] [--out docs/screens] [--only NAME ...] [--dark] [--dpi 96] [--dpi 192]

Build the programs first (cmake --build build/release --target quibra quibra_screens). Needs the Debian packages xvfb,
jwm, xdotool, imagemagick and a Japanese font, and installs nothing. A picture at 192 dpi is called NAME@2x.png, one on
a dark ground NAME-dark.png.
"""
import argparse
import contextlib
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
NEEDED = {"Xvfb": "xvfb", "jwm": "jwm", "xdotool": "xdotool", "import": "imagemagick"}

# Each window's name, the program that shows it with its arguments, and the keys (as xdotool names them) that lead there.
# A list of keys is sent to whatever window is then active; "900x600" sizes it. A name that begins with "menu" is a picture of all
# windows with their frames, since a popup menu is not the active one.
SURVEY = "アンケート/residents.qb"
# The set-up of two totals: which of the city's places people use, by sex; and the years that they have lived there.
CROSS = ["alt+q", "a", "Tab", "Tab", *["Down"] * 18, "alt+x"]
ESSAYS = ["alt+q", "a", "Tab", "Tab", "ctrl+Tab", *["Down"] * 8, "alt+e"]
RESULT_SIZE = "780x480"
SCREENS = [
    ("main", ["quibra", SURVEY], []),
    ("main-empty", ["quibra"], []),
    ("menu-file", ["quibra", SURVEY], ["alt+f"]),
    ("menu-survey", ["quibra", SURVEY], ["alt+q"]),
    ("menu-others", ["quibra", SURVEY], ["alt+o"]),
    ("about", ["quibra"], ["alt+o", "a"]),
    ("lock", ["quibra", SURVEY], ["alt+o", "p"]),
    ("lock-open", ["quibra", SURVEY], ["alt+o", "p", "Return"]),
    ("lock-again", ["quibra", SURVEY], ["alt+o", "p", "Return", "Tab", "Tab", "q", "Return", "Return"]),
    ("condition-editor", ["quibra", SURVEY], ["alt+q", "l"]),
    ("lines", ["quibra", SURVEY], ["alt+q", "p"]),
    ("question", ["quibra", SURVEY], ["alt+q", "s", *["Down"] * 3]),
    ("questions", ["quibra", SURVEY], ["alt+q", "t", "Return"]),
    ("new", ["quibra", SURVEY], ["ctrl+n"]),
    ("entry", ["quibra", SURVEY], ["alt+q", "i", "Return", "alt+n", "Escape", *"152", "Return"]),
    ("collect", ["quibra", SURVEY], ["alt+q", "c"]),
    ("total-setup", ["quibra", SURVEY], ["alt+q", "a"]),
    ("total-cross", ["quibra", SURVEY], CROSS),
    ("total-essays", ["quibra", SURVEY], ESSAYS),
    ("condition-picker", ["quibra", SURVEY], ["alt+q", "a", "alt+a", "Tab", "Return", "Down", "alt+o"]),
    ("result-cross", ["quibra", SURVEY], [*CROSS, "alt+n", RESULT_SIZE]),
    ("result-sorted", ["quibra", SURVEY], [*CROSS, "alt+n", "alt+e", "s", "alt+e", *["Down"] * 7, "Return"]),
    ("result-essays", ["quibra", SURVEY], [*ESSAYS, "Return", "alt+i", "r", "space", "Return", RESULT_SIZE]),
    ("result-words", ["quibra", SURVEY], [*ESSAYS, "Return", "alt+e", "t", "t", "Return", RESULT_SIZE]),
    ("search-words", ["quibra", SURVEY], [*ESSAYS, "Return", "alt+e", "d"]),
    ("chart", ["quibra", SURVEY], [*CROSS, "alt+n", "Down", "Down", "Down", "alt+e", "r"]),
    ("chart-stacked", ["quibra", SURVEY], [*CROSS, "alt+n", "Down", "Down", "Down", "alt+e", "r", "ctrl+0"]),
    ("chart-solid", ["quibra", SURVEY], [*CROSS, "alt+n", "Down", "Down", "Down", "alt+e", "r", "ctrl+6"]),
    ("print-preview", ["quibra", SURVEY], [*CROSS, "alt+n", "ctrl+p"]),
    ("help", ["quibra", SURVEY], ["F1"]),
    ("help-search", ["quibra", SURVEY], ["F1", "ctrl+f", *"HTML", "Return"]),
    ("dialog-progress", ["quibra_screens", "progress", SURVEY], []),
    ("dialog-stop", ["quibra_screens", "progress", SURVEY], ["Return"]),
    *((f"dialog-{name}", ["quibra_screens", name], [])
      for name in ("message", "ask", "input", "question", "questions", "folder", "file", "font")),
]


# The people whose files the pictures show, and where they live: a mount that only the program sees, since its paths are
# in the pictures.
HOMES = "/srv"
IN_HOMES = ["unshare", "--map-root-user", "--mount", "sh", "-c",
            f'mount --bind "$0" {HOMES} && cd {HOMES}/hanako && exec "$@"']
PEOPLE = ("aoi", "akira", "chika", "daiki", "emi", "fumi", "genta", "hana", "hanako",
          "haruto", "ichiro", "jun", "kana", "ken", "mai", "nao", "rei")

# Where programs look for the colours of a desktop that is set to dark.
DARK_COLOURS = """
[Colors:Window]
BackgroundNormal=53,55,58
ForegroundNormal=238,238,238
[Colors:View]
BackgroundNormal=30,31,34
BackgroundAlternate=38,39,42
ForegroundNormal=238,238,238
[Colors:Button]
BackgroundNormal=65,67,70
ForegroundNormal=238,238,238
[Colors:Selection]
BackgroundNormal=42,118,198
ForegroundNormal=255,255,255
"""
DARK_DESKTOP = {"XDG_CURRENT_DESKTOP": "KDE", "KDE_SESSION_VERSION": "5"}


def wait_for(what, action, seconds=20):
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        result = action()
        if result:
            return result
        time.sleep(0.1)
    raise TimeoutError(what)


@contextlib.contextmanager
def running(command, **options):
    process = subprocess.Popen(command, **options)
    try:
        yield process
    finally:
        process.terminate()
        try:
            process.wait(10)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()


@contextlib.contextmanager
def display(size):
    """An X server with a window manager; gives the environment in which programs find it."""
    reading, writing = os.pipe()
    with running(["Xvfb", "-displayfd", str(writing), "-screen", "0", f"{size}x24", "-nolisten", "tcp"],
                 pass_fds=[writing], stderr=subprocess.DEVNULL):
        os.close(writing)
        with os.fdopen(reading) as numbers:
            number = numbers.readline().strip()
        env = os.environ | {"DISPLAY": f":{number}", "QT_QPA_PLATFORM": "xcb"}
        with tempfile.NamedTemporaryFile("w", suffix=".jwmrc") as plain:
            plain.write("<JWM></JWM>")  # nothing on the ground but windows
            plain.flush()
            with running(["jwm", "-f", plain.name], env=env, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL):
                yield env


def output(command, env):
    return subprocess.run(command, env=env, capture_output=True, text=True, check=False).stdout.strip()


def active_window(process, env):
    """The number of the active window, when it is one of the process."""
    if process.poll() is not None:
        raise ChildProcessError("the program has ended")
    window = output(["xdotool", "getactivewindow"], env)
    return window if window and output(["xdotool", "getwindowpid", window], env) == str(process.pid) else None


def settled_picture(window, env, path):
    """Takes pictures until two are the same: the window has been drawn and nothing in it moves."""
    last = None

    def take():
        nonlocal last
        subprocess.run(["import", "-window", window, str(path)], env=env, check=True)
        pixels, before = path.read_bytes(), last
        last = pixels
        time.sleep(0.3)
        return pixels == before

    wait_for("a settled picture", take)


def press(key, env):
    size = re.fullmatch(r"(\d+)x(\d+)", key)
    if size:
        sides = [str(int(side) * int(env["QT_SCALE_FACTOR"])) for side in size.groups()]
        action = ["getactivewindow", "windowsize", *sides]
    else:
        action = ["key", key]
    subprocess.run(["xdotool", *action], env=env, check=True)


def take(screen, build, path, env, dark):
    name, command, keys = screen
    with tempfile.TemporaryDirectory(prefix="quibra-") as place:
        # Nobody's settings and files are in the pictures: a tree of folders shows the home among these.
        homes = pathlib.Path(place) / "homes"
        for person in PEOPLE:
            (homes / person).mkdir(parents=True)
        home = f"{HOMES}/hanako"
        program_env = env | {"HOME": home, "XDG_CONFIG_HOME": f"{home}/.config", "XDG_DATA_HOME": f"{home}/.local/share",
                             "XDG_RUNTIME_DIR": place, "LANG": "ja_JP.UTF-8"}
        for folder in ("アンケート/2023年度", "アンケート/2024年度", "集計結果", "書類"):
            (homes / "hanako" / folder).mkdir(parents=True)
        shutil.copy(ROOT / "data/samples/residents.qb", homes / "hanako/アンケート")
        program = [*IN_HOMES, str(homes), str(build / "bin" / command[0]), *command[1:]]
        if dark and command[0] == "quibra_screens":
            program.append("--dark")
        elif dark:
            program_env |= DARK_DESKTOP
            (homes / "hanako/.config").mkdir()
            (homes / "hanako/.config/kdeglobals").write_text(DARK_COLOURS)
        with running(program, env=program_env) as process:
            for key in keys:
                wait_for(f"{name}: a window", lambda: active_window(process, env))
                time.sleep(0.3)
                press(key, env)
            window = wait_for(f"{name}: a window", lambda: active_window(process, env))
            time.sleep(0.5)
            if name.startswith("menu"):
                settled_picture("root", env, path)
                subprocess.run(["mogrify", "-trim", "+repage", str(path)], check=True)
            else:
                settled_picture(active_window(process, env) or window, env, path)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", type=pathlib.Path, default=ROOT / "build/release")
    parser.add_argument("--out", type=pathlib.Path, default=ROOT / "docs/screens")
    parser.add_argument("--only", nargs="*", help="only windows whose names begin so")
    parser.add_argument("--dark", action="store_true")
    parser.add_argument("--dpi", type=int, action="append", choices=[96, 192])
    options = parser.parse_args()

    missing = sorted(package for tool, package in NEEDED.items() if not shutil.which(tool))
    if missing:
        sys.exit("Please install: " + " ".join(missing))
    build = options.build.resolve()
    options.out.mkdir(parents=True, exist_ok=True)
    faults = 0
    for dpi in options.dpi or [96, 192]:
        with display("1600x1200" if dpi == 96 else "3200x2400") as env:
            env["QT_SCALE_FACTOR"] = str(dpi // 96)
            for screen in SCREENS:
                if options.only and not any(screen[0].startswith(name) for name in options.only):
                    continue
                name = screen[0] + ("-dark" if options.dark else "") + ("@2x" if dpi == 192 else "") + ".png"
                try:
                    take(screen, build, options.out / name, env, options.dark)
                    print(name)
                except (TimeoutError, OSError, subprocess.SubprocessError) as fault:
                    print(f"{name}: {fault}", file=sys.stderr)
                    faults += 1
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
