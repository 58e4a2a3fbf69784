#!/usr/bin/env python3
"""A host in Python: no header, no compiler, the function tables alone.

    python_host.py LIBRARY ROUNDS
"""
import ctypes
import itertools
import sys
import time
import uuid

CLASS = uuid.UUID("7B2C9D40-61E5-4F3A-8C52-0D9A6E1733F4")
FACTORY = uuid.UUID("00000001-0000-0000-C000-000000000046")
VELCORAN = uuid.UUID("7B2C9D42-61E5-4F3A-8C52-0D9A6E1733F4")
WINDOW = uuid.UUID("5E1D3B89-2A64-4C0B-9E11-3C7742D0A801")
UNKNOWN = uuid.UUID("00000000-0000-0000-C000-000000000046")
CONNECTION = uuid.UUID("5E1D3B74-2A64-4C0B-9E11-3C7742D0A801")
ROWS = uuid.UUID("5E1D3B72-2A64-4C0B-9E11-3C7742D0A801")
OK, FALSE, NO_INTERFACE = 0, 1, ctypes.c_int32(0x80004002).value
TEXT = 5
POINTER = ctypes.c_void_p
METHOD = ctypes.CFUNCTYPE


def guid(identifier):
    return ctypes.create_string_buffer(identifier.bytes_le, 16)


def method(pointer, index, result, *types):
    """A function of an interface by its place in the table."""
    table = ctypes.cast(ctypes.cast(pointer, ctypes.POINTER(POINTER))[0], ctypes.POINTER(POINTER))
    function = ctypes.CFUNCTYPE(result, POINTER, *types)(table[index])
    return lambda *arguments: function(pointer, *arguments)


def bstr(text):
    data = text.encode("utf-16-le")
    buffer = ctypes.create_string_buffer(len(data).to_bytes(4, "little") + data + b"\0\0", len(data) + 6)
    return buffer, ctypes.addressof(buffer) + 4


def text_of(address):
    length = ctypes.cast(address - 4, ctypes.POINTER(ctypes.c_uint32))[0]
    return ctypes.string_at(address, length).decode("utf-16-le")


class Block(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int32), ("scale", ctypes.c_int32), ("nulls", POINTER), ("values", POINTER),
                ("offsets", POINTER)]


class RowBlock(ctypes.Structure):
    _fields_ = [("rows", ctypes.c_uint32), ("columns", ctypes.c_uint32), ("blocks", POINTER)]


class Description(ctypes.Structure):
    _fields_ = [("name", POINTER), ("length", ctypes.c_uint32), ("type", ctypes.c_int32), ("scale", ctypes.c_int32)]


class Object:
    """An object of ours: a table of functions behind one pointer. It lives until its last count goes."""
    living = {}
    numbers = itertools.count()

    def __init__(self, identifiers, functions):
        self.count = 1
        self.identifiers = {identifier.bytes_le for identifier in (UNKNOWN, *identifiers)}
        first = [METHOD(ctypes.c_int32, POINTER, POINTER, ctypes.POINTER(POINTER))(self.query),
                 METHOD(ctypes.c_uint32, POINTER)(self.add), METHOD(ctypes.c_uint32, POINTER)(self.release)]
        self.functions = first + functions
        self.table = (POINTER * len(self.functions))(*(ctypes.cast(each, POINTER).value for each in self.functions))
        self.head = POINTER(ctypes.addressof(self.table))
        self.address = ctypes.addressof(self.head)
        self.number = next(self.numbers)
        self.living[self.number] = self

    def query(self, _, identifier, result):
        known = ctypes.string_at(identifier, 16) in self.identifiers
        result[0] = self.address if known else None
        self.count += known
        return OK if known else NO_INTERFACE

    def add(self, _):
        self.count += 1
        return self.count

    def release(self, _):
        self.count -= 1
        if self.count == 0:
            self.living.pop(self.number)
        return self.count


class Rows(Object):
    """One column of texts in a single block."""

    def __init__(self, name, texts):
        rows_of = METHOD(ctypes.c_int32, POINTER, ctypes.POINTER(POINTER), ctypes.POINTER(ctypes.c_uint32))
        fetch = METHOD(ctypes.c_int32, POINTER, ctypes.c_uint32, ctypes.POINTER(POINTER))
        super().__init__([ROWS], [rows_of(self.columns), fetch(self.fetch), METHOD(ctypes.c_int32, POINTER)(lambda _: OK)])
        self.name = ctypes.create_string_buffer(name.encode("utf-16-le") + b"\0\0")
        self.characters = ctypes.create_string_buffer("".join(texts).encode("utf-16-le") + b"\0\0")
        ends = list(itertools.accumulate((len(text) for text in texts), initial=0))
        self.offsets = (ctypes.c_uint32 * len(ends))(*ends)
        self.description = Description(ctypes.addressof(self.name), len(name), TEXT, 0)
        self.block = Block(TEXT, 0, None, ctypes.addressof(self.characters), ctypes.addressof(self.offsets))
        self.whole = RowBlock(len(texts), 1, ctypes.addressof(self.block))
        self.end = RowBlock(0, 0, None)
        self.is_read = False

    def columns(self, _, columns, count):
        columns[0] = ctypes.addressof(self.description)
        count[0] = 1
        return OK

    def fetch(self, _, __, block):
        is_end, self.is_read = self.is_read, True
        block[0] = ctypes.addressof(self.end if is_end else self.whole)
        return FALSE if is_end else OK


class Connection(Object):
    def __init__(self):
        result = ctypes.POINTER(POINTER)
        number = ctypes.c_int32
        super().__init__([CONNECTION], [
            METHOD(number, POINTER)(lambda _: 1),
            METHOD(number, POINTER, POINTER, result)(self.execute),
            METHOD(number, POINTER, POINTER, number, number, number, result)(
                lambda this, text, _, __, ___, rows: self.execute(this, text, rows)),
            METHOD(number, POINTER, POINTER, result)(lambda *_: -2147217900),
            METHOD(number, POINTER)(lambda _: OK)])

    @staticmethod
    def execute(_, text, rows):
        is_year = "FROM An" in text_of(text)
        rows[0] = (Rows("An", ["2026"]) if is_year else Rows("", ["1 - Central", "2 - Vamal"])).address
        return OK


def work(path):
    library = ctypes.CDLL(path)
    factory, velcoran, window = POINTER(), POINTER(), POINTER()
    assert library.DllGetClassObject(guid(CLASS), guid(FACTORY), ctypes.byref(factory)) == OK
    assert library.DllGetClassObject(guid(CLASS), guid(WINDOW), ctypes.byref(window)) == OK
    create = method(factory, 3, ctypes.c_int32, POINTER, POINTER, POINTER)
    assert create(None, guid(VELCORAN), ctypes.byref(velcoran)) == OK
    connection = Connection()
    kind, prefix = bstr("Import"), bstr("")
    incarca = method(velcoran, 7, ctypes.c_int32, POINTER, POINTER, ctypes.c_double, POINTER)
    result = incarca(kind[1], connection.address, 46096.0, prefix[1])
    assert result == OK, hex(result & 0xFFFFFFFF)
    dispatch = method(window, 5, ctypes.c_int32, ctypes.c_uint32)
    end = time.monotonic() + 0.1
    while time.monotonic() < end:
        assert dispatch(10) == OK
    assert method(window, 4, ctypes.c_int32)() == OK
    while dispatch(0) == OK:
        pass
    for pointer in (velcoran, window, factory):
        method(pointer, 2, ctypes.c_uint32)()
    assert library.DllCanUnloadNow() == OK
    assert connection.count == 1 and len(Object.living) == 1, (connection.count, len(Object.living))
    connection.release(None)
    ctypes.CDLL(None).dlclose(POINTER(library._handle))


def main(path, rounds):
    for _ in range(rounds):
        work(path)
    print(f"{rounds} rounds")


if __name__ == "__main__":
    main(sys.argv[1], int(sys.argv[2]))
