"""What all groups of cases share: the program under test, undisturbed exports to compare with, and the judgement."""
import os
import re
import shutil
import signal
import subprocess
import zipfile

HERE = os.path.dirname(os.path.abspath(__file__))
FORMATS = ("pdf", "xlsx", "csv", "html", "odt", "txt")
OLD = b"the good old file\n"
LIBRARY_LINE = re.compile(r"\[ERROR\](\[\./src/packager\.c:\d+\]: | workbook_close\(\): )")
PATIENCE = 20  # seconds; an export takes a tenth of one


class Failure(Exception):
    """A case that ended as it must not."""


class Ended:
    """How a program ended."""

    def __init__(self, status, said):
        self.status = status
        self.said = said.decode(errors="surrogateescape")

    def __str__(self):
        return f"status {self.status}, said {self.said[-200:]!r}"


class Workshop:
    """A folder with the program, its database and the shim that lets calls fail."""

    def __init__(self, program, folder, can_mount, wanted=()):
        self.folder = folder
        self.can_mount = can_mount
        self.wanted = wanted  # beginnings of the names of cases; none for all
        self.program = self.bring(program)
        self.database = os.path.join(folder, "sample.db")
        self.shim = os.path.join(folder, "failing_calls.so")
        runtime = self.place("runtime")
        os.chmod(runtime, 0o700)
        self.environment = dict(os.environ, LC_ALL="C.UTF-8", TZ="UTC", QT_QPA_PLATFORM="offscreen",
                                XDG_RUNTIME_DIR=runtime)
        compiler = os.environ.get("CC", "cc")
        subprocess.run([compiler, "-shared", "-fPIC", "-O1", "-Wall", "-Werror", "-o", self.shim,
                        os.path.join(HERE, "failing_calls.c"), "-ldl", "-lpthread"], check=True)
        self.require(["sample-db", self.database])
        self.references = {form: self.reference(form) for form in FORMATS}

    def bring(self, program):
        """A copy, which is seen also where something is mounted over the folder that the program lies in."""
        seen = self.place("program")
        for name in (os.path.basename(program), "libvelcoran.so"):
            shutil.copy2(os.path.join(os.path.dirname(program), name), seen)
        return os.path.join(seen, os.path.basename(program))

    def wants(self, group):
        """Some cases of a group are wanted."""
        return not self.wanted or any(each.startswith(group) or group.startswith(each) for each in self.wanted)

    def place(self, *names):
        path = os.path.join(self.folder, *names)
        os.makedirs(path, exist_ok=True)
        return path

    def reference(self, form):
        """Size and content of an export that nothing disturbs."""
        path = os.path.join(self.place("references"), "raport." + form)
        sizes = []
        for _ in range(2):
            self.require(self.export(path))
            found = (os.path.getsize(path), content(path))
            if not found[1] or found[1] != (sizes or [found])[0][1]:
                raise Failure(f"two undisturbed {form} exports differ, or cannot be read back")
            sizes.append(found)
        return sizes[0]

    def require(self, arguments):
        ended = self.run(arguments)
        if ended.status != 0:
            raise Failure(f"undisturbed, {arguments}: {ended}")

    @staticmethod
    def options(source, path):
        return ["export", "--db", source, "--kind", "Import", "--from", "2026-01-01", "--to", "2026-12-31", "--out",
                path]

    def export(self, path):
        return self.options(self.database, path)

    def faults(self, folders, call, at, how, **more):
        """Environment of the shim; see failing_calls.c."""
        return dict({"LD_PRELOAD": self.shim, "FAULT_FOLDERS": ":".join(folders), "FAULT_CALL": call,
                     "FAULT_AT": str(at), "FAULT_HOW": str(how)}, **more)

    def start(self, arguments, environment=None, before=(), **more):
        return subprocess.Popen([*before, self.program, *arguments], env=dict(self.environment, **(environment or {})),
                                stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, **more)

    def run(self, arguments, environment=None, before=()):
        return finish(self.start(arguments, environment, before, stdin=subprocess.DEVNULL))

    def drive(self, lines, environment):
        """A session of commands. @return how it ended, and its answers"""
        running = subprocess.Popen([self.program, "drive", "--db", self.database], stdin=subprocess.PIPE,
                                   env=dict(self.environment, **environment), stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE)
        try:
            told, said = running.communicate(lines, timeout=PATIENCE)
        except subprocess.TimeoutExpired:
            running.kill()
            running.communicate()
            raise Failure(f"has not ended after {PATIENCE} s") from None
        return Ended(running.returncode, said), told

    def case(self, name, form=None):
        """A folder with nothing in it but the old file, and that file's path."""
        folder = self.place("cases", name.replace("/", "-"))
        shutil.rmtree(folder)
        os.mkdir(folder)
        path = os.path.join(folder, "raport." + form) if form else None
        if path:
            put_old(path)
        return folder, path

    def judge(self, ended, path, may_end=(0, 1), temporary=()):
        """Either done and whole, or refused in one line that names the file, and the old one stands.
        @return what became of it: "whole" or "refused" """
        require_nothing_beside(path, temporary)
        if ended.status not in may_end:
            raise Failure(str(ended))
        if ended.status == 0:
            if ended.said:
                raise Failure(f"done, and yet {ended}")
            self.require_whole(path)
            return "whole"
        require_line(ended, path)
        require_old(path)
        return "refused"

    def require_whole(self, path, form=None):
        form = form or os.fsdecode(path).rsplit(".", 1)[-1]
        if content(path, form) != self.references[form][1]:
            raise Failure(f"what stands is not whole: {os.path.getsize(path)} of {self.references[form][0]} bytes")


def finish(running, patience=PATIENCE):
    try:
        _, said = running.communicate(timeout=patience)
    except subprocess.TimeoutExpired:
        running.kill()
        running.communicate()
        raise Failure(f"has not ended after {patience} s") from None
    return Ended(running.returncode, said)


def put_old(path):
    with open(path, "wb") as file:
        file.write(OLD)


def is_old(path):
    if os.path.getsize(path) != len(OLD):
        return False
    with open(path, "rb") as file:
        return file.read() == OLD


def require_old(path):
    if not is_old(path):
        raise Failure(f"the old file is not what it was: {os.path.getsize(path)} bytes")


def require_nothing_beside(path, temporary=()):
    left = [name for name in os.listdir(os.path.dirname(path)) if name != os.path.basename(path)]
    left += [name for folder in temporary for name in os.listdir(folder)]
    if left:
        raise Failure(f"stays behind: {left}")


def lines_of(ended):
    """What the program said, without what its spreadsheet library prints by itself, past every setting."""
    return [line for line in ended.said.splitlines() if not LIBRARY_LINE.match(line)]


def require_line(ended, path):
    """One line, from the program and about the file."""
    lines = lines_of(ended)
    name = os.path.basename(os.fsdecode(path))
    if len(lines) != 1 or not lines[0].startswith("velcoran-host: ") or name not in lines[0]:
        raise Failure(f"one line that names the file is wanted: {ended}")


def content(path, form=None):
    """What a reader finds in an export, without the moment of writing; nothing where it is broken."""
    form = form or os.fsdecode(path).rsplit(".", 1)[-1]
    try:
        if form in ("xlsx", "odt"):
            with zipfile.ZipFile(os.fsdecode(path)) as archive:
                return [(name, timeless(archive.read(name))) for name in sorted(archive.namelist())]
        if form == "pdf":
            subprocess.run(["qpdf", "--check", path], check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            return timeless(subprocess.check_output(["pdftotext", "-layout", path, "-"], stderr=subprocess.DEVNULL))
        with open(path, "rb") as file:
            return timeless(file.read())
    except (OSError, zipfile.BadZipFile, zipfile.LargeZipFile, EOFError, ValueError, subprocess.CalledProcessError):
        return None
    except Exception as error:  # zlib.error has no better base
        if type(error).__name__ == "error":
            return None
        raise


def timeless(data):
    return re.sub(rb"\d\d[/.]\d\d[/.]\d{4},? \d\d:\d\d(:\d\d)?|\d{4}-\d\d-\d\dT[\d:.]+Z?", b"", data)


def died_by(number):
    """The statuses of a program that a signal ended: by it, or after cleaning up."""
    return (-number, 128 + number)


ENDING = (signal.SIGTERM, signal.SIGINT, signal.SIGHUP)
