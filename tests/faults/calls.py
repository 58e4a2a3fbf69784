"""One call of an export goes wrong; a thread does not start."""
import errno
import json
import os
import tempfile

from workshop import FORMATS, Failure, is_old, put_old, require_line, require_nothing_beside

# call -> how it goes wrong, one after the other
CALLS = {
    "write": (errno.EIO, errno.ENOSPC, "short", errno.EINTR),
    "pwrite": (errno.EIO, errno.ENOSPC),
    "writev": (errno.EIO, errno.ENOSPC, "short"),
    "fflush": (errno.EIO, errno.ENOSPC),
    "fclose": (errno.EIO, errno.ENOSPC),
    "fsync": (errno.EIO, errno.ENOSPC),
    "fdatasync": (errno.EIO,),
    "close": (errno.EIO, errno.ENOSPC),
    "rename": (errno.EIO, errno.EACCES),
    "link": (errno.EIO, errno.ENOSPC),
    "unlink": (errno.EIO,),
    "fchmod": (errno.EIO,),
}
MOST = 20  # places tried of one way in one format
THREADS = 14


def sampled(total):
    """The numbers of the calls that are tried: all, or so many evenly from the first to the last."""
    count = min(total, MOST)
    return sorted({1 + (total - 1) * number // max(1, count - 1) for number in range(count)})


def count(shop, arguments, folder, call):
    told = os.path.join(shop.folder, "count")
    ended = shop.run(arguments, shop.faults((folder, tempfile.gettempdir()), call, 0, 0, FAULT_COUNT=told))
    if ended.status != 0:
        raise Failure(f"with no call failing: {ended}")
    with open(told, encoding="ascii") as file:
        return int(file.read())


def export_with(shop, name, form, call, at, how):
    folder, path = shop.case(name, form)
    ended = shop.run(shop.export(path), shop.faults((folder, tempfile.gettempdir()), call, at, how))
    return shop.judge(ended, path)


def sample_with(shop, name, ending, call, at, how):
    folder, _ = shop.case(name)
    path = os.path.join(folder, "baza" + ending)
    put_old(path)
    arguments = ["sample-db", path, "--documents", "300"] + (["--sql"] if ending == ".sql" else [])
    ended = shop.run(arguments, shop.faults((folder,), call, at, how))
    require_nothing_beside(path)
    if ended.status == 0:
        with open(path, "rb") as made, open(os.path.join(shop.folder, "made" + ending), "rb") as wanted:
            if made.read() != wanted.read():
                raise Failure("what stands is not whole")
        return "whole"
    if ended.status != 1 or not is_old(path):
        raise Failure(f"{ended}, {os.path.getsize(path)} bytes stand")
    require_line(ended, path)
    return "refused"


def thread_missing(shop, name, form, at):
    """From a thread on none starts any more."""
    _, path = shop.case(name, form)
    ended = shop.run(shop.export(path), shop.faults((), "thread", at, errno.EAGAIN))
    require_nothing_beside(path)
    if ended.status == 0:
        shop.require_whole(path)
        return "whole"
    lines = [line for line in ended.said.splitlines() if line.startswith("velcoran-host: ")]
    if ended.status != 1 or len(lines) != 1 or "fir de execuție" not in lines[0] or not is_old(path):
        raise Failure(str(ended))
    return "refused"


SEARCH = ({"do": "incarca", "kind": "Import", "date": "2026-03-15"}, {"do": "click", "control": "Raport"},
          {"do": "wait", "seconds": 10}, {"do": "report"}, {"do": "viewer", "action": "search", "text": "SRL"},
          {"do": "viewer", "action": "search", "text": "SRL"})


def search_without_thread(shop, at):
    """One thread of a window's session does not start: a search in a report that shows finds, now and again."""
    lines = "".join(json.dumps(command) + "\n" for command in SEARCH).encode()
    ended, told = shop.drive(lines, shop.faults((), "one-thread", at, errno.EAGAIN))
    answers = [json.loads(line) for line in told.splitlines()]
    if ended.status == 1 and not answers and "fir de execuție" in ended.said:
        return "refused"
    if ended.status != 0 or len(answers) != len(SEARCH) or not all(answer["ok"] for answer in answers):
        raise Failure(f"{ended}, answered {len(answers)} of {len(SEARCH)}")
    if answers[3]["report"] is None:
        return "refused"
    if not all(answer["found"] for answer in answers[4:]):
        raise Failure("nothing found")
    return "whole"


def places(shop, arguments, folder, group):
    """Every call with each way of going wrong, and how many of how many are tried."""
    tried = []
    for call, ways in CALLS.items():
        total = count(shop, arguments, folder, call)
        numbers = sampled(total) if total else []
        if total:
            tried.append(f"{call} {len(numbers)}/{total}")
        for how in ways:
            for at in numbers:
                yield call, at, how
    print(f"  {group}: tried of the calls made: {', '.join(tried)}", flush=True)


def cases(shop):
    for form in FORMATS:
        if not shop.wants(f"calls/{form}"):
            continue
        folder, path = shop.case("count", form)
        for call, at, how in places(shop, shop.export(path), folder, f"calls/{form}"):
            yield (f"calls/{form}/{call}-{at}-{how}",
                   lambda name, form=form, call=call, at=at, how=how: export_with(shop, name, form, call, at, how))
    for ending in (".db", ".sql"):
        if not shop.wants(f"calls/sample{ending}"):
            continue
        folder, _ = shop.case("count")
        path = os.path.join(shop.folder, "made" + ending)
        arguments = ["sample-db", os.path.join(folder, "baza" + ending), "--documents", "300"]
        arguments += ["--sql"] if ending == ".sql" else []
        shop.require(arguments)
        os.replace(arguments[1], path)
        for call, at, how in places(shop, arguments, folder, f"calls/sample{ending}"):
            yield (f"calls/sample{ending}/{call}-{at}-{how}",
                   lambda name, ending=ending, call=call, at=at, how=how:
                   sample_with(shop, name, ending, call, at, how))
    for at in range(1, THREADS + 1):
        for form in ("pdf", "xlsx", "csv"):
            yield f"threads/{form}/{at}", lambda name, form=form, at=at: thread_missing(shop, name, form, at)
        yield f"threads/search/{at}", lambda name, at=at: search_without_thread(shop, at)
