#!/usr/bin/env python3
"""Exports and samples while disks are full, calls fail, threads do not start and signals come: what stands afterwards?

    faults.py PROGRAM [BEGINNING OF A CASE'S NAME ...]

The program is run as it is, with a shim before the system's calls. It works in a mount namespace of its own, on small
file systems and device nodes of its own making, never on the machine's. Not as root it takes a user namespace, where
there are no device nodes; without that no mounts either. What is left out is said.
"""
import collections
import concurrent.futures
import os
import shutil
import subprocess
import sys
import tempfile
import time

import calls
import disks
import endings
import targets
from workshop import Failure, Workshop

GROUPS = (disks, calls, endings, targets)
INSIDE = "FAULTS_INSIDE"


def enter_namespace():
    """Starts anew in a mount namespace, where one is to be had."""
    if INSIDE in os.environ:
        return os.environ[INSIDE] == "yes"
    way = ["unshare", "--mount"] + ([] if os.geteuid() == 0 else ["--map-root-user"])
    probe = ["sh", "-c", "mount -t tmpfs tmpfs /mnt"]
    can_mount = subprocess.run(way + probe, stderr=subprocess.DEVNULL, check=False).returncode == 0
    os.environ[INSIDE] = "yes" if can_mount else "no"
    os.execvp("env", (["env"] + way if can_mount else ["env"]) + [sys.executable, "-B", os.path.abspath(__file__),
                                                               *sys.argv[1:]])


def can_make_devices(folder):
    """A null device of our own can be made and opened."""
    path = os.path.join(folder, "nod")
    try:
        os.mknod(path, 0o020600, os.makedev(1, 3))
        with open(path, "wb"):
            return True
    except OSError:
        return False
    finally:
        if os.path.lexists(path):
            os.unlink(path)


class Runner:
    def __init__(self, wanted):
        self.wanted = wanted
        self.tallies = collections.defaultdict(collections.Counter)
        self.failed = 0

    def is_wanted(self, name):
        return not self.wanted or any(name.startswith(beginning) for beginning in self.wanted)

    def run(self, group, shop):
        """The cases of a group, on as many processors as there are."""
        with concurrent.futures.ThreadPoolExecutor(len(os.sched_getaffinity(0))) as pool:
            chosen = [(name, pool.submit(self.outcome, name, case)) for name, case in group.cases(shop)
                      if self.is_wanted(name)]
            for name, done in chosen:
                word, why = done.result()
                self.tallies[name.rsplit("/", 1)[0]][word] += 1
                if why:
                    self.tell(name, why)

    @staticmethod
    def outcome(name, case):
        try:
            return case(name), None
        except Failure as failure:
            return "FAILED", str(failure)
        except (OSError, subprocess.SubprocessError, ValueError, AttributeError) as error:
            return "FAILED", f"the case itself: {error!r}"

    def tell(self, name, why):
        self.failed += 1
        print(f"  FAILED {name}: {why}\n    again: {sys.argv[0]} PROGRAM {name}", flush=True)

    def summarize(self, names):
        for name in names:
            print(f"  {name}: " + ", ".join(f"{count} {word}" for word, count in sorted(self.tallies[name].items())))


def work(shop, wanted):
    runner = Runner(wanted)
    shop.can_make_devices = can_make_devices(shop.folder)
    if not shop.can_mount:
        print("left out: full disks and read-only folders (no mount namespace to be had)")
    if not shop.can_make_devices:
        print("left out: devices (no nodes can be made here)")
    for group in GROUPS:
        start = time.monotonic()
        known = set(runner.tallies)
        print(group.__doc__, flush=True)
        runner.run(group, shop)
        runner.summarize([name for name in runner.tallies if name not in known])
        print(f"  {time.monotonic() - start:.0f} s", flush=True)
    if not wanted:
        for why in disks.check_tally(runner.tallies):
            runner.tell("disk", why)
    total = sum(sum(tally.values()) for tally in runner.tallies.values())
    print(f"{total} cases, {runner.failed} failed")
    return 0 if total and not runner.failed else 1


def main(program, wanted):
    can_mount = enter_namespace()
    folder = tempfile.mkdtemp(dir="/var/tmp")
    try:
        if not can_mount:
            return work(Workshop(program, folder, can_mount, wanted), wanted)
        subprocess.run(["mount", "-t", "tmpfs", "-o", "size=1g", "tmpfs", folder], check=True)
        try:
            return work(Workshop(program, folder, can_mount, wanted), wanted)
        finally:
            subprocess.run(["umount", "--lazy", folder], check=True)
    finally:
        if not can_mount:
            shutil.rmtree(folder)
        else:
            os.rmdir(folder)  # what was in it went with the mount


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    sys.exit(main(os.path.abspath(sys.argv[1]), sys.argv[2:]))
