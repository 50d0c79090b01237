"""One damaged workspace with its data, one command of the batch tool, and what is wrong with the outcome."""
import os
import pathlib
import random
import resource
import shutil
import signal
import subprocess

import mutations
import whole_files

OLD = b"the file of the last run\n"
VIEWS = ["section", "plan", "curves", "mag", "mag-gradient", "grav", "grav-gradient", "section-only", "plan-only"]


def command_info(_random):
    return ["info"], []


def command_dump(random):
    return ["dump"] + random.choice([[], ["-o", "dump.json"]]), ["dump.json"]


def command_forward(random):
    return ["forward"] + random.choice([[], ["-o", "forward.csv"]]), ["forward.csv"]


def command_invert(random):
    method = random.choice(["sweep", "least-squares"])
    channels = ["mag", "grav"] + (["joint"] if method == "least-squares" else [])
    arguments = ["invert", "--method", method, "--iterations", random.choice(["1", "2"]), "-o", "fitted.axm",
                 "--report", "report.json"]
    if random.random() < 0.8:
        arguments += ["--channel", random.choice(channels)]
    if random.random() < 0.3:
        arguments += ["--target", "gradient"]
    if random.random() < 0.3:
        arguments += ["--body", random.choice(["1", "2", "7"])]
    if random.random() < 0.3:
        arguments += ["--regional", random.choice(["none", "0", "1", "2", "3"])]
    if random.random() < 0.2:
        arguments += ["--noise-mag", random.choice(["1e-30", "5", "1e30"]), "--noise-grav", "0.02"]
    if random.random() < 0.3:
        arguments += ["--starts", random.choice(["0", "1", "9"])]
    return arguments, ["fitted.axm", "report.json"]


def command_export(random):
    outputs = {"--profile-table": "profile.csv", "--model-table": "model.csv", "--mesh": "mesh.hdr",
               "--clean-profile": "clean_profile.csv", "--clean-model": "clean_model.csv",
               "--dxf-3d": "bodies.dxf", "--dxf-plan": "plan.dxf"}
    chosen = random.sample(list(outputs), random.choice([1, 2, 7]))
    return ["export"] + [word for option in chosen for word in (option, outputs[option])], [outputs[o] for o in chosen]


def command_render(random):
    picture = "chart." + random.choice(["png", "png", "svg", "pdf", "emf"])
    return ["render", "-o", picture, "--view", random.choice(VIEWS), "--size",
            random.choice(["16x16", "300x200", "1000x700"])], [picture]


COMMANDS = {"info": (command_info, 2), "dump": (command_dump, 2), "forward": (command_forward, 3),
            "invert": (command_invert, 4), "export": (command_export, 3), "render": (command_render, 1)}


def run_within(limits, command, folder):
    """Runs a command in a folder within limits: its status, output and messages; None when it did not end."""
    with subprocess.Popen(command, cwd=folder, preexec_fn=limits.apply, stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.PIPE) as child:
        try:
            # The limit is one of work; a machine that is busy with other things is given time.
            out, err = child.communicate(timeout=20 * limits.seconds)
        except subprocess.TimeoutExpired:
            child.kill()
            return None
    return child.returncode, out, err


class Limits:
    """What one run of the tool may use; no memory limit under sanitizers, which reserve all there is."""

    def __init__(self, seconds, megabytes):
        self.seconds, self.megabytes = seconds, megabytes

    def apply(self):
        resource.setrlimit(resource.RLIMIT_CPU, (self.seconds, self.seconds + 1))
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        # A file without end shall not fill the disk.
        resource.setrlimit(resource.RLIMIT_FSIZE, (1 << 30, 1 << 30))
        if self.megabytes:
            resource.setrlimit(resource.RLIMIT_AS, (self.megabytes << 20, self.megabytes << 20))


def source_pairs(folders):
    """Workspaces with the data file that they name, as (name, workspace, name of the data, data)."""
    pairs = []
    for folder in map(pathlib.Path, folders):
        for model in sorted(folder.rglob("*.axm")):
            text = model.read_bytes()
            named = text.splitlines()[:1] or [b""]
            data = model.parent / os.fsdecode(named[0].strip() or b" ")
            try:
                pairs.append((str(model), text, data.name, data.read_bytes()))
            except (OSError, ValueError):
                pairs.append((str(model), text, "", b""))
    return pairs


class Case:
    """Everything about one run follows from its seed."""

    def __init__(self, seed, pairs):
        choice = random.Random(seed)
        self.seed = seed
        self.source, model, data_name, data = choice.choice(pairs)
        target = choice.random()
        self.kinds = []
        if target < 0.65 or not data_name:
            kind, model = mutations.mutate(choice, model, [pair[1] for pair in pairs])
            self.kinds.append("model " + kind)
        if target >= 0.55 and data_name:
            kind, data = mutations.mutate(choice, data, [pair[3] for pair in pairs])
            self.kinds.append("data " + kind)
        self.inputs = {"model.axm": model} | ({data_name: data} if data_name else {})
        names = list(COMMANDS)
        self.command = choice.choices(names, [COMMANDS[name][1] for name in names])[0]
        self.arguments, outputs = COMMANDS[self.command][0](choice)
        self.arguments.insert(1, "model.axm")
        if choice.random() < 0.5:
            self.arguments += ["--formulas", choice.choice(["classic", "exact"])]
        self.keep_going = choice.random() < 0.1
        if self.keep_going:
            self.arguments.append("--keep-going")
        self.outputs = [name for name in outputs if name in self.arguments]
        self.printed = [name for name in outputs if name not in self.arguments]
        self.old = [name for name in self.outputs if choice.random() < 0.4]

    def write(self, folder):
        folder.mkdir(parents=True)
        for name, data in self.inputs.items():
            (folder / name).write_bytes(data)
        for name in self.old:
            (folder / name).write_bytes(OLD)

    def failures(self, tool, folder, limits):
        """Runs the tool in the folder; every way in which the outcome is not sound, as (sort, text)."""
        shutil.rmtree(folder, ignore_errors=True)
        self.write(folder)
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        ended = run_within(limits, [tool] + self.arguments, folder)
        if ended is None:
            return [("time-out", "did not end")]
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        self.seconds = after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime
        return list(self.judge(*ended, folder))

    def judge(self, status, out, err, folder):
        if status in (-signal.SIGXCPU, -signal.SIGKILL):
            yield "time-out", "used more than the time allowed"
        elif status < 0 or status > 2:
            yield "signal", f"status {status}: " + os.fsdecode(err[-2000:])
        elif status == 2 and b"There is no body" not in err:
            yield "status", "took the command line for wrong: " + os.fsdecode(err)
        elif status == 1 and not err:
            yield "status", "failed without a word"
        elif status == 0 and not self.keep_going and not only_remarks(err):
            yield "status", "done, but with a message: " + os.fsdecode(err)
        found = {path.name: path.read_bytes() for path in folder.iterdir() if path.is_file()}
        for name, data in self.inputs.items():
            if found.pop(name, None) != data:
                yield "input", f"{name} was changed"
        written = {name: found.pop(name, None) for name in self.outputs}
        for name, data in written.items():
            yield from self.judge_output(name, data, status)
        yield from self.judge_reports(written, status)
        for name in found:
            yield "output", f"{name} was left behind"
        if status == 0:
            for name in self.printed:
                yield from whole(name, out)

    def judge_output(self, name, data, status):
        if data is None or (name in self.old and data == OLD):
            if status == 0:
                yield "output", f"{name} was not written"
            elif data is None and name in self.old:
                yield "output", f"the old {name} is gone"
            return
        # A drawing keeps what was drawn before a failure.
        if status == 0 or not name.endswith(".dxf"):
            yield from whole(name, data)

    def judge_reports(self, written, status):
        """Whoever reads a table or a report alone learns what the status says; not of the other outputs."""
        whole_ones = {name: data for name, data in written.items() if data not in (None, OLD)}
        for name, data in whole_ones.items():
            told = whole_files.tells_failure(name, data)
            all_are_there = len(whole_ones) == len(written)
            if not self.keep_going and (told and status == 0 or told is False and status != 0 and all_are_there):
                yield "status", f"{name} and the status {status} do not agree whether all went well"


def only_remarks(err):
    return all(line.startswith(b"Note: ") for line in err.splitlines())


def whole(name, data):
    try:
        whole_files.check(name, data)
    except ValueError as failure:
        yield "output", str(failure)
