"""Every column of the tables that the batch tool writes is told on the page about tables: tables_test.py --tool TOOL."""
import argparse
import csv
import re
import sys
import tempfile

from documents import SOURCE, Documents

PLAN = """name = "two"
regional = 1
[source]
file = "dyke_lines.csv"
crs = "EPSG:32754"
field = [51940, -53.1, 6.7]
roles = { height = "sensor" }
[lines]
only = ["1010", "1020"]
[find]
bodies = 1
kinds = "thin"
"""


def columns_told():
    page = (SOURCE / "docs" / "reference" / "tables.md").read_text(encoding="utf-8")
    names = set(re.findall(r"`(\w+)`", page))
    for base in ("TMI_Obs", "TMI_Mod", "Grav_Obs", "Grav_Mod"):
        names |= {base + end for end in ("_Smth", "_Res", "_VG", "_TG")}
    for name in [name for name in names if name.startswith("mag_observed")]:
        names.add(name.replace("observed", "model"))
    names |= {name.replace("mag_", "grav_").replace("_nT", "_mGal") for name in names if name.startswith("mag_")}
    return names


def is_told(column, told):
    plain = re.sub(r"(_lower_90|_upper_90|_error)$", "", column)
    plain = re.sub(r"^body_\d+_", "", plain)
    return plain in told


def tables(documents):
    """(name of the table, its columns)."""
    told = documents.told
    told("export", "fault_block.axm", "--profile-table", "a.csv", "--model-table", "b.csv", "--clean-profile", "c.csv",
         "--clean-model", "d.csv")
    for name in ("a.csv", "b.csv"):
        yield name, documents.folder.joinpath(name).read_text(encoding="utf-8").splitlines()[1].split(", ")
    told("uncertainty", "dyke_swarm.axm", "--samples", "2", "--table", "e.csv", "-o", "fitted.axm")
    told("export", "fitted.axm", "--clean-model", "f.csv")
    (documents.folder / "two.toml").write_text(PLAN, encoding="utf-8")
    told("survey", "two.toml", "-o", "two")
    told("joined", "two", "--table", "g.csv")
    told("export", "every_type.axm", "--clean-profile", "h.csv", "--clean-model", "i.csv", statuses=(0, 1))
    told("import", "dyke_lines.csv", "--line", "1010", "--role", "height=sensor", "--field", "none", "-o", "imported")
    names = [f"{letter}.csv" for letter in "cdefghi"] + [f"two/{name}.csv" for name in ("bodies", "lines", "seconds")]
    for name in [*names, "imported/dyke_lines_1010.csv"]:
        with (documents.folder / name).open(encoding="utf-8", newline="") as file:
            yield name, next(csv.reader(file))


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--tool", required=True)
    tool = parser.parse_args().tool
    told, count, faults = columns_told(), 0, []
    with tempfile.TemporaryDirectory() as folder:
        for table, columns in tables(Documents(tool, folder)):
            count += len(columns)
            faults += [f"{table}: {column} is not on the page" for column in columns if not is_told(column, told)]
    if is_told("no_such_column", told):
        faults.append("everything counts as told")
    print("\n".join(faults))
    print(f"{count} columns, {len(faults)} faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
