"""What stands where a report is to go: devices, pipes, sockets, links, odd names."""
import os
import shutil
import socket
import stat
import subprocess

from workshop import FORMATS, Failure, is_old, put_old, require_line

NULL, FULL = os.makedev(1, 3), os.makedev(1, 7)
LONGEST = 255


class Place:
    """A target and what must be true of it afterwards."""

    def __init__(self, shop, folder, form):
        self.shop, self.folder, self.form = shop, folder, form
        self.path = os.path.join(folder, "raport." + form)

    def export(self, status, path=None):
        ended = self.shop.run(self.shop.export(path or self.path))
        if ended.status != status:
            raise Failure(f"status {status} is wanted: {ended}")
        if status == 1:
            require_line(ended, path or self.path)
        elif ended.said:
            raise Failure(f"done, and yet {ended}")
        return ended

    def require_whole(self, path):
        self.shop.require_whole(path, self.form)

    def require_entries(self, *names):
        left = sorted(os.listdir(os.fsencode(self.folder)))
        if left != sorted(map(os.fsencode, names)):
            raise Failure(f"in the folder are {left}")

    @property
    def name(self):
        return os.path.basename(self.path)


def device(number, status):
    def check(place):
        os.mknod(place.path, stat.S_IFCHR | 0o600, number)
        place.export(status)
        found = os.lstat(place.path)
        if not stat.S_ISCHR(found.st_mode) or found.st_rdev != number:
            raise Failure("the device was replaced")
        place.require_entries(place.name)
    return check


def pipe(place):
    """The reader gives up by itself, so that a program that replaces the pipe cannot hold it."""
    os.mkfifo(place.path)
    copy = os.path.join(place.shop.place("copies"), f"{place.form}.{place.form}")
    reading = subprocess.Popen(["timeout", "10", "cat", place.path], stdout=open(copy, "wb"))
    place.export(0)
    reading.wait()
    if not stat.S_ISFIFO(os.lstat(place.path).st_mode):
        raise Failure("the pipe was replaced")
    place.require_whole(copy)
    place.require_entries(place.name)


def unix_socket(place):
    with socket.socket(socket.AF_UNIX) as listening:
        folder = os.open(place.folder, os.O_PATH)  # a socket's name is short
        listening.bind(f"/proc/self/fd/{folder}/{place.name}")
        os.close(folder)
        said = place.export(1).said
        if "socket" not in said:
            raise Failure(f"the reason is not told: {said!r}")
        if not stat.S_ISSOCK(os.lstat(place.path).st_mode):
            raise Failure("the socket was replaced")
    place.require_entries(place.name)


def folder_itself(place):
    os.mkdir(place.path)
    place.export(1)
    if not os.path.isdir(place.path) or os.listdir(place.path):
        raise Failure("the folder is not what it was")
    place.require_entries(place.name)


def link(place):
    far = place.shop.place("far", place.form)
    shutil.rmtree(far)
    os.mkdir(far)
    target = os.path.join(far, "departe." + place.form)
    put_old(target)
    os.chmod(target, 0o640)
    os.symlink(target, place.path)
    place.export(0)
    if os.readlink(place.path) != target or os.listdir(far) != [os.path.basename(target)]:
        raise Failure(f"the link was not kept, or there is more beside its end: {os.listdir(far)}")
    if os.stat(target).st_mode & 0o7777 != 0o640:
        raise Failure("the file has another mode")
    place.require_whole(target)
    place.require_entries(place.name)


def dangling_link(place):
    os.symlink("gol", place.path)
    place.export(0)
    if os.readlink(place.path) != "gol":
        raise Failure("the link was not kept")
    place.require_whole(os.path.join(place.folder, "gol"))
    place.require_entries("gol", place.name)


def link_loop(place):
    os.symlink("inel", place.path)
    os.symlink(place.name, os.path.join(place.folder, "inel"))
    place.export(1)
    place.require_entries("inel", place.name)


def read_only(place):
    put_old(place.path)
    subprocess.run(["mount", "--bind", place.folder, place.folder], check=True)
    subprocess.run(["mount", "-o", "remount,bind,ro", place.folder], check=True)
    try:
        place.export(1)
    finally:
        subprocess.run(["umount", "--lazy", place.folder], check=True)
    if not is_old(place.path):
        raise Failure("the old file is not what it was")
    place.require_entries(place.name)


def no_folder(place):
    place.export(1, os.path.join(place.folder, "lipsa", place.name))
    place.require_entries()


def odd_name(place):
    """Bytes that are no text in any encoding of the program."""
    odd = os.fsencode(place.folder) + b"/\xff\xfe-\xc3(." + place.form.encode()
    for _ in ("new", "in the place of an old one"):
        place.export(0, odd)
        place.require_whole(odd)
        if os.listdir(os.fsencode(place.folder)) != [os.path.basename(odd)]:
            raise Failure(f"in the folder are {os.listdir(os.fsencode(place.folder))}")


def odd_folder(place):
    odd = os.fsencode(place.folder) + b"/\xff"
    os.mkdir(odd)
    path = odd + b"/raport." + place.form.encode()
    place.export(0, path)
    place.require_whole(path)
    if os.listdir(odd) != [os.path.basename(path)]:
        raise Failure(f"in the folder are {os.listdir(odd)}")


def long_name(place):
    ending = "." + place.form
    longest = "n" * (LONGEST - len(ending)) + ending
    place.export(0, os.path.join(place.folder, longest))
    place.require_whole(os.path.join(place.folder, longest))
    place.export(1, os.path.join(place.folder, "n" + longest))
    place.require_entries(longest)


# name, what it needs, check
TARGETS = (
    ("null-device", "devices", device(NULL, 0)),
    ("full-device", "devices", device(FULL, 1)),
    ("pipe", None, pipe),
    ("socket", None, unix_socket),
    ("folder", None, folder_itself),
    ("link", None, link),
    ("dangling-link", None, dangling_link),
    ("link-loop", None, link_loop),
    ("read-only", "mounts", read_only),
    ("no-folder", None, no_folder),
    ("odd-name", None, odd_name),
    ("odd-folder", None, odd_folder),
    ("long-name", None, long_name),
)

# Names that somebody could prepare beside a sample that is to come; "$$" is the program's own number.
GUESSES = ("{}.tmp", "{}.part", "{}.part$$", "{}.new", "{}~", ".{}.tmp", "{}.$$", "{}-journal", "{}-wal", "{}.tmp$$")


def sample(shop, name, ending):
    """Links of guessable names lead to something precious; an old sample stands in the place."""
    folder, _ = shop.case(name)
    path = os.path.join(folder, "baza" + ending)
    precious = os.path.join(shop.place("precious", ending), "pretios")
    put_old(path)
    put_old(precious)
    links = " ".join(f'ln -s "$0" "{os.path.join(folder, guess.format("baza" + ending))}";' for guess in GUESSES)
    arguments = ["sample-db", path, "--documents", "300"] + (["--sql"] if ending == ".sql" else [])
    ended = shop.run(arguments, before=("sh", "-c", links + ' exec "$@"', precious))
    if ended.status != 0 or is_old(path):
        raise Failure(str(ended))
    if not is_old(precious):
        raise Failure("a link of a guessable name was followed")
    others = [entry for entry in os.listdir(folder) if not os.path.islink(os.path.join(folder, entry))]
    if others != [os.path.basename(path)]:
        raise Failure(f"in the folder are {others}")
    return "whole"


def checked(shop, name, form, check):
    folder, _ = shop.case(name)
    check(Place(shop, folder, form))
    return "right"


def cases(shop):
    for target, need, check in TARGETS:
        if need == "mounts" and not shop.can_mount or need == "devices" and not shop.can_make_devices:
            continue
        for form in FORMATS:
            yield (f"targets/{target}/{form}",
                   lambda name, form=form, check=check: checked(shop, name, form, check))
    for ending in (".db", ".sql"):
        yield f"targets/sample/{ending[1:]}", lambda name, ending=ending: sample(shop, name, ending)
