#!/usr/bin/env python3
"""Prints the lines of tests against the lines of code (the library and the vellum program) and
their ratio, and exits 1 when the ratio is above the limit (0.4 by default, or the first argument).

Lines are counted without blank lines and comment-only lines. The tables written by the
generators (.inc files that say "do not edit" near their top) are left out; the code they write
(accessors of the structural classes) counts as code."""
import os
import re
import sys

SOURCE = re.compile(r'\.(cpp|h|hpp|inl|inc)$')


def counted_lines(path):
    with open(path, errors='replace') as f:
        text = f.read()
    if path.endswith('.inc') and 'do not edit' in text[:1000]:
        return 0
    lines = 0
    in_block = False
    for line in text.splitlines():
        s = line.strip()
        if not s:
            continue
        if in_block:
            if '*/' in s:
                in_block = False
            continue
        if s.startswith('//'):
            continue
        if s.startswith('/*'):
            in_block = '*/' not in s
            continue
        lines += 1
    return lines


def tree_lines(root, folders):
    total = 0
    for folder in folders:
        for directory, _, files in os.walk(os.path.join(root, folder)):
            total += sum(counted_lines(os.path.join(directory, f)) for f in files if SOURCE.search(f))
    return total


def main():
    limit = float(sys.argv[1]) if len(sys.argv) > 1 else 0.4
    root = os.path.join(os.path.dirname(os.path.abspath(__file__)), '..')
    code = tree_lines(root, ['src', 'include', 'protected', 'tools'])
    tests = tree_lines(root, ['tests'])
    ratio = tests / code
    print(f'test lines {tests}, code lines {code}, ratio {ratio:.3f} (limit {limit})')
    return 0 if ratio <= limit else 1


if __name__ == '__main__':
    sys.exit(main())
