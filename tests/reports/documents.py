"""Documents as the batch tool writes them over the examples and models of the tests, in a folder of their own."""
import json
import os
import pathlib
import shutil
import subprocess

SOURCE = pathlib.Path(__file__).resolve().parents[2]


class Documents:
    """Each method gives (name of the schema, what was asked, document)."""

    def __init__(self, tool, folder):
        self.tool = tool
        self.folder = pathlib.Path(folder)
        for place in (SOURCE / "examples", SOURCE / "tests" / "damage", SOURCE / "fuzz" / "corpus" / "axm"):
            for path in place.iterdir():
                if path.suffix in (".axm", ".dat", ".csv", ".toml"):
                    shutil.copy(path, self.folder / path.name)
        self.environment = dict(os.environ, QT_QPA_PLATFORM="offscreen")

    def told(self, *arguments, statuses=(0,)):
        run = subprocess.run([self.tool, *arguments], cwd=self.folder, env=self.environment, capture_output=True,
                             text=True, check=False, timeout=1800)
        if run.returncode not in statuses:
            raise AssertionError(f"{arguments} ended with {run.returncode}: {run.stderr}")
        return run.stdout

    def printed(self, schema, *arguments, statuses=(0,)):
        return schema, " ".join(arguments), json.loads(self.told(*arguments, statuses=statuses))

    def reported(self, schema, *arguments, option="--report", statuses=(0,)):
        self.told(*arguments, option, "report.json", statuses=statuses)
        return self.file(schema, "report.json", " ".join(arguments))

    def file(self, schema, path, asked=""):
        return schema, asked or str(path), json.loads((self.folder / path).read_text(encoding="utf-8"))

    def quick(self):
        """Of commands that take no time."""
        failed = (0, 1)
        yield self.printed("lines", "lines", "dyke_lines.csv", "--json")
        yield self.printed("import", "import", "dyke_lines.csv", "--line", "1010", "--date", "1990-07-01", "--crs",
                           "EPSG:32754", "--role", "height=sensor", "-o", "one", "--json")
        yield self.printed("import", "import", "dyke_lines.csv", "--line", "1020", "--field", "none", "--role",
                           "height=sensor", "-o", "none", "--json")
        yield self.printed("field", "field", "--at=-22.1,140.5,350", "--date", "1990-07-01", "--json")
        for model in ("buried_cable.axm", "one/dyke_lines_1010.axm"):
            yield self.printed("info", "info", model, "--json")
        self.write_damaged()
        yield self.printed("info", "info", "short.axm", "--json", statuses=failed)
        yield self.printed("info", "info", "none/dyke_lines_1020.axm", "--json", statuses=failed)
        yield self.reported("dump", "dump", "buried_cable.axm", option="-o")
        yield self.reported("dump", "dump", "every_type.axm", option="-o", statuses=failed)
        yield from self.cheap_survey()

    def maps(self):
        self.told("find", "one/dyke_lines_1010.axm", "--regional", "1", "-o", "mapped.axm")
        text = (self.folder / "fault_block.axm").read_text(encoding="latin-1")
        (self.folder / "placed.axm").write_text(text + "coordinate_system EPSG:32754\r\n", encoding="latin-1", newline="")
        for model in ("mapped.axm", "placed.axm"):
            yield self.reported("geojson", "export", model, option="--geojson")
        yield self.reported("geojson", "joined", "whole", option="--geojson")

    def write_damaged(self):
        """A copy of the fault block whose table has rows that are left out, and a reading that stays the same."""
        text = (self.folder / "fault_block.axm").read_text(encoding="latin-1").replace("fault_block.dat", "short.dat")
        (self.folder / "short.axm").write_text(text, encoding="latin-1")
        rows = (self.folder / "fault_block.dat").read_text(encoding="latin-1").splitlines()
        head = next(number for number, row in enumerate(rows) if row.split() and row.split()[0][0].isdigit())
        readings = [row.split() for row in rows[head:]]
        for row in readings[40:90]:
            row[-1] = readings[40][-1]
        readings[10][1] = "nowhere"
        rows[head:] = [" ".join(row) for row in readings]
        (self.folder / "short.dat").write_text("\n".join(rows) + "\n", encoding="latin-1")

    def cheap_survey(self):
        """A survey whose lines are only imported, one of them failing, in two parts."""
        (self.folder / "cheap.toml").write_text(
            'name = "cheap"\n[source]\nfile = "dyke_lines.csv"\ncrs = "EPSG:32754"\nfield = [51940, -53.1, 6.7]\n'
            'roles = { height = "sensor" }\n[[line]]\nline = "1030"\nfind.window = [5000, 6000]\n', encoding="utf-8")
        for part in ("1/2", "2/2"):
            yield from self.log("cheap.toml", "cheap", "--shard", part)
        yield from self.results("cheap")
        for path in sorted((self.folder / "cheap" / "shards").iterdir()):
            yield self.file("shard", path)

    def log(self, plan, folder, *more):
        told = self.told("survey", plan, "-o", folder, "--log", "json", *more, statuses=(0, 1, 75))
        for line in told.splitlines():
            yield "survey_log", f"survey {plan} {' '.join(more)}", json.loads(line)

    def results(self, folder):
        yield self.file("survey", f"{folder}/survey.json")
        for path in sorted((self.folder / folder / "lines").glob("*/result.json")):
            yield self.file("line_result", path)

    def slow(self):
        """Of searches, fits and ensembles."""
        for model in sorted(path.name for path in self.folder.glob("*.axm")):
            report = self.folder / (model + ".json")
            self.told("dump", model, "--keep-going", "-o", report.name, statuses=(0, 1))
            if report.exists():
                yield self.file("dump", report, f"dump {model}")
        yield from self.fits()
        yield from self.searches()
        yield from self.followed()
        yield from self.whole_survey()
        yield from self.maps()

    def fits(self):
        ask = ("invert", "fault_block.axm", "--iterations", "5", "-o", "fitted_block.axm", "--keep-going")
        for channel in ("mag", "grav", "joint"):
            yield self.reported("invert", *ask, "--channel", channel, "--regional", "1")
        yield self.reported("dump", "dump", "fitted_block.axm", option="-o")
        yield self.printed("info", "info", "fitted_block.axm", "--json")
        yield self.reported("invert", "invert", "buried_cable.axm", "--channel", "mag", "--method", "sweep",
                            "--iterations", "2", "--keep-going")
        yield self.reported("invert", "invert", "dyke_swarm.axm", "--channel", "mag", "--target", "gradient",
                            "--iterations", "3", "--keep-going", "--noise-mag", "2")
        yield self.reported("invert", "invert", "one/dyke_lines_1010.axm", "--channel", "mag",
                            statuses=(1,))
        for channel in ("mag", "joint"):
            yield self.reported("uncertainty", "uncertainty", "fault_block.axm", "--samples", "5", "--channel", channel,
                                "--regional", "1", "--vary-bodies", "--keep-going")

    def searches(self):
        yield self.reported("find", "find", "dyke_swarm.axm", "--most", "2")
        for channel in ("grav", "joint"):
            yield self.reported("find", "find", "fault_block.axm", "--channel", channel, "--most", "1", "--keep-going")
        yield self.reported("find", "find", "one/dyke_lines_1010.axm", "--window", "0:200")

    def followed(self):
        self.told("import", "dyke_lines.csv", "--all", "--field", "51940,-53.1,6.7", "--crs", "EPSG:32754", "--role",
                  "height=sensor", "-o", "lines")
        models = [f"lines/dyke_lines_{number}.axm" for number in (1010, 1020, 1030, 1040)]
        self.told("find", models[0], "--regional", "1", "-o", "first.axm")
        (self.folder / "followed").mkdir()
        yield self.reported("follow", "follow", "first.axm", *models[1:], "-o", "followed")
        yield self.reported("follow", "follow", "first.axm", models[1])
        shutil.copy(self.folder / "fault_block.axm", self.folder / "next_block.axm")
        yield self.reported("follow", "follow", "fault_block.axm", "next_block.axm", "--channel", "joint",
                            "--regional", "1", "--starts", "1", "--iterations", "3", "--keep-going")
        yield self.reported("follow", "follow", "first.axm", "buried_cable.axm", statuses=(0, 1))

    def whole_survey(self):
        plan = (self.folder / "dyke_lines.toml").read_text(encoding="utf-8")
        (self.folder / "whole.toml").write_text(plan + '\n[invert]\n\n[uncertainty]\nsamples = 5\n', encoding="utf-8")
        yield from self.log("whole.toml", "whole", "-j", "2")
        yield from self.results("whole")
        for path in sorted((self.folder / "whole" / "lines").glob("*/*.json")):
            if path.stem in ("find", "invert", "uncertainty"):
                yield self.file(path.stem, path)
