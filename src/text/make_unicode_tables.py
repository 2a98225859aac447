#!/usr/bin/env python3
"""Makes unicode_tables.inc from the Unicode Character Database.

usage: make_unicode_tables.py FOLDER > unicode_tables.inc

FOLDER holds CaseFolding.txt, UnicodeData.txt, PropList.txt and emoji/emoji-data.txt; Debian's
package unicode-data puts them into /usr/share/unicode. The build does not run this: the result
is kept in the tree, and made anew when Unicode grows.
"""

import os
import re
import sys

# What of the format characters (Cf) belongs to text that people see: the two joiners, and the tags
# of emoji flags. unicode.h says what else counts.
VISIBLE_FORMATS = [0x200C, 0x200D] + list(range(0xE0020, 0xE0080))
PRINTABLE_CATEGORIES = ("L", "M", "N", "P", "S", "Zs")


def lines(*path):
    with open(os.path.join(*path), encoding="utf-8") as file:
        for line in file:
            line = line.split("#")[0].strip()
            if line:
                yield [field.strip() for field in line.split(";")]


def version(folder):
    with open(os.path.join(folder, "CaseFolding.txt"), encoding="utf-8") as file:
        return re.search(r"CaseFolding-([0-9.]+)\.txt", file.readline()).group(1)


def code_points(field):
    first, _, last = field.partition("..")
    return range(int(first, 16), int(last or first, 16) + 1)


def simple_folding(folder):
    return {int(code, 16): int(target, 16)
            for code, status, target, *_ in lines(folder, "CaseFolding.txt") if status in "CS"}


def fold_runs(folding):
    """Runs (first, last, step, delta) of characters that fold by the same distance."""
    runs = []
    for code, target in sorted(folding.items()):
        delta = target - code
        if runs:
            first, last, step, run_delta = runs[-1]
            gap = code - last
            if delta == run_delta and gap <= 2 and (first == last or gap == step):
                runs[-1] = (first, code, gap, delta)
                continue
        runs.append((code, code, 1, delta))
    return runs


def printable(folder):
    codes = set(VISIBLE_FORMATS)
    opened = None
    for code, name, category, *_ in lines(folder, "UnicodeData.txt"):
        code = int(code, 16)
        if name.endswith(", First>"):
            opened = code
            continue
        first = opened if opened is not None else code
        opened = None
        if category.startswith(PRINTABLE_CATEGORIES):
            codes.update(range(first, code + 1))
    wanted = {("PropList.txt",): "Prepended_Concatenation_Mark",
              ("emoji", "emoji-data.txt"): "Extended_Pictographic"}
    for path, name in wanted.items():
        for field, prop, *_ in lines(folder, *path):
            if prop == name:
                codes.update(code_points(field))
    return codes


def ranges(codes):
    result = []
    for code in sorted(codes):
        if result and code == result[-1][1] + 1:
            result[-1][1] = code
        else:
            result.append([code, code])
    return result


def table(rows):
    line = "   "
    for row in rows:
        if len(line) + 1 + len(row) > 100:
            print(line)
            line = "   "
        line += " " + row
    print(line)


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    folder = sys.argv[1]
    print(f"// Unicode {version(folder)}, made by make_unicode_tables.py.")
    print("\n// Simple case folding: every step-th character from first to last folds to itself + delta.")
    print("constexpr FoldRun kFoldRuns[] = {")
    table(f"{{0x{first:X}, 0x{last:X}, {step}, {delta}}},"
          for first, last, step, delta in fold_runs(simple_folding(folder)))
    print("};\n\n// Printable characters, from first to last.")
    print("constexpr CodeRange kPrintable[] = {")
    table(f"{{0x{first:X}, 0x{last:X}}}," for first, last in ranges(printable(folder)))
    print("};")


if __name__ == "__main__":
    main()
