#!/usr/bin/env python3
"""Holds the interface definition files against the public headers: identifiers, names, values and signatures.

    interface_definition.py ROOT
"""
import re
import sys
from pathlib import Path

ROOT = Path(sys.argv[1])
# A header's types as the definition language has them.
TYPES = {
    "com::Bstr": "BSTR", "com::Date": "DATE", "com::HResult": "HRESULT", "double": "double",
    "std::int32_t": "long", "std::uint32_t": "unsigned long", "std::uint8_t": "byte", "char16_t": "wchar_t",
}


def text_of(*paths):
    text = "\n".join((ROOT / path).read_text(encoding="utf-8") for path in paths)
    return re.sub(r"//[^\n]*", "", text)


def parameter(text, types):
    """("long", "scale") for "std::int32_t scale"; the marks of direction and constancy are left out."""
    text = re.sub(r"\[[^\]]*\]|\bconst\b|\bstatic\b", "", text).strip()
    kind, name = re.fullmatch(r"(.*?)\s*(\w+)", text, re.S).groups()
    stars = kind.count("*")
    kind = kind.replace("*", "").strip()
    return types.get(kind, kind) + "*" * stars, name


def parameters(text, types):
    return [parameter(each, types) for each in text.split(",")] if text.strip() else []


def guid(text):
    digits = re.findall(r"[0-9A-Fa-f]+", text.replace("0x", ""))
    return "".join(each.upper().zfill(width) for each, width in zip(digits, (8, 4, 4) + (2,) * 8))


def interfaces_of_header(text):
    found = {}
    for name, base, body in re.findall(r"struct (\w+) : ([\w:]+) \{(.*?)\n\};", text, re.S):
        methods = [(member, TYPES.get(kind, kind), parameters(arguments, TYPES)) for kind, member, arguments in
                   re.findall(r"virtual ([\w:]+) (\w+)\((.*?)\) = 0;", body, re.S)]
        found[name] = (guid(re.search(r"kId\{(.*?)\};", body, re.S)[1]), base.split("::")[-1], methods)
    return found


def interfaces_of_definition(text):
    found = {}
    for marks, name, base, body in re.findall(r"\[([^\]]*)\]\s*interface (\w+) : (\w+)\s*\{(.*?)\n    \}", text, re.S):
        body = re.sub(r"\[id\(\d+\)\]", "", body)
        methods = [(member, kind, parameters(arguments, {})) for kind, member, arguments in
                   re.findall(r"(\w+) (\w+)\((.*?)\);", body, re.S)]
        found[name] = (re.search(r"uuid\(([^)]*)\)", marks)[1].replace("-", "").upper(), base, methods)
    return found


def structs(text, types):
    bodies = re.findall(r"struct (\w+) \{(.*?)\}", text, re.S)
    return {name: [parameter(field, types) for field in body.split(";") if field.strip()] for name, body in bodies}


def values(text):
    body = re.search(r"enum (?:class )?ColumnType[^{]*\{(.*?)\}", text, re.S)[1]
    return re.findall(r"(\w+)\s*=\s*(\d+)", body)


def constant(text, name):
    return guid(re.search(name + r"\{(.*?)\};", text, re.S)[1])


def main():
    headers = text_of("include/velcoran/connection.h", "include/velcoran/velcoran.h",
                      "include/velcoran/window.h")
    definitions = text_of("component/connection.idl", "component/velcoran.idl", "component/window.idl")
    marks = re.findall(r"uuid\(([^)]*)\)[^\]]*\]\s*(library|coclass|interface) (\w+)", definitions)
    identifiers = {name: identifier.replace("-", "").upper() for identifier, _, name in marks}
    wrong = []

    def expect(what, is_value, should_be):
        if is_value != should_be:
            wrong.append(f"{what}: defined as {is_value}, the header says {should_be}")

    expect("class", identifiers["clsVelcoran"], constant(headers, "kClassVelcoran"))
    expect("type library", identifiers["Velcoran"], constant(headers, "kTypeLibraryVelcoran"))
    of_header, of_definition = interfaces_of_header(headers), interfaces_of_definition(definitions)
    expect("interfaces", sorted(of_definition), sorted(of_header))
    for name, (identifier, base, methods) in of_header.items():
        expect(name, of_definition.get(name), (identifier, base, methods))
    expect("structures", structs(definitions, {}), {
        name: fields for name, fields in structs(headers, TYPES).items() if name not in of_header})
    expect("column types", values(definitions), values(headers))
    expect("versions", re.findall(r"version\(([^)]*)\)", definitions), ["1.0"] * 3)
    libraries = re.search(r"library Velcoran\s*\{(.*)\}", text_of("component/velcoran.idl"), re.S)[1]
    expect("libraries referred to", re.findall(r'importlib\("(.*?)"\)', libraries), ["stdole2.tlb", "connection.tlb"])
    expect("types of the class's library", re.findall(r"(?:interface|coclass|struct|enum) (\w+)\s*[:{]", libraries),
           ["_clsVelcoran", "clsVelcoran"])
    expect("identifiers in use once", len(set(identifiers.values())), len(identifiers))
    member = re.search(r'kIncarcaMember = (\d+)', text_of("component/class_velcoran.cpp"))[1]
    expect("member number", re.findall(r"\[id\((\d+)\)\]", definitions), [member])
    print("\n".join(wrong) or f"{len(of_header)} interfaces, {len(identifiers)} identifiers agree")
    return 1 if wrong else 0


sys.exit(main())
