#!/usr/bin/env python3
"""Prints the fuzz targets' dictionary: what means something in a log.

usage: make_dictionary.py SRC >fuzz/log.dict
"""

import pathlib
import re
import sys

TOKENS = [
    '{"id":', '"id":', ',"time":"', ',"vars":{', '"id"', '"vars":', '"time":', '\\u0069d', '\\u006',
    '{}', '[]', '{"', '":"', '","', '"}}\n', '}\n', '\r\n', '/*', '*/', '//', '/**/', 'null', 'true',
    'false', '\\u0000', '\\ud800', '\\ud83d\\ude00', '\\n', '\\"', '\xef\xbb\xbf', '\xff', '\xc3\xa9',
    '\x00', '\x1b[1;34m', '\x1b[0m', '2147483648', '-2147483649', '4294967296', '18446744073709551616',
    '1e999', '-1.5', '999999999', '1000000000', '%s', '%n',
]


def escaped(text):
    return "".join(c if " " <= c <= "~" and c not in '"\\' else f"\\x{ord(c):02x}" for c in text)


def main(src):
    catalog = re.sub("(?m)^ *//.*", "", (src / "describe/description_catalog.h").read_text())
    reasons = (src / "catalog/reason_tables.cpp").read_text()
    codes = re.findall(r"(?m)^ +\{ *(\d+), \"", catalog)
    keys = re.findall(r'"([a-z0-9]+(?:_[a-z0-9]+)*)"', catalog)
    names = re.findall(r'\{ *\d+, "([A-Z0-9_]+)"', reasons)
    if not (codes and keys and names):
        sys.exit("the tables are no longer where this script looks for them")
    for entry in dict.fromkeys([*TOKENS, *keys, *names, *codes]):
        print(f'"{escaped(entry)}"')


main(pathlib.Path(sys.argv[1]))
