"""Damaged survey files, plans, results and command lines, one command of the batch tool, and what is wrong with the
outcome: commands that read something else than a workspace alone, or search in it."""
import itertools
import json
import os
import pathlib
import resource
import shutil
import signal
import subprocess
import tempfile

import mutations
import whole_files
from batch_case import OLD, run_within

WILD_WORDS = ["", "-", "--", "-1", "0", "1", "2", "3", "1e999", "nan", "-inf", "1e-40", "99999999999", "0x10", "1:2", "2:1",
              ":", "-500:1e9", "a=b", "=", "mag=3", "line=", "none", "EPSG:32754", "EPSG:4326", "EPSG:0", "+proj=utm +zone=54",
              "1990-07-01", "1899.9", "2031", "1990-02-30", "91,0", "-22.4,140.7,300", "0,0", "50000,-60,5", "50000,200,5",
              "thin", "thick", "thin,thick", "thin,,", "mag", "grav", "joint", "classic", "exact", "remove", "add", "L1", "L2",
              "no such line", "2/3", "3/2", "0/0", "1/99999", "16x16", "0x0", "99999x99999", "100x", "\u00b5", "%s%n", "a" * 3000]
OPTIONS = {
    "find": ["--most", "--bodies", "--kinds", "--free-present", "--alternatives", "--channel", "--window", "--noise",
             "--regional", "--noise-mag", "--noise-grav", "--formulas"],
    "uncertainty": ["--seed", "--channel", "--target", "--regional", "--noise-mag", "--noise-grav", "--window",
                    "--strike-within", "--vary-bodies", "--same-regional"],
    "follow": ["--channel", "--regional", "--noise-mag", "--noise-grav", "--iterations", "--starts"],
    "lines": ["--crs", "--file-crs", "--role", "--unit", "--null", "--json"],
    "import": ["--crs", "--file-crs", "--role", "--unit", "--null", "--line", "--all", "--piece", "--date", "--field", "--igrf",
               "--sensor-height", "--name", "--force", "--json"],
    "new": ["--crs", "--file-crs", "--role", "--unit", "--null", "--date", "--field", "--igrf", "--sensor-height", "--force"],
    "map": ["--crs", "--file-crs", "--role", "--unit", "--null", "--size", "--line", "--area"],
    "survey": ["--again-failed", "--log", "--shard", "--merge", "--from", "--lines-a-shard", "--jobs", "--map"],
    "joined": [],
    "field": ["--json"],
}
FLAGS = {"--free-present", "--vary-bodies", "--same-regional", "--json", "--all", "--force", "--again-failed", "--merge"}
JOINED = {"--table": "joined.csv", "--geojson": "joined.geojson", "--geopackage": "joined.gpkg", "--dxf": "joined.dxf",
          "--vtk": "joined.vtk", "--obj": "joined.obj"}
PLAN = {"name": "wild", "regional": "1", "source": {"file": "survey.csv", "crs": "EPSG:32754", "field": [50000, -55, 6]},
        "find": {"bodies": 1, "kinds": "thin"}}


def survey_text():
    """Two lines over one body."""
    rows = ["line,east,north,sensor,ground,mag"]
    for line, station in itertools.product((1, 2), range(24)):
        along = 25 * station
        anomaly = 40 / (1 + ((along - 300) / 60) ** 2)
        rows.append(f"L{line},{450000 + along},{7550000 + 200 * line},380,300,{50000 + anomaly + station % 3:.2f}")
    return "\n".join(rows) + "\n"


def plan_texts():
    """The same plan in its three forms."""
    source = ", ".join(f"{key} = {json.dumps(value)}" for key, value in PLAN["source"].items())
    find = ", ".join(f"{key} = {json.dumps(value)}" for key, value in PLAN["find"].items())
    toml = f'name = "wild"\nregional = 1\nsource = {{ {source} }}\nfind = {{ {find} }}\n'
    return {"plan.toml": toml, "plan.json": json.dumps(PLAN, indent=1), "plan.csv": "model\nmodel.axm\n"}


def made_results(tool):
    """The folder of a survey's results, by name, as the tool leaves it; that of one made before where it fails."""
    with tempfile.TemporaryDirectory() as folder:
        place = pathlib.Path(folder)
        (place / "survey.csv").write_text(survey_text())
        (place / "plan.toml").write_text(plan_texts()["plan.toml"])
        done = subprocess.run([tool, "survey", "plan.toml", "-o", "results"], cwd=place, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT)
        if done.returncode != 0:
            raise SystemExit("the survey to be damaged was not done: " + os.fsdecode(done.stdout))
        return {str(path.relative_to(place)): path.read_bytes() for path in sorted((place / "results").rglob("*"))
                if path.is_file()}


class WildCase:
    """Everything about one run follows from its seed."""

    seconds_times = 6  # searches and ensembles are longer work than a reading

    def __init__(self, seed, choice, pairs, results):
        self.seed, self.choice, self.source = seed, choice, "made"
        self.command = choice.choice(list(OPTIONS))
        self.kinds, self.inputs, self.old = [], {}, []
        small = [pair for pair in pairs if pair[2] and len(pair[3]) < 8000] or pairs
        arguments = getattr(self, "prepare_" + self.command)(small, results)
        self.arguments = [self.command] + arguments + self.wild_options()
        self.outputs = [name for name in ("out.axm", "report.json", "samples.csv", "map.png", "field.json",
                                          *JOINED.values()) if name in self.arguments]
        self.old = [name for name in self.outputs if choice.random() < 0.3]

    def damage(self, name, data, others=()):
        """Seven of ten inputs are damaged."""
        if isinstance(data, str):
            data = data.encode()
        if self.choice.random() < 0.7:
            kind, data = mutations.mutate(self.choice, data, list(others) or [data])
            self.kinds.append("wild " + kind)
        self.inputs[name] = data
        return name

    def wild_options(self):
        words = []
        for option in self.choice.sample(OPTIONS[self.command], min(self.choice.choice([0, 0, 1, 2, 4]),
                                                                    len(OPTIONS[self.command]))):
            words.append(option)
            if option not in FLAGS:
                words.append(self.choice.choice(WILD_WORDS))
        if words or not self.kinds:
            self.kinds.append("wild options")
        return words

    def model(self, pairs, name="model.axm"):
        self.source, model, data_name, data = self.choice.choice(pairs)
        self.inputs[data_name or "none.dat"] = data
        return self.damage(name, model, [pair[1] for pair in pairs])

    def prepare_find(self, pairs, _results):
        return [self.model(pairs), "--most", "1", "--alternatives", "1", "-o", "out.axm", "--report", "report.json"]

    def prepare_uncertainty(self, pairs, _results):
        return [self.model(pairs), "--samples", self.choice.choice(["0", "1", "4", "9"]), "-o", "out.axm", "--report",
                "report.json", "--table", "samples.csv"]

    def prepare_follow(self, pairs, _results):
        return [self.model(pairs), self.model(pairs, "next.axm"), "--iterations", "1", "--starts", "0", "--report",
                "report.json"]

    def prepare_lines(self, _pairs, _results):
        return [self.damage("survey.csv", survey_text())]

    def prepare_import(self, _pairs, _results):
        return [self.damage("survey.csv", survey_text()), "-o", "imported"]

    def prepare_new(self, _pairs, _results):
        line = "\n".join(survey_text().splitlines()[:25]) + "\n"
        return [self.damage("survey.csv", line), "-o", "out.axm"]

    def prepare_map(self, _pairs, results):
        if self.choice.random() < 0.5:
            return self.damaged_results(results) + ["-o", "map.png", "--size", "200x150"]
        return [self.damage("survey.csv", survey_text()), "-o", "map.png", "--size", "200x150"]

    def prepare_survey(self, pairs, results):
        self.damage("survey.csv", survey_text())
        self.model(pairs)
        if self.choice.random() < 0.3:
            self.damaged_results(results)
        texts = plan_texts()
        name = self.choice.choice(list(texts))
        run = [] if self.choice.random() < 0.3 else ["--dry-run"]
        return [self.damage(name, texts[name], [text.encode() for text in texts.values()]), "-o", "results", *run]

    def prepare_joined(self, _pairs, results):
        chosen = self.choice.sample(list(JOINED), self.choice.choice([1, 2, 6]))
        return self.damaged_results(results) + [word for option in chosen for word in (option, JOINED[option])]

    def prepare_field(self, _pairs, _results):
        return ["--at", self.choice.choice(WILD_WORDS), "--date", self.choice.choice(WILD_WORDS), "-o", "field.json"]

    def damaged_results(self, results):
        for name, data in results.items():
            self.inputs[name] = data
        name = self.choice.choice(list(results))
        self.damage(name, results[name], list(results.values()))
        return ["results"]

    def write(self, folder):
        for name, data in self.inputs.items():
            path = folder / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(data)
        folder.mkdir(parents=True, exist_ok=True)
        for name in self.old:
            (folder / name).write_bytes(OLD)

    def failures(self, tool, folder, limits):
        """Runs the tool in the folder; every way in which the outcome is not sound, as (sort, text)."""
        shutil.rmtree(folder, ignore_errors=True)
        self.write(folder)
        limits = type(limits)(limits.seconds * self.seconds_times, limits.megabytes)
        ended = run_within(limits, [tool] + self.arguments, folder)
        if ended is None:
            return [("time-out", "did not end")]
        return list(self.judge(*ended, folder))

    def judge(self, status, out, err, folder):
        if status in (-signal.SIGXCPU, -signal.SIGKILL):
            yield "time-out", "used more than the time allowed"
        elif status not in (0, 1, 2, 75):
            yield "signal", f"status {status}: " + os.fsdecode(err[-2000:])
        elif status in (1, 2) and not err and not out:
            yield "status", "failed without a word"
        for name, data in self.inputs.items():
            # What a survey keeps in its own folder it may well renew.
            if self.command == "survey" and name.startswith("results/"):
                continue
            path = folder / name
            if not path.is_file() or path.read_bytes() != data:
                yield "input", f"{name} was changed"
        for name in self.outputs:
            yield from self.judge_output(name, folder / name, status)

    def judge_output(self, name, path, status):
        data = path.read_bytes() if path.is_file() else None
        if data is None or (name in self.old and data == OLD):
            if data is None and name in self.old:
                yield "output", f"the old {name} is gone"
            return
        try:
            if name.endswith((".json", ".geojson")):
                json.loads(data.decode(), parse_constant=whole_files.no_constant) if b"{" in data[:2] else None
            elif name.endswith(".axm"):
                whole_files.check_workspace(data)
            elif name.endswith(".png"):
                whole_files.check_png(data)
        except (ValueError, LookupError) as failure:
            yield "output", f"{name} is not whole after status {status}: {failure}"
