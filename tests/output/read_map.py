"""Prints what a map file holds, read with the standard library alone.

A line a layer: its name, kind of geometry, system and number of features; then a line a feature: its coordinates with six
decimals and its properties.
"""
import json
import sqlite3
import struct
import sys


def show(layer, kind, system, features):
    print(layer, kind, system, len(features))
    for points, values in features:
        places = " ".join(",".join(f"{number:.6f}" for number in point) for point in points) or "nowhere"
        print(places, "|".join(str(value) for value in values))


def read_json(path):
    with open(path, encoding="utf-8") as file:
        collection = json.load(file)
    assert collection["type"] == "FeatureCollection"
    assert "crs" not in collection
    layers = {}
    for feature in collection["features"]:
        geometry = feature["geometry"] or {"type": "Nowhere", "coordinates": []}
        points = geometry["coordinates"]
        if geometry["type"] == "Point":
            points = [points]
        elif geometry["type"] == "Polygon":
            points = points[0]
        values = dict(feature["properties"])
        layers.setdefault((values.pop("layer"), geometry["type"].upper()), []).append((points, values.values()))
    for (layer, kind), features in layers.items():
        show(layer, kind, 4326, features)


def points_of(blob, system):
    """The header of a GeoPackage geometry, then well-known binary."""
    if blob is None:
        return []
    magic, version, flags, number = struct.unpack_from("<2sBBi", blob)
    assert (magic, version, number, flags & 1) == (b"GP", 0, system, 1)
    place = 8 + {0: 0, 1: 32}[flags >> 1 & 7]
    envelope = struct.unpack_from("<4d", blob, 8) if place > 8 else None
    order, kind = struct.unpack_from("<BI", blob, place)
    assert order == 1
    count, place = 1, place + 5
    high, kind = divmod(kind, 1000)
    if kind == 3:
        assert struct.unpack_from("<I", blob, place) == (1,)
        place += 4
    if kind > 1:
        count, = struct.unpack_from("<I", blob, place)
        place += 4
    axes = 2 + high
    numbers = struct.unpack_from(f"<{axes * count}d", blob, place)
    assert place + 8 * axes * count == len(blob)
    points = list(zip(*(numbers[axis::axes] for axis in range(axes))))
    if envelope:
        xs, ys = list(zip(*points))[:2]
        assert envelope == (min(xs), max(xs), min(ys), max(ys))
    return points


def read_package(path):
    base = sqlite3.connect(f"file:{path}?mode=ro", uri=True)
    ask = lambda sql, *values: base.execute(sql, values).fetchall()
    assert ask("PRAGMA integrity_check") == [("ok",)]
    assert ask("PRAGMA foreign_key_check") == []
    assert ask("PRAGMA application_id") == [(0x47504B47,)]
    assert ask("PRAGMA user_version") == [(10300,)]
    assert {-1, 0, 4326} <= {number for number, in ask("SELECT srs_id FROM gpkg_spatial_ref_sys")}
    for table, system in ask("SELECT table_name, srs_id FROM gpkg_contents WHERE data_type = 'features'"):
        column, kind, same, high = ask(
            "SELECT column_name, geometry_type_name, srs_id, z FROM gpkg_geometry_columns WHERE table_name = ?", table)[0]
        assert same == system
        (organization, number, definition), = ask(
            "SELECT organization, organization_coordsys_id, definition FROM gpkg_spatial_ref_sys WHERE srs_id = ?",
            system)
        assert definition.startswith(("PROJCS[", "GEOGCS[")) or system == -1, definition
        features = []
        for row in ask(f'SELECT * FROM "{table}" ORDER BY fid'):
            features.append((points_of(row[1], system), row[2:]))
        assert column == "geom"
        show(table, kind, f"{organization}:{number}", features)
        assert all(len(point) == 2 + high for points, _ in features for point in points)
        if any(points for points, _ in features):
            box = ask("SELECT min_x, min_y, max_x, max_y FROM gpkg_contents WHERE table_name = ?", table)[0]
            xs, ys = zip(*(point[:2] for points, _ in features for point in points))
            assert box == (min(xs), min(ys), max(xs), max(ys))


def main():
    for path in sys.argv[1:]:
        with open(path, "rb") as file:
            package = file.read(6) == b"SQLite"
        (read_package if package else read_json)(path)


main()
