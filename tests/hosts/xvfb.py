"""X servers of a test's own."""
import contextlib
import os
import signal
import subprocess

# Far from those that people use, and apart from those of another run of these tests.
FIRST_DISPLAY = int(os.environ.get("VELCORAN_TEST_DISPLAY", 4100 + os.getpid() % 20 * 1000))


@contextlib.contextmanager
def xvfb(*options):
    """An X server of its own, which resets itself after its last client unless told otherwise; its display's number."""
    for number in range(FIRST_DISPLAY, FIRST_DISPLAY + 9):
        if os.path.exists(f"/tmp/.X11-unix/X{number}"):
            continue
        ready, told = os.pipe()
        server = subprocess.Popen(["Xvfb", f":{number}", "-screen", "0", "1280x900x24", "-displayfd", str(told), *options],
                                  stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, pass_fds=[told])
        os.close(told)
        with os.fdopen(ready) as pipe:
            is_ready = pipe.readline() != ""
        try:
            if is_ready:
                yield number, server
                return
        finally:
            server.send_signal(signal.SIGCONT)
            server.terminate()
            server.wait()
    raise SystemExit("no X server can be started")
