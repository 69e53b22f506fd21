#!/usr/bin/env python3
"""The committed inputs of a fuzzer: many small inputs of any bytes in one text file, compared and merged by lines.

usage: tests/fuzz/inputs.py unpack FILE FOLDER
       tests/fuzz/inputs.py pack FOLDER FILE
       tests/fuzz/inputs.py add FILE INPUT...

FILE is made of lines, each ended by a line feed: first "fuzz inputs 1", then a line for each input, then "end" and their
number. The line of an input is its name, a space and its bytes: printable ASCII stands for itself, but for \\\\ as a
backslash; a line feed is \\n; any other byte is \\x and two digits. The name is the hash of the bytes (FNV-1a, 64 bits) in 16
digits, so that a damaged input is noticed; digits are hexadecimal, in lower case. Names are in order and differ.
"""
import pathlib
import re
import sys

FIRST = "fuzz inputs 1"
LINE = re.compile(r"([0-9a-f]{16}) ((?:[ -\[\]-~]|\\\\|\\n|\\x[0-9a-f]{2})*)")
PIECE = re.compile(r"\\x([0-9a-f]{2})|\\(.)|(.)")


class Damaged(Exception):
    """The file is not what `text_of` made."""


def name_of(content):
    value = 0xCBF29CE484222325
    for byte in content:
        value = (value ^ byte) * 0x100000001B3 & 0xFFFFFFFFFFFFFFFF
    return f"{value:016x}"


def escaped(content):
    special = {0x5C: "\\\\", 0x0A: "\\n"}
    return "".join(special.get(byte) or (chr(byte) if 0x20 <= byte < 0x7F else f"\\x{byte:02x}") for byte in content)


def unescaped(text):
    return bytes(int(number, 16) if number else 0x0A if special == "n" else ord(special or plain)
                 for number, special, plain in PIECE.findall(text))


def text_of(contents):
    lines = sorted({name_of(content): escaped(content) for content in contents}.items())
    return "".join([f"{FIRST}\n", *(f"{name} {text}\n" for name, text in lines), f"end {len(lines)}\n"])


def read(text):
    """The inputs in order, by their names. Raises Damaged with the line."""
    lines = text.split("\n")
    if lines[0] != FIRST or lines[-1] != "":
        raise Damaged(f"it does not begin with '{FIRST}', or its last line is not ended")
    inputs = {}
    for number, line in enumerate(lines[1:-2], 2):
        match = LINE.fullmatch(line)
        content = unescaped(match[2]) if match else b""
        if not match or match[1] != name_of(content) or (inputs and match[1] <= max(inputs)):
            raise Damaged(f"line {number} is damaged")
        inputs[match[1]] = content
    if lines[-2] != f"end {len(inputs)}":
        raise Damaged(f"its last line is not 'end {len(inputs)}'")
    return inputs


def read_file(path):
    try:
        return read(pathlib.Path(path).read_bytes().decode("ascii"))
    except (Damaged, UnicodeDecodeError) as problem:
        raise Damaged(f"{path}: {problem}") from None


def unpack(file, folder):
    inputs = read_file(file)
    target = pathlib.Path(folder)
    target.mkdir(parents=True, exist_ok=True)
    for name, content in inputs.items():
        (target / name).write_bytes(content)


def pack(folder, file):
    contents = [path.read_bytes() for path in sorted(pathlib.Path(folder).iterdir()) if path.is_file()]
    pathlib.Path(file).write_text(text_of(contents), encoding="ascii")


def add(file, *found):
    contents = [*read_file(file).values(), *(pathlib.Path(path).read_bytes() for path in found)]
    pathlib.Path(file).write_text(text_of(contents), encoding="ascii")


def main(words):
    if len(words) < 3 or words[0] not in ("unpack", "pack", "add") or (words[0] != "add" and len(words) != 3):
        sys.exit(__doc__)
    try:
        {"unpack": unpack, "pack": pack, "add": add}[words[0]](*words[1:])
    except (Damaged, OSError) as problem:
        sys.exit(f"inputs.py: {problem}")


if __name__ == "__main__":
    main(sys.argv[1:])
