"""Disks of many sizes under exports and samples."""
import os
import subprocess
import tempfile

from workshop import FORMATS, OLD, Failure, is_old, put_old, require_line, require_nothing_beside

PAGE = 4096
SIZES = 40
SAMPLE_PAGES = (1, 2, 4, 8, 16, 32, 64, 128, 256, 100000)


def sizes_of(whole, widest):
    """40 sizes in pages: near the end of what is needed, at multiples of 16 and 64 KB, and evenly up to the widest."""
    need = -(-whole // PAGE)
    chosen = {need + step for step in range(-5, 5)}
    for unit in (4, 16):  # pages in 16 and 64 KB
        chosen |= {unit * number for number in range(1, 7) if unit * number < need + unit}
    for number in range(1, 2000):
        if len(chosen) >= SIZES:
            break
        chosen.add(1 + widest * (number * 7 % 29) // 29 + number // 29)
    return sorted(chosen)


class Disk:
    """A file system of so many free pages."""

    def __init__(self, folder, pages):
        self.folder = folder
        self.pages = pages

    def __enter__(self):
        subprocess.run(["mount", "-t", "tmpfs", "-o", f"size={self.pages * PAGE}", "tmpfs", self.folder], check=True)
        return self.folder

    def __exit__(self, *_):
        subprocess.run(["umount", "--lazy", self.folder], check=True)


def export_on(shop, name, form, pages):
    folder, _ = shop.case(name)
    with Disk(folder, pages + 1):  # the old file takes one
        path = os.path.join(folder, "raport." + form)
        put_old(path)
        return shop.judge(shop.run(shop.export(path)), path)


def export_beside(shop, name, form, pages):
    """The disk of temporary files alone is full: what is written beside its place needs no room elsewhere."""
    _, path = shop.case(name, form)
    small = f"mount -t tmpfs -o size={pages * PAGE} tmpfs {tempfile.gettempdir()} && exec \"$@\""
    ended = shop.run(shop.export(path), before=("unshare", "--mount", "sh", "-c", small, "sh"))
    outcome = shop.judge(ended, path)
    if outcome != "whole":
        raise Failure(str(ended))
    return outcome


def sample_on(shop, name, ending, pages):
    folder, _ = shop.case(name)
    with Disk(folder, pages + 1):
        path = os.path.join(folder, "baza" + ending)
        put_old(path)
        ended = shop.run(["sample-db", path] + (["--sql"] if ending == ".sql" else []))
        require_nothing_beside(path)
        if ended.status == 0 and not is_old(path) and os.path.getsize(path) > 100 * len(OLD):
            return "whole"
        if ended.status != 1 or not is_old(path):
            raise Failure(f"{ended}, {os.path.getsize(path)} bytes stand")
        require_line(ended, path)
        return "refused"


def unpacked(shop):
    """Bytes that a workbook takes before it is packed."""
    return sum(len(data) for _, data in shop.references["xlsx"][1])


def cases(shop):
    if not shop.can_mount:
        return
    for form in FORMATS:
        size = shop.references[form][0]
        widest = (size + 3 * unpacked(shop) if form == "xlsx" else size * 2) // PAGE
        for pages in sizes_of(size, widest):
            yield f"disk/{form}/{pages}", lambda name, form=form, pages=pages: export_on(shop, name, form, pages)
        yield f"disk/temporary/{form}", lambda name, form=form: export_beside(shop, name, form, 2)
    for ending in (".db", ".sql"):
        for pages in SAMPLE_PAGES:
            yield (f"disk/sample{ending}/{pages}",
                   lambda name, ending=ending, pages=pages: sample_on(shop, name, ending, pages))


def check_tally(tallies):
    """The sizes of each format must reach both ends."""
    for name in (*FORMATS, "sample.db", "sample.sql"):
        tally = tallies.get(f"disk/{name}", {})
        if tally and not (tally.get("whole") and tally.get("refused")):
            yield f"disk/{name}: the sizes do not reach both ends: {dict(tally)}"
