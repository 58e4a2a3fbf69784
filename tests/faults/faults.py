#!/usr/bin/env python3
"""Exports while disks are full, calls fail, threads do not start and signals come; looks at what stands afterwards.

    faults.py PROGRAM [GROUP ...]

Runs in a mount namespace of its own (unshare --mount) on small file systems and device nodes of its own making, so it
needs root; where it may not have them, the groups that need them are left out, and said so.
"""
import json
import os
import re
import signal
import subprocess
import sys
import tempfile
import time
import zipfile

HERE = os.path.dirname(os.path.abspath(__file__))
FORMATS = ("pdf", "xlsx", "csv", "html", "odt", "txt")
OLD = b"the good old file\n"
SIZES = 40
MOST_CALLS = 14  # positions tried of one call in one format
SIGNALS = (signal.SIGTERM, signal.SIGINT, signal.SIGHUP)

os.environ.update({"LC_ALL": "C.UTF-8", "QT_QPA_PLATFORM": "offscreen", "XDG_RUNTIME_DIR": tempfile.mkdtemp()})


class Faults:
    def __init__(self, program, folder):
        self.program = program
        self.folder = folder
        self.database = os.path.join(folder, "sample.db")
        self.failures = []
        self.checks = 0
        self.whole = {}
        self.shim = os.path.join(folder, "failing_calls.so")
        subprocess.run(["cc", "-shared", "-fPIC", "-O1", "-o", self.shim, os.path.join(HERE, "failing_calls.c"), "-ldl",
                        "-lpthread"], check=True)
        subprocess.run([program, "sample-db", self.database, "--documents", "3000"], check=True)

    def command(self, out):
        return [self.program, "export", "--db", self.database, "--kind", "Import", "--from", "2026-01-01", "--to",
                "2026-12-31", "--out", out]

    def run(self, out, environment=None, **more):
        return subprocess.run(self.command(out), env=dict(os.environ, **(environment or {})), stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, timeout=120, **more)

    def shimmed(self, **settings):
        return dict({"LD_PRELOAD": self.shim}, **{"VELCORAN_" + key: str(value) for key, value in settings.items()})

    def fail(self, what):
        self.failures.append(what)
        print("  FAILED", what, flush=True)

    def reference(self, form):
        """Size and rows of an export that nothing disturbs."""
        if form not in self.whole:
            path = os.path.join(self.folder, "reference." + form)
            done = self.run(path)
            assert done.returncode == 0, done.stderr
            self.whole[form] = (os.path.getsize(path), content(path))
        return self.whole[form]

    def check(self, name, form, path, done):
        """Either whole, or status 1 with the old file and nothing beside it."""
        self.checks += 1
        folder = os.path.dirname(path)
        names = sorted(name for name in os.listdir(folder) if not name.startswith("raport."))
        if names:
            self.fail(f"{name}: {names} stays behind")
        if done.returncode == 0:
            if content(path) != self.reference(form)[1]:
                self.fail(f"{name}: status 0, and the file is not whole")
            return True
        lines = [line for line in done.stderr.decode(errors="replace").splitlines() if line.startswith("velcoran-host")]
        if done.returncode != 1 or len(lines) != 1:
            self.fail(f"{name}: status {done.returncode}, {done.stderr[-200:]!r}")
        elif os.path.basename(path) not in lines[0] and "thread" not in name:
            self.fail(f"{name}: the message does not name the file: {lines[0]}")
        with open(path, "rb") as file:
            if file.read() != OLD:
                self.fail(f"{name}: the old file is not what it was")
        return False


def content(path):
    """What a reader finds in an export, without the moment of writing."""
    try:
        if path.endswith((".xlsx", ".odt")):
            with zipfile.ZipFile(path) as archive:
                if archive.testzip():
                    return None
                return [strip(archive.read(name)) for name in sorted(archive.namelist()) if "docProps" not in name]
        if path.endswith(".pdf"):
            if subprocess.run(["qpdf", "--check", path], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode:
                return None
            return strip(subprocess.check_output(["pdftotext", "-layout", path, "-"]))
        with open(path, "rb") as file:
            return strip(file.read())
    except (OSError, zipfile.BadZipFile, subprocess.CalledProcessError):
        return None


def strip(data):
    return re.sub(rb"\d\d[/.]\d\d[/.]\d{4},? \d\d:\d\d(:\d\d)?|\d{4}-\d\d-\d\dT[\d:Z]+", b"", data)


def put_old(path):
    with open(path, "wb") as file:
        file.write(OLD)


def sizes_of(size, form):
    """40 sizes: near the end, at multiples of 16 and 64 KB, and between packed and unpacked, in pages of 4 KB."""
    page = 4096
    need = (size + page - 1) // page
    chosen = {need + step for step in range(-5, 4)}
    chosen |= {4 * number for number in range(1, 6)} | {16 * number for number in range(1, 6)}
    widest = need * (20 if form == "xlsx" else 3)
    for step in (2, 1):
        for number in range(1, SIZES, step):
            if len(chosen) < SIZES:
                chosen.add(2 + widest * number // SIZES)
    return [pages * page for pages in sorted(chosen) if pages > 1]


def full_disk(faults):
    for form in FORMATS:
        size = faults.reference(form)[0]
        ends = {True: 0, False: 0}
        for room in sizes_of(size, form):
            disk = os.path.join(faults.folder, "disk")
            os.makedirs(disk, exist_ok=True)
            subprocess.run(["mount", "-t", "tmpfs", "-o", f"size={room + 8192}", "tmpfs", disk], check=True)
            try:
                path = os.path.join(disk, "raport." + form)
                put_old(path)
                done = faults.run(path, {"TMPDIR": disk})
                ends[faults.check(f"disk of {room} bytes, {form}", form, path, done)] += 1
            finally:
                subprocess.run(["umount", disk], check=True)
        print(f"  {form}: {ends[True]} whole, {ends[False]} refused", flush=True)
        if not ends[True] or not ends[False]:
            faults.fail(f"full disk, {form}: the sizes do not reach both ends")


def full_temporary_folder(faults):
    """What is written beside its place needs no room elsewhere."""
    disk = os.path.join(faults.folder, "disk")
    folder = os.path.join(faults.folder, "room")
    os.makedirs(disk, exist_ok=True)
    os.makedirs(folder)
    subprocess.run(["mount", "-t", "tmpfs", "-o", "size=8k", "tmpfs", disk], check=True)
    for form in FORMATS:
        path = os.path.join(folder, "raport." + form)
        put_old(path)
        if not faults.check(f"full folder of temporary files, {form}", form, path, faults.run(path, {"TMPDIR": disk})):
            faults.fail(f"full folder of temporary files, {form}: status 1")
        os.unlink(path)
    subprocess.run(["umount", disk], check=True)


def failing_calls(faults):
    folder = os.path.join(faults.folder, "calls")
    os.makedirs(folder, exist_ok=True)
    counts = os.path.join(faults.folder, "count")
    for form in FORMATS:
        path = os.path.join(folder, "raport." + form)
        tried = {}
        for call in ("write", "fwrite", "fflush", "fclose", "fsync", "close", "linkat", "renameat2", "unlink", "rename"):
            put_old(path)
            done = faults.run(path, faults.shimmed(FAIL_CALL=call, FAIL_AT=0, FAIL_COUNT=counts))
            assert done.returncode == 0, done.stderr
            with open(counts, encoding="ascii") as file:
                total = int(file.read())
            places = sorted({1 + number * (total - 1) // max(1, min(total, MOST_CALLS) - 1)
                             for number in range(min(total, MOST_CALLS))})
            tried[call] = f"{len(places)}/{total}"
            for place in places:
                put_old(path)
                error = 28 if place % 2 else 5  # ENOSPC, EIO
                done = faults.run(path, faults.shimmed(FAIL_CALL=call, FAIL_AT=place, FAIL_ERRNO=error))
                faults.check(f"{call} {place} of {total} fails, {form}", form, path, done)
        print(f"  {form}:", ", ".join(f"{call} {places}" for call, places in tried.items()), flush=True)


def threads(faults):
    folder = os.path.join(faults.folder, "threads")
    os.makedirs(folder, exist_ok=True)
    for form in ("pdf", "xlsx"):
        path = os.path.join(folder, "raport." + form)
        for number in range(1, 10):
            put_old(path)
            done = faults.run(path, faults.shimmed(FAIL_CALL="thread", FAIL_AT=number))
            faults.check(f"thread {number} does not start, {form}", form, path, done)
    search_without_threads(faults)


def search_without_threads(faults):
    commands = [{"do": "incarca", "kind": "Import", "date": "2026-03-15"}, {"do": "click", "control": "Raport"},
                {"do": "wait", "seconds": 60}, {"do": "report"}, {"do": "viewer", "action": "search", "text": "SRL"},
                {"do": "viewer", "action": "search", "text": "SRL"}]
    lines = "\n".join(map(json.dumps, commands)).encode()
    for number in range(2, 10):  # the first is the host's own
        done = subprocess.run([faults.program, "drive", "--db", faults.database], input=lines, timeout=120,
                              env=dict(os.environ, **faults.shimmed(FAIL_CALL="thread", FAIL_AT=number)),
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False)
        answers = [json.loads(line) for line in done.stdout.splitlines()]
        faults.checks += 1
        hasReport = len(answers) == len(commands) and answers[3]["report"] is not None
        if done.returncode != 0 or any(not answer["ok"] for answer in answers):
            faults.fail(f"thread {number} does not start, drive: status {done.returncode}, {answers[-1:]}")
        elif hasReport and any(answer["found"] is None for answer in answers[4:]):
            faults.fail(f"thread {number} does not start, search: nothing found")


def signals(faults):
    folder = os.path.join(faults.folder, "signals")
    os.makedirs(folder, exist_ok=True)
    temporary = os.path.join(faults.folder, "tmp")
    os.makedirs(temporary, exist_ok=True)
    for form in FORMATS:
        path = os.path.join(folder, "raport." + form)
        for number in SIGNALS:
            put_old(path)
            environment = dict(os.environ, TMPDIR=temporary, **faults.shimmed(SLOW_WRITE=150))
            running = subprocess.Popen(faults.command(path), env=environment, stderr=subprocess.PIPE)
            time.sleep(0.9)
            running.send_signal(number)
            try:
                _, said = running.communicate(timeout=20)
            except subprocess.TimeoutExpired:
                running.kill()
                faults.fail(f"{number.name}, {form}: it does not end")
                continue
            faults.checks += 1
            with open(path, "rb") as file:
                if file.read() != OLD and content(path) != faults.reference(form)[1]:
                    faults.fail(f"{number.name}, {form}: a cut file stands")
            left = [name for name in os.listdir(folder) + os.listdir(temporary) if not name.startswith("raport.")]
            if left:
                faults.fail(f"{number.name}, {form}: {left} stays behind, {said[-100:]!r}")
            if running.returncode not in (0, 1, -number, 128 + number):
                faults.fail(f"{number.name}, {form}: status {running.returncode}")
        put_old(path)
        done = faults.run(path, preexec_fn=lambda: limit_file(faults.reference(form)[0] // 2))
        faults.check(f"SIGXFSZ, {form}", form, path, done)
        broken_pipe(faults, folder, form)


def limit_file(size):
    import resource
    resource.setrlimit(resource.RLIMIT_FSIZE, (size, size))


def broken_pipe(faults, folder, form):
    path = os.path.join(folder, "teava." + form)
    os.mkfifo(path)
    running = subprocess.Popen(faults.command(path), stderr=subprocess.PIPE)
    with open(path, "rb") as reader:
        reader.read(100)
    _, said = running.communicate(timeout=60)
    faults.checks += 1
    if running.returncode not in (0, 1) or (running.returncode == 1 and path not in said.decode()):
        faults.fail(f"SIGPIPE, {form}: status {running.returncode}, {said[-200:]!r}")
    os.unlink(path)


def devices(faults):
    folder = os.path.join(faults.folder, "devices")
    os.makedirs(folder, exist_ok=True)
    for form in FORMATS:
        for minor, wanted in ((3, 0), (7, 1)):  # a null and a full device of our own
            path = os.path.join(folder, "aparat." + form)
            os.mknod(path, 0o020600, os.makedev(1, minor))
            done = faults.run(path)
            faults.checks += 1
            if done.returncode != wanted or not os.path.exists(path) or os.path.isfile(path):
                faults.fail(f"device 1:{minor}, {form}: status {done.returncode}, {done.stderr[-200:]!r}")
            os.unlink(path)
        path = os.path.join(folder, "teava." + form)
        os.mkfifo(path)
        running = subprocess.Popen(faults.command(path), stderr=subprocess.PIPE)
        copy = os.path.join(faults.folder, "copie." + form)
        with open(path, "rb") as reader, open(copy, "wb") as file:
            file.write(reader.read())
        running.communicate(timeout=60)
        faults.checks += 1
        if running.returncode != 0 or content(copy) != faults.reference(form)[1]:
            faults.fail(f"pipe, {form}: status {running.returncode}, or the bytes are not whole")
        os.unlink(path)


def sample(faults):
    folder = os.path.join(faults.folder, "sample")
    os.makedirs(folder, exist_ok=True)
    precious = os.path.join(folder, "pretios")
    put_old(precious)
    for name in ("baza.db", "baza.sql"):
        path = os.path.join(folder, name)
        running = subprocess.Popen([faults.program, "sample-db", path] + (["--sql"] if name.endswith("sql") else []),
                                   preexec_fn=lambda: os.symlink(precious, f"{path}.part{os.getpid()}"))
        running.communicate(timeout=60)
        faults.checks += 1
        with open(precious, "rb") as file:
            if running.returncode != 0 or file.read() != OLD:
                faults.fail(f"{name}: a link of a guessable name was followed")
    disk = os.path.join(faults.folder, "disk")
    os.makedirs(disk, exist_ok=True)
    for name in ("baza.db", "baza.sql"):
        subprocess.run(["mount", "-t", "tmpfs", "-o", "size=200k", "tmpfs", disk], check=True)
        path = os.path.join(disk, name)
        put_old(path)
        done = subprocess.run([faults.program, "sample-db", path] + (["--sql"] if name.endswith("sql") else []),
                              stderr=subprocess.PIPE, timeout=60)
        faults.checks += 1
        with open(path, "rb") as file:
            if done.returncode != 1 or file.read() != OLD or os.listdir(disk) != [name]:
                faults.fail(f"{name} on a full disk: status {done.returncode}, {os.listdir(disk)}")
        subprocess.run(["umount", disk], check=True)


GROUPS = {"full_disk": full_disk, "full_temporary_folder": full_temporary_folder, "failing_calls": failing_calls, "threads": threads, "signals": signals,
          "devices": devices, "sample": sample}
NEED_MOUNTS = ("full_disk", "full_temporary_folder", "devices", "sample")


def may_mount():
    """Whether this machine lets us have disks and device nodes of our own."""
    if os.geteuid() != 0:
        return False
    tried = "d=$(mktemp -d) && mount -t tmpfs tmpfs $d && mknod $d/null c 1 3 && echo > $d/null && umount $d && rmdir $d"
    return subprocess.run(["unshare", "--mount", "sh", "-c", tried], stderr=subprocess.DEVNULL).returncode == 0


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    if "VELCORAN_FAULTS_MOUNT" not in os.environ:
        os.environ["VELCORAN_FAULTS_MOUNT"] = "yes" if may_mount() else "no"
        if os.environ["VELCORAN_FAULTS_MOUNT"] == "yes":
            os.execvp("unshare", ["unshare", "--mount", sys.executable, os.path.abspath(__file__)] + sys.argv[1:])
    program = os.path.abspath(sys.argv[1])
    with tempfile.TemporaryDirectory() as folder:
        faults = Faults(program, folder)
        for name, group in GROUPS.items():
            if sys.argv[2:] and name not in sys.argv[2:]:
                continue
            if name in NEED_MOUNTS and os.environ["VELCORAN_FAULTS_MOUNT"] != "yes":
                print(name, "is left out: it needs disks and device nodes of its own")
                continue
            start = time.monotonic()
            print(name, flush=True)
            group(faults)
            print(f"  {time.monotonic() - start:.0f} s", flush=True)
        print(f"{faults.checks} checks, {len(faults.failures)} failures")
        return 1 if faults.failures else 0


if __name__ == "__main__":
    sys.exit(main())
