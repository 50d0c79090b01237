"""Prints what a data-frame library makes of tables that it is given without any option.

Each table: its shape, then each column's name, kind and values, one to a line.
"""
import sys

import pandas


def main():
    for path in sys.argv[1:]:
        frame = pandas.read_csv(path)
        print(*frame.shape)
        for name in frame.columns:
            print(name, frame[name].dtype.kind, *(repr(value) for value in frame[name].tolist()), sep="|")


main()
