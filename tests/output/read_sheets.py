"""Prints what surfaces in space hold: legacy VTK (ASCII polygons) or Wavefront OBJ, read token by token.

A line a face, its group (OBJ) and corners; then of VTK a line a value with its numbers.
"""
import sys


def corners(points, numbers):
    return "|".join(" ".join(f"{value:.3f}" for value in points[number]) for number in numbers)


def read_vtk(text):
    head, title, kind, rest = text.split("\n", 3)
    assert head == "# vtk DataFile Version 3.0" and len(title) < 256 and kind == "ASCII"
    words = iter(rest.split())
    take = lambda count: [next(words) for _ in range(count)]
    assert take(3) == ["DATASET", "POLYDATA", "POINTS"]
    count, kind = take(2)
    assert kind == "double"
    points = [tuple(map(float, take(3))) for _ in range(int(count))]
    assert take(1) == ["POLYGONS"]
    faces, size = map(int, take(2))
    used = 0
    for _ in range(faces):
        numbers = list(map(int, take(int(take(1)[0]))))
        used += 1 + len(numbers)
        print("face", corners(points, numbers))
    assert used == size
    assert take(2) == ["CELL_DATA", str(faces)]
    for word in words:
        assert word == "SCALARS"
        name, kind, parts = take(3)
        assert (kind, parts, take(2)) == ("double", "1", ["LOOKUP_TABLE", "default"])
        print(name, *(float(value) for value in take(faces)))


def read_obj(text):
    points, group = [], ""
    for line in text.splitlines():
        kind, *rest = line.split()
        if kind == "v":
            points.append(tuple(map(float, rest)))
        elif kind == "g":
            group, = rest
        elif kind == "f":
            print(group, corners(points, [int(number) - 1 for number in rest]))
        else:
            assert kind == "#", line


for path in sys.argv[1:]:
    with open(path, encoding="ascii") as file:
        text = file.read()
    (read_vtk if text.startswith("# vtk") else read_obj)(text)
