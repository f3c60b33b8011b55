#!/usr/bin/env python3
"""Writes the fuzz targets' dictionary, fuzz/log.dict: what means something in a log.

usage: make_dictionary.py [--check]

With --check it writes nothing and fails if the dictionary is not what it would write.
"""

import re
import sys
from pathlib import Path

FOLDER = Path(__file__).resolve().parent
SOURCE = FOLDER.parent / "src"
DICTIONARY = FOLDER / "log.dict"

TOKENS = [
    '{"id":', '"id":', ',"time":"', ',"vars":{', '"id"', '"vars":', '"time":', '\\u0069d', '\\u006',
    '{}', '[]', '{"', '":"', '","', '"}}\n', '}\n', '\r\n', '/*', '*/', '//', '/**/', 'null', 'true',
    'false', '\\u0000', '\\ud800', '\\ud83d\\ude00', '\\n', '\\"', '\xef\xbb\xbf', '\xff', '\xc3\xa9',
    '\x00', '\x1b[1;34m', '\x1b[0m', '2147483648', '-2147483649', '4294967296',
    '18446744073709551615', '18446744073709551616', '1e999', '-1.5', '999999999', '1000000000',
    '%s', '%n',
]


def escaped(text):
    return "".join(c if " " <= c <= "~" and c not in '"\\' else f"\\x{ord(c):02x}" for c in text)


def entries():
    catalog = re.sub("(?m)^ *//.*", "", (SOURCE / "describe/description_catalog.h").read_text())
    reasons = (SOURCE / "catalog/reason_tables.cpp").read_text()
    codes = re.findall(r"(?m)^ +\{ *(\d+), \"", catalog)
    keys = re.findall(r'"([a-z0-9]+(?:_[a-z0-9]+)*)"', catalog)
    names = re.findall(r'\{ *\d+, "([A-Z0-9_]+)"', reasons)
    if not (codes and keys and names):
        sys.exit("the tables are no longer where this script looks for them")
    return "".join(f'"{escaped(entry)}"\n'
                   for entry in dict.fromkeys([*TOKENS, *keys, *names, *codes]))


def main():
    if sys.argv[1:] not in ([], ["--check"]):
        sys.exit("usage: make_dictionary.py [--check]")
    if sys.argv[1:] == ["--check"]:
        sys.exit(None if DICTIONARY.read_text() == entries() else
                 "fuzz/log.dict is old: run fuzz/make_dictionary.py")
    DICTIONARY.write_text(entries())


main()
