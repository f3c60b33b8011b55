"""Writes the dictionary of the fuzz targets, fuzz/log.dict: what has a meaning in a log."""

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


def written(tables):
    codes = sorted(tables["descriptions"], key=int)
    keys = [slot["key"] for code in codes for slot in tables["descriptions"][code]["slots"]]
    names = [reason["name"] for reason in tables["reasons"]]
    return "".join(f'"{escaped(entry)}"\n'
                   for entry in dict.fromkeys([*TOKENS, *keys, *names, *codes]))
