"""Prints what ezdxf finds in drawings: errors and repairs of its audit, then each entity.

A face: its layer, colour and corners; a polyline: its corners. Opening is strict: no recovery.
"""
import sys

import ezdxf


def corner(point):
    return " ".join(f"{value:.3f}" for value in tuple(point)[:3])


def main():
    for path in sys.argv[1:]:
        drawing = ezdxf.readfile(path)
        audit = drawing.audit()
        print(len(audit.errors), len(audit.fixes))
        for entity in drawing.modelspace():
            if entity.dxftype() == "3DFACE":
                print("3DFACE", entity.dxf.layer, entity.dxf.color, *map(corner, entity.wcs_vertices(close=False)), sep="|")
            else:
                print(entity.dxftype(), *map(corner, entity.points()), sep="|")


main()
