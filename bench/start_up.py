#!/usr/bin/env python3
"""How long quibra takes from its start to a main window that answers.

    bench/start_up.py PROGRAM [SURVEY]

Starts it eleven times, offscreen and, where Xvfb is installed, under an X server of its own, each time with empty
settings and on a message bus of its own (dbus-daemon, and gdbus of libglib2.0-bin). The window answers when a command
sent to it over the bus comes back; that is behind its first drawing. The first start only warms the disk's cache.
With a survey the times include opening it.
"""
import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

STARTS = 11
NAME = "jp.quibra.Quibra"


def start_bus():
    bus = subprocess.Popen(["dbus-daemon", "--session", "--print-address", "--nofork"], stdout=subprocess.PIPE,
                           stderr=subprocess.DEVNULL, text=True)
    return bus, bus.stdout.readline().strip()


def start_x_server():
    read_end, write_end = os.pipe()
    server = subprocess.Popen(["Xvfb", "-displayfd", str(write_end), "-screen", "0", "1280x720x24"],
                              pass_fds=[write_end], stderr=subprocess.DEVNULL)
    os.close(write_end)
    with os.fdopen(read_end) as numbers:
        return server, ":" + numbers.readline().strip()


def seconds_to_answer(command, environment):
    waiting = subprocess.Popen(["gdbus", "wait", "--session", "--timeout", "60", NAME], env=environment)
    time.sleep(0.2)  # it listens by then
    start = time.perf_counter()
    program = subprocess.Popen(command, env=environment, stderr=subprocess.DEVNULL)
    try:
        if waiting.wait() != 0:
            sys.exit("quibra did not come up")
        subprocess.run(["gdbus", "call", "--session", "--dest", NAME, "--object-path", "/Quibra", "--method",
                        "jp.quibra.Command.Command", ""], env=environment, check=True, stdout=subprocess.DEVNULL)
        return time.perf_counter() - start
    finally:
        program.kill()
        program.wait()


def measure(what, command, environment):
    times = []
    for _ in range(STARTS):
        with tempfile.TemporaryDirectory() as home:
            folders = {"HOME": home, "XDG_CONFIG_HOME": home, "XDG_DATA_HOME": home, "XDG_RUNTIME_DIR": home}
            times.append(seconds_to_answer(command, environment | folders))
    warm = sorted(times[1:])
    print(f"{what}: first {times[0]:.3f} s, then median {statistics.median(warm):.3f} s, worst {warm[-1]:.3f} s")


def main():
    if not 2 <= len(sys.argv) <= 3:
        sys.exit(__doc__)
    command = [os.path.abspath(path) for path in sys.argv[1:]]
    bus, address = start_bus()
    environment = os.environ | {"DBUS_SESSION_BUS_ADDRESS": address}
    try:
        measure("offscreen", command, environment | {"QT_QPA_PLATFORM": "offscreen"})
        if shutil.which("Xvfb"):
            server, display = start_x_server()
            try:
                measure("Xvfb", command, environment | {"QT_QPA_PLATFORM": "xcb", "DISPLAY": display})
            finally:
                server.terminate()
                server.wait()
    finally:
        bus.terminate()
        bus.wait()


if __name__ == "__main__":
    main()
