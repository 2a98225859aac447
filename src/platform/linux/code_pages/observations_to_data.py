#!/usr/bin/env python3
"""Turns a table of the platform's observed answers into a data file of this folder.

usage: observations_to_data.py CODE_PAGE OBSERVATIONS > data/cpNNN.txt

OBSERVATIONS holds what the two conversion functions answered, one call a line:
  L HH                              HH is a lead byte
  B HH[HH] UUUU[.UUUU] STRICT       bytes to units
  W UUUU BYTES USED STRICT USED     unit to bytes; USED is 1 when it became the default character
STRICT (the same call with the strict flag) is not stored: it follows from the rest by rule, and
this script refuses observations that do not follow the rules. data/README.md describes the files.
"""

import sys

UNITS_PER_LINE = 16


def is_private(unit):
    return 0xE000 <= unit <= 0xF8FF


class Observations:
    def __init__(self, path):
        self.lead = set()
        self.single = {}  # byte -> (units, strict)
        self.double = {}
        self.encode = {}  # unit -> (bytes, used, strict bytes, strict used)
        with open(path, encoding="ascii") as lines:
            for line in lines:
                field = line.split()
                if field[0] == "L":
                    self.lead.add(int(field[1], 16))
                elif field[0] == "B":
                    table = self.single if len(field[1]) == 2 else self.double
                    table[int(field[1], 16)] = ([int(u, 16) for u in field[2].split(".")], field[3])
                else:
                    self.encode[int(field[1], 16)] = tuple(field[2:6])


def decode_table(seen):
    """Returns {code: unit} and the unit of undefined double bytes (None without double bytes)."""
    default = None
    if seen.lead:
        defaults = {seen.single[b][0][0] for b in seen.lead}
        assert len(defaults) == 1, "lead bytes alone differ"
        default = defaults.pop()
    table = {b: units[0] for b, (units, _) in seen.single.items() if b not in seen.lead}
    for code, (units, _) in seen.double.items():
        if code & 0xFF == 0:  # the lead byte is undefined, and the NUL stays
            assert units == [default, 0], f"{code:04X}"
        elif units[0] != default or seen.encode[default][0] == f"{code:04X}":
            assert len(units) == 1, f"{code:04X}"
            table[code] = units[0]
    return table, default


def check_strict_decode(seen, default):
    own_code = seen.encode[default][0] if default is not None else "3F"
    for code, (units, strict) in seen.single.items():
        fails = code in seen.lead or is_private(units[0]) or (units[0] == 0x3F and code != 0x3F)
        assert strict == ("!1113" if fails else f"{units[0]:04X}"), f"strict {code:02X}"
    for code, (units, strict) in seen.double.items():
        fails = units[0] == default and f"{code:04X}" != own_code
        assert strict == ("!1113" if fails else f"{units[0]:04X}"), f"strict {code:04X}"


def encode_exceptions(seen, table):
    """Returns {unit: code} where the code is not the shortest, lowest one that decodes to the unit."""
    inverse = {}
    for code in sorted(table):
        inverse.setdefault(table[code], code)
    exceptions = {}
    for unit, (octets, used, strict, strict_used) in seen.encode.items():
        code = int(octets, 16)
        if used == "1":
            assert unit not in inverse, f"{unit:04X} decodes but does not encode"
            assert (strict, strict_used) == (octets, "1")
            continue
        exact = table.get(code) == unit
        assert (strict, strict_used) == ((octets, "0") if exact else ("3F", "1")), f"{unit:04X}"
        if inverse.get(unit) != code:
            exceptions[unit] = code
    return exceptions


def rows(table, key_width, value_width):
    """Yields the lines of `KEY VALUE VALUE-VALUE ...`; a line stays within one row of 256 keys."""
    line, expected = [], None
    keys = sorted(table)
    i = 0
    while i < len(keys):
        key, value = keys[i], table[keys[i]]
        n = 1
        while (i + n < len(keys) and keys[i + n] == key + n and table[keys[i + n]] == value + n
               and (key + n) >> 8 == key >> 8 and (value + n) >> 8 == value >> 8):
            n += 1
        if n < 3:
            n = 1
        new_line = key != expected or key & 0xFF == 0 or len(line) > UNITS_PER_LINE
        if new_line and line:
            yield " ".join(line)
        if new_line:
            line = [f"{key:0{key_width(key)}X}"]
        width = value_width(value)
        line.append(f"{value:0{width}X}" if n == 1 else f"{value:0{width}X}-{value + n - 1:0{width}X}")
        expected = key + n
        i += n
    if line:
        yield " ".join(line)


def byte_ranges(numbers):
    ranges = []
    for number in sorted(numbers):
        if ranges and ranges[-1][1] == number - 1:
            ranges[-1][1] = number
        else:
            ranges.append([number, number])
    return " ".join(f"{a:02X}-{b:02X}" for a, b in ranges)


def code_width(code):
    return 2 if code < 0x100 else 4


def unit_width(_):
    return 4


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    page, seen = sys.argv[1], Observations(sys.argv[2])
    table, default = decode_table(seen)
    check_strict_decode(seen, default)
    print(f"# Code page {page}, as the platform converts it; README.md says how to read this.")
    print(f"page {page}")
    if seen.lead:
        print(f"lead {byte_ranges(seen.lead)}")
        print(f"default {default:04X}")
    print("decode")
    print("\n".join(rows(table, code_width, unit_width)))
    print("encode")
    for line in rows(encode_exceptions(seen, table), unit_width, code_width):
        print(line)


if __name__ == "__main__":
    main()
