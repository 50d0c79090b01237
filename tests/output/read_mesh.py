"""Reads the header of a rectilinear mesh: cell counts, the south-west top corner, the widths along each axis.

A width may stand for several cells as COUNT*WIDTH. Prints the counts, the corner and the extents.
"""
import sys


def numbers(tokens):
    for token in tokens:
        count, star, width = token.partition("*")
        yield from [float(width)] * int(count) if star else [float(count)]


def main():
    with open(sys.argv[1], encoding="ascii") as file:
        lines = file.read().split("\n")
    counts = [int(token) for token in lines[0].split()]
    corner = [float(token) for token in lines[1].split()]
    widths = [list(numbers(line.split())) for line in lines[2:5]]
    assert len(counts) == len(corner) == 3
    assert [len(axis) for axis in widths] == counts
    assert lines[5:] == [""]
    print(*counts, *corner, *(sum(axis) for axis in widths))


main()
