"""Signals, limits and readers that go while something is written."""
import fcntl
import json
import os
import signal
import subprocess
import tempfile
import time

from workshop import ENDING, FORMATS, PATIENCE, Failure, died_by, finish, is_old, put_old, require_nothing_beside

HELD = 300  # milliseconds that a held call takes
STUCK = 8000  # longer than a run has time to end by itself
AT_ONCE = 1.0  # seconds
FORCED = 5.0
MOMENTS = 16  # of a run, at which a signal comes
SET_PIPE_SIZE = 1031


def wait_for(path, running):
    """Until a call is held."""
    until = time.monotonic() + PATIENCE
    while not os.path.exists(path):
        if running.poll() is not None:
            raise Failure(f"ended before the call was held: {finish(running)}")
        if time.monotonic() > until:
            running.kill()
            finish(running)
            raise Failure("the call was never reached")
        time.sleep(0.005)


def require_old_or_whole(shop, path, form):
    if not is_old(path):
        shop.require_whole(path, form)


def send(running, numbers, pause=0.3):
    """Equal signals that come together are one."""
    for place, number in enumerate(numbers):
        time.sleep(pause if place else 0)
        running.send_signal(number)


def held(shop, name, form, call, numbers, milliseconds, within, before=()):
    """A signal comes while a call of the export is under way."""
    folder, path = shop.case(name, form)
    temporary = shop.place("temporary", name.replace("/", "-"))
    mark = os.path.join(shop.place("marks"), name.replace("/", "-"))
    faults = shop.faults((folder, tempfile.gettempdir(), temporary), call, 1, f"hold:{milliseconds}", FAULT_MARK=mark,
                         TMPDIR=temporary)
    running = shop.start(shop.export(path), faults, before)
    wait_for(mark, running)
    send(running, numbers)
    start = time.monotonic()
    ended = finish(running)
    took = time.monotonic() - start
    require_nothing_beside(path, (temporary,))
    require_old_or_whole(shop, path, form)
    if ended.status not in died_by(numbers[0]) or ended.said:
        raise Failure(str(ended))
    if took > within:
        raise Failure(f"it took {took:.1f} s to end")
    return "old" if is_old(path) else "whole"


def ignored(shop, name, number):
    """Who started it has said that this signal is not for it, as nohup does."""
    folder, path = shop.case(name, "csv")
    mark = os.path.join(shop.place("marks"), name.replace("/", "-"))
    faults = shop.faults((folder,), "write", 1, f"hold:{HELD}", FAULT_MARK=mark)
    trap = f"trap '' {number.name[3:]}; exec \"$@\""
    running = shop.start(shop.export(path), faults, ("sh", "-c", trap, "sh"))
    wait_for(mark, running)
    running.send_signal(number)
    return shop.judge(finish(running), path, may_end=(0,))


def at_moment(shop, name, form, number, delay):
    """A signal comes at any moment of the run."""
    _, path = shop.case(name, form)
    temporary = shop.place("temporary", name.replace("/", "-"))
    running = shop.start(shop.export(path), {"TMPDIR": temporary})
    time.sleep(delay)
    running.send_signal(number)
    ended = finish(running)
    require_nothing_beside(path, (temporary,))
    require_old_or_whole(shop, path, form)
    if ended.status not in (0, *died_by(number)):
        raise Failure(str(ended))
    return "done" if ended.status == 0 else "ended"


def sample(shop, name, ending, number):
    """A sample that is half written."""
    folder, _ = shop.case(name)
    path = os.path.join(folder, "baza" + ending)
    put_old(path)
    mark = os.path.join(shop.place("marks"), name.replace("/", "-"))
    call = "pwrite" if ending == ".db" else "write"
    faults = shop.faults((folder,), call, 2, f"hold:{HELD}", FAULT_MARK=mark)
    running = shop.start(["sample-db", path] + (["--sql"] if ending == ".sql" else []), faults)
    wait_for(mark, running)
    running.send_signal(number)
    ended = finish(running)
    require_nothing_beside(path)
    if ended.status not in died_by(number) or not is_old(path):
        raise Failure(str(ended))
    return "ended"


def drive(shop, name, number):
    """A script's export that is half written."""
    folder, path = shop.case(name, "xlsx")
    mark = os.path.join(shop.place("marks"), name.replace("/", "-"))
    faults = shop.faults((folder, tempfile.gettempdir()), "write", 1, f"hold:{HELD}", FAULT_MARK=mark)
    running = shop.start(["drive", "--db", shop.database], faults, stdin=subprocess.PIPE)
    script = [{"do": "incarca", "kind": "Import", "date": "2026-12-31"}, {"do": "click", "control": "Raport"},
              {"do": "wait"}, {"do": "answer", "dialog": "export", "format": "xlsx", "file": path},
              {"do": "viewer", "action": "export"}, {"do": "wait"}]
    running.stdin.write("".join(json.dumps(line) + "\n" for line in script).encode())
    running.stdin.flush()
    wait_for(mark, running)
    running.send_signal(number)
    ended = finish(running)
    require_nothing_beside(path)
    if not is_old(path):
        raise Failure("a file was written by a run that was ended")
    if ended.status not in died_by(number):
        raise Failure(str(ended))
    return "ended"


def window(shop, name, command, number):
    """The window stands open, or the demo is at work."""
    folder, _ = shop.case(name)
    temporary = shop.place("temporary", name.replace("/", "-"))
    trace = os.path.join(folder, "urma")
    arguments = {"open": ["open", "--db", shop.database, "--kind", "Import", "--trace", trace],
                 "demo": ["demo", "--out", os.path.join(folder, "demo"), "--trace", trace]}[command]
    running = shop.start(arguments, {"TMPDIR": temporary})
    wait_for(trace, running)
    running.send_signal(number)
    ended = finish(running)
    left = os.listdir(temporary)
    if ended.status not in died_by(number) or left:
        raise Failure(f"{ended}, stays behind: {left}")
    return "ended"


def too_large(shop, name, form, size):
    """A limit on the size of files: SIGXFSZ, and after it EFBIG."""
    _, path = shop.case(name, form)
    ended = shop.run(shop.export(path), before=("prlimit", f"--fsize={size}"))
    return shop.judge(ended, path, may_end=(1,))


def reader_goes(shop, name, form):
    """SIGPIPE, and after it EPIPE."""
    folder, _ = shop.case(name)
    path = os.path.join(folder, "raport." + form)
    os.mkfifo(path)
    reader = os.open(path, os.O_RDONLY | os.O_NONBLOCK)
    fcntl.fcntl(reader, SET_PIPE_SIZE, 4096)
    running = shop.start(shop.export(path))
    until = time.monotonic() + PATIENCE
    got = b""
    while not got and running.poll() is None and time.monotonic() < until:
        try:
            got = os.read(reader, 1)
        except BlockingIOError:
            pass
        time.sleep(0.005)
    os.close(reader)
    ended = finish(running)
    require_nothing_beside(path)
    if not got or ended.status != 1 or path not in ended.said or len(ended.said.splitlines()) != 1:
        raise Failure(f"{ended}, {len(got)} bytes came")
    return "refused"


def signal_cases(shop):
    for form in FORMATS:
        for number in ENDING:
            for call in ("write", "fsync", "rename"):
                yield (f"signals/{form}/{call}-{number.name}", lambda name, form=form, call=call, number=number:
                       held(shop, name, form, call, (number,), HELD, FORCED))
        for step in range(MOMENTS):
            number = ENDING[step % len(ENDING)]
            yield (f"signals/{form}/moment-{step}-{number.name}", lambda name, form=form, step=step, number=number:
                   at_moment(shop, name, form, number, 0.005 + 0.012 * step))
    for number in ENDING:
        yield f"signals/stuck/{number.name}", lambda name, number=number: held(
            shop, name, "xlsx", "write", (number,), STUCK, FORCED)
        yield f"signals/second/{number.name}", lambda name, number=number: held(
            shop, name, "xlsx", "write", (number, signal.SIGTERM), STUCK, AT_ONCE)
        for ending in (".db", ".sql"):
            yield (f"signals/sample{ending}/{number.name}",
                   lambda name, ending=ending, number=number: sample(shop, name, ending, number))
        yield f"signals/drive/{number.name}", lambda name, number=number: drive(shop, name, number)
        for command in ("open", "demo"):
            yield (f"signals/{command}/{number.name}",
                   lambda name, command=command, number=number: window(shop, name, command, number))
    for number in (signal.SIGHUP, signal.SIGINT):
        yield f"signals/ignored/{number.name}", lambda name, number=number: ignored(shop, name, number)


def cases(shop):
    yield from signal_cases(shop)
    for form in FORMATS:
        whole = shop.references[form][0]
        for size in (4096, 16384, whole // 2, whole * 15 // 16):
            yield (f"limits/{form}/{size}", lambda name, form=form, size=size: too_large(shop, name, form, size))
        yield f"pipes/{form}/reader-goes", lambda name, form=form: reader_goes(shop, name, form)
