"""Every way in which a display can be missing: the component fails with 5, velcoran-host ends with status 1 and one line
on standard error, and neither process is ended by Qt. Where a display answers, the window opens.

    displays.py HOST LIBRARY VELCORAN_HOST

The servers that misbehave are this test's own sockets; the X servers that work are Xvfb on displays of its own.
"""
import contextlib
import os
import pathlib
import shutil
import signal
import socket
import struct
import subprocess
import sys
import tempfile
import threading
import time

from xvfb import FIRST_DISPLAY, xvfb

HOST, LIBRARY, PROGRAM = sys.argv[1:4]
DATABASE = "displays.db"  # in the working folder
OPENS, FAILS = 91, 5
PATIENCE = 2  # seconds that a silent server is given
TIMEOUT = 30
RESETS = 20
NAMES = ("DISPLAY", "WAYLAND_DISPLAY", "WAYLAND_SOCKET", "QT_QPA_PLATFORM", "QT_QPA_PLATFORM_PLUGIN_PATH",
         "QT_PLUGIN_PATH", "QT_QPA_PLATFORMTHEME", "XDG_SESSION_TYPE", "XAUTHORITY")
COMMANDS = {
    "open": ["open", "--db", DATABASE, "--kind", "Import"],
    "demo": ["demo"],
    "drive": ["drive", "--db", DATABASE],
}
failures = []


def expect(is_true, what):
    if not is_true:
        failures.append(what)
        print("not so:", what, file=sys.stderr)


# --- servers of the test's own

X_SETUP_HEAD = struct.Struct("=BxHHH")  # status, protocol, minor version, length of the rest in words
X_REPLY = b"\x01" + bytes(31)


def x_setup(screens):
    body = struct.pack("=IIIIHHBBBBBBBB4x", 0, 0x200000, 0x1FFFFF, 0, 0, 0xFFFF, screens, 0, 0, 0, 32, 32, 8, 255)
    body += bytes(40) * screens
    return X_SETUP_HEAD.pack(1, 11, 0, len(body) // 4) + body


def close_at_once(connection):
    connection.close()


def x_refuses(connection):
    connection.recv(1024)
    reason = b"No protocol specified\n\0\0"
    connection.sendall(struct.pack("=BBHHH", 0, 22, 11, 0, len(reason) // 4) + reason)
    connection.recv(1024)


def x_stops_within_setup(connection):
    connection.recv(1024)
    connection.sendall(x_setup(1)[:20])
    connection.recv(1024)


def x_without_screens(connection):
    connection.recv(1024)
    connection.sendall(x_setup(0))
    connection.recv(1024)


def x_freezes_after_setup(connection):
    connection.recv(1024)
    connection.sendall(x_setup(1))
    while connection.recv(1024):
        pass


class XServesOne:
    """Serves the first connection and closes every other one: a server that goes between two of them."""

    def __init__(self):
        self.served = 0

    def __call__(self, connection):
        self.served += 1
        if self.served > 1:
            return
        connection.recv(1024)
        connection.sendall(x_setup(1))
        connection.recv(1024)
        connection.sendall(X_REPLY)
        connection.recv(1024)


def wayland_event(target, opcode, body=b""):
    return struct.pack("=II", target, (8 + len(body)) << 16 | opcode) + body


def wayland_errs(connection):
    connection.recv(1024)
    connection.sendall(wayland_event(1, 0, struct.pack("=III", 1, 0, 4) + b"no\0\0"))
    connection.recv(1024)


def wayland_has_nothing(connection):
    connection.recv(1024)
    connection.sendall(wayland_event(3, 0, struct.pack("=I", 1)))
    connection.recv(1024)


@contextlib.contextmanager
def serving(listener, answer):
    """Lets a function answer each connection; without one nobody takes them."""
    listener.listen(5)

    def run():
        while True:
            try:
                connection, _ = listener.accept()
            except OSError:
                return
            threading.Thread(target=talk, args=(connection,), daemon=True).start()

    def talk(connection):
        with connection, contextlib.suppress(OSError):
            answer(connection)

    if answer is not None:
        threading.Thread(target=run, daemon=True).start()
    try:
        yield
    finally:
        listener.shutdown(socket.SHUT_RDWR)  # a thread that waits in it would go on to listen
        listener.close()


def listener_at(path):
    pathlib.Path(path).unlink(missing_ok=True)
    listener = socket.socket(socket.AF_UNIX)
    listener.bind(str(path))
    return listener


def tcp_listener():
    """A listener that a display's number names, and that number."""
    for number in range(FIRST_DISPLAY + 100, FIRST_DISPLAY + 1000):  # apart from those of the servers that work
        listener = socket.socket()
        try:
            listener.bind(("127.0.0.1", 6000 + number))
            return listener, number
        except OSError:
            listener.close()
    raise SystemExit("no free port")


# --- what is tried

def run(command, surroundings, given=""):
    environment = {name: value for name, value in os.environ.items() if name not in NAMES}
    environment.update(LC_ALL="C.UTF-8", ASAN_OPTIONS="detect_leaks=0", **surroundings)  # windows are left open
    try:
        return subprocess.run(command, env=environment, input=given, capture_output=True, text=True, timeout=TIMEOUT)
    except subprocess.TimeoutExpired:
        return subprocess.CompletedProcess(command, -1, "", "it does not end")


def try_component(name, number, surroundings, *more, host=HOST):
    began = time.monotonic()
    ended = run([host, LIBRARY, str(number), *more], surroundings)
    expect(ended.returncode == 0, f"{name}: the component gives {number}: {ended.returncode} {ended.stderr}")
    return time.monotonic() - began


def try_program(name, surroundings, commands=COMMANDS):
    for command in commands:
        ended = run([PROGRAM, *COMMANDS[command]], surroundings)
        lines = ended.stderr.splitlines()
        expect(ended.returncode == 1 and len(lines) == 1 and "there is no display" in lines[0],
               f"{name}: velcoran-host {command} ends with status 1 and a line: {ended.returncode} {ended.stderr}")


def try_missing(name, surroundings):
    took = try_component(name, FAILS, surroundings)
    expect(took < PATIENCE * 2 + 1.5, f"{name}: {took:.1f} s")
    try_program(name, surroundings)


def try_named_displays(folder):
    """Displays of which nothing is there."""
    nothing = str(folder / "nothing")
    x = ":4711"
    rows = [
        ("dead DISPLAY", {"DISPLAY": x}),
        ("DISPLAY that is none", {"DISPLAY": "nonsense"}),
        ("DISPLAY of a closed port", {"DISPLAY": "127.0.0.1:4711"}),
        ("DISPLAY of a host that is none", {"DISPLAY": "host.invalid:0"}),
        ("dead WAYLAND_DISPLAY", {"WAYLAND_DISPLAY": nothing}),
        ("dead WAYLAND_DISPLAY by name", {"WAYLAND_DISPLAY": "wayland-4711", "XDG_RUNTIME_DIR": str(folder)}),
        ("dead WAYLAND_DISPLAY and DISPLAY", {"WAYLAND_DISPLAY": nothing, "DISPLAY": x}),
        ("inherited Wayland connection", {"WAYLAND_DISPLAY": nothing, "WAYLAND_SOCKET": "0"}),
        ("Wayland session and dead DISPLAY", {"XDG_SESSION_TYPE": "wayland", "DISPLAY": x}),
        ("WAYLAND_DISPLAY of a socket that nobody holds", {"WAYLAND_DISPLAY": str(folder / "left-over")}),
    ]
    rows += [(platform, {"QT_QPA_PLATFORM": platform}) for platform in
             ("wayland", "wayland;xcb", "xcb;wayland", "xcb", "XCB", "xcb:x", "nonsense", ";", ":", "linuxfb", "eglfs",
              "minimalegl", "vkkhrdisplay", "offscreen:configfile=/nowhere", "nonsense;xcb:x;wayland-egl")]
    rows.append(("xcb with a dead DISPLAY", {"QT_QPA_PLATFORM": "xcb", "DISPLAY": x}))
    listener_at(folder / "left-over").close()
    for name, surroundings in rows:
        try_missing(name, surroundings)
    # Where nothing is named, only the command that needs a display fails.
    try_component("nothing named", FAILS, {})
    try_component("empty names", FAILS, {"QT_QPA_PLATFORM": "", "DISPLAY": "", "WAYLAND_DISPLAY": ""})
    try_program("nothing named", {}, ["open"])


def try_bad_servers(folder):
    for answer in (None, close_at_once, x_refuses, x_stops_within_setup, x_without_screens, x_freezes_after_setup):
        listener, number = tcp_listener()
        with serving(listener, answer):
            try_missing("X server: " + (answer.__name__ if answer else "silent"), {"DISPLAY": f"127.0.0.1:{number}"})
    for answer in (None, close_at_once, wayland_errs, wayland_has_nothing):
        path = folder / "wayland"
        with serving(listener_at(path), answer):
            try_missing("compositor: " + (answer.__name__ if answer else "silent"), {"WAYLAND_DISPLAY": str(path)})
    for command in (None, *COMMANDS):  # Qt fails where the first connection stood
        listener, number = tcp_listener()
        surroundings = {"DISPLAY": f"127.0.0.1:{number}"}
        with serving(listener, XServesOne()):
            if command is None:
                try_component("X server that goes", FAILS, surroundings, "begun")
            else:
                ended = run([PROGRAM, *COMMANDS[command]], surroundings)
                expect(ended.returncode == 1, f"X server that goes: {command}: {ended.returncode} {ended.stderr}")


def try_missing_plugins(folder, display):
    """A host whose configuration names a folder of plugins of its own."""
    host = folder / "host"
    shutil.copy(HOST, host)
    (folder / "qt.conf").write_text(f"[Paths]\nPlugins={folder}/plugins\n", encoding="utf-8")
    platforms = folder / "plugins" / "platforms"
    platforms.mkdir(parents=True)
    source = pathlib.Path(subprocess.check_output(["qtpaths6", "--query", "QT_INSTALL_PLUGINS"], text=True).strip())
    plugin = (source / "platforms" / "libqxcb.so").read_bytes()
    surroundings = {"DISPLAY": f":{display}"}
    try_component("no plugin", FAILS, surroundings, host=host)
    (platforms / "libqxcb.so").write_bytes(plugin)
    try_component("nothing to fall back on", FAILS, surroundings, host=host)
    shutil.copy(source / "platforms" / "libqoffscreen.so", platforms)
    try_component("plugins of its own", OPENS, surroundings, host=host)
    for name, broken in (("plugin without its libraries", plugin.replace(b"libQt6XcbQpa.so", b"libQt6Missing.so"[:15])),
                         ("cut plugin", plugin[:5000]), ("empty plugin", b"")):
        (platforms / "libqxcb.so").write_bytes(broken)
        try_component(name, FAILS, surroundings, host=host)
    (platforms / "libqxcb.so").unlink()
    try_component("no plugin of the platform", FAILS, surroundings, host=host)
    try_component("plugins by another path", OPENS,
                  {**surroundings, "QT_QPA_PLATFORM_PLUGIN_PATH": str(source / "platforms")}, host=host)


def try_working_displays(folder):
    with xvfb("-noreset") as (number, server):
        x = f":{number}"
        dead = str(folder / "nothing")
        for name, surroundings in (
                ("DISPLAY", {"DISPLAY": x}), ("with a screen", {"DISPLAY": x + ".0"}), ("unix", {"DISPLAY": "unix" + x}),
                ("xcb:x", {"QT_QPA_PLATFORM": "xcb:x", "DISPLAY": x}),
                ("second of a list", {"QT_QPA_PLATFORM": "wayland;xcb", "DISPLAY": x}),
                ("unknown first", {"QT_QPA_PLATFORM": "nonsense;xcb", "DISPLAY": x}),
                ("behind a dead Wayland", {"WAYLAND_DISPLAY": dead, "DISPLAY": x}),
                ("offscreen after a dead one", {"QT_QPA_PLATFORM": "xcb;offscreen"}),
                ("offscreen", {"QT_QPA_PLATFORM": "offscreen", "QT_QPA_PLATFORMTHEME": "gtk3"}),
                ("minimal", {"QT_QPA_PLATFORM": "minimal"})):
            try_component(name, OPENS, surroundings)
            try_component(name + " beside handlers", OPENS, surroundings, "handlers")
        try_component("no such screen", FAILS, {"DISPLAY": x + ".7"})
        try_missing_plugins(folder, number)
        server.send_signal(signal.SIGSTOP)
        try_missing("stopped X server", {"DISPLAY": x})


def try_full_server():
    """A server that has room for the first connection and not for Qt's."""
    with xvfb("-noreset", "-maxclients", "64") as (number, _):
        clients = []
        while True:
            client = socket.socket(socket.AF_UNIX)
            client.settimeout(TIMEOUT)
            client.connect(f"/tmp/.X11-unix/X{number}")
            client.sendall(struct.pack("=ccHHHHH", b"l" if sys.byteorder == "little" else b"B", b"\0", 11, 0, 0, 0, 0))
            clients.append(client)
            try:
                is_served = client.recv(8)[:1] == b"\x01"
            except ConnectionResetError:
                is_served = False
            if not is_served:
                break
        for client in clients[-2:]:
            client.close()
        time.sleep(0.2)
        try_component("X server with room for one", FAILS, {"DISPLAY": f":{number}"}, "begun")


def try_authority(folder):
    cookie = os.urandom(16)

    def entry(machine, secret):
        parts = (machine.encode(), str(FIRST_DISPLAY).encode(), b"MIT-MAGIC-COOKIE-1", secret)
        return struct.pack(">H", 256) + b"".join(struct.pack(">H", len(part)) + part for part in parts)

    with_cookie, without = folder / "authority", folder / "other-authority"
    number = FIRST_DISPLAY
    with_cookie.write_bytes(entry(socket.gethostname(), cookie))
    without.write_bytes(entry(socket.gethostname(), os.urandom(16)))
    with xvfb("-auth", str(with_cookie), "-listen", "tcp") as (number, _):
        expect(number == FIRST_DISPLAY, "the display is free")
        for display in (f":{number}", f"127.0.0.1:{number}", f"localhost:{number}"):
            try_component("right cookie " + display, OPENS, {"DISPLAY": display, "XAUTHORITY": str(with_cookie)})
            try_component("wrong cookie " + display, FAILS, {"DISPLAY": display, "XAUTHORITY": str(without)})
        try_program("wrong cookie", {"DISPLAY": f":{number}", "XAUTHORITY": str(without)})


def try_resetting_server():
    with xvfb() as (number, _):
        surroundings = {"DISPLAY": f":{number}"}
        for _ in range(RESETS):
            try_component("resetting X server", OPENS, surroundings)
            ended = run([PROGRAM, *COMMANDS["drive"]], surroundings, '{"do":"quit"}\n')
            expect(ended.returncode == 0, f"drive on a resetting X server: {ended.returncode} {ended.stderr}")


def main():
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        subprocess.run([PROGRAM, "sample-db", DATABASE, "--documents", "10"], check=True)
        try_named_displays(folder)
        try_bad_servers(folder)
        try_working_displays(folder)
        try_full_server()
        try_authority(folder)
        try_resetting_server()
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
