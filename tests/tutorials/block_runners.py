"""Shells and interpreters that run the blocks of one page."""
import json
import re
import subprocess
import sys
import tempfile

SECONDS = 1800  # a block under sanitizers, on a machine that is busy


class BlockFault(Exception):
    """A block that failed: `line` of it, from 0, and what it printed."""

    def __init__(self, text, output, line=0):
        super().__init__(text)
        self.output = output
        self.line = line


class ShellBlocks:
    def __init__(self, folder, environment):
        self.folder = folder
        # What an interpreter without sanitizers loads before a module that has them is not for a shell.
        self.environment = {name: value for name, value in environment.items() if name != "LD_PRELOAD"}

    def run(self, block):
        # The line that fails is told on a channel of its own.
        script = "trap 'echo $LINENO >&9' ERR\nset -eE -o pipefail\n" + block.text + "\n"
        with tempfile.TemporaryFile("w+") as failed:
            run = subprocess.run(["bash", "-c", "exec 9>&" + str(failed.fileno()) + "\n" + script], cwd=self.folder,
                                 env=self.environment, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                                 errors="replace", stdin=subprocess.DEVNULL, pass_fds=[failed.fileno()],
                                 timeout=SECONDS, check=False)
            failed.seek(0)
            line = failed.readline().strip()
        if run.returncode != 0:
            before = 3  # lines of the script ahead of the block
            place = min(max(int(line or 0) - before - 1, 0), block.text.count("\n"))
            raise BlockFault(f"the command ended with {run.returncode}", run.stdout, place)
        return run.stdout


class PythonBlocks:
    """One interpreter for all blocks of a page: what one sets the next one knows."""

    def __init__(self, folder, environment, page):
        self.folder = folder
        self.environment = environment
        self.page = page
        self.process = None

    def run(self, block):
        if self.process is None:
            # Unicode of any kind is printed, also without a language of the machine.
            self.process = subprocess.Popen([sys.executable, "-X", "utf8", "-c", _INTERPRETER], cwd=self.folder,
                                            env=self.environment, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                            text=True, encoding="utf-8")
        try:
            self.process.stdin.write(json.dumps([block.text, str(self.page), block.line]) + "\n")
            self.process.stdin.flush()
        except BrokenPipeError:
            pass
        answer = self.process.stdout.readline()
        if not answer:
            raise BlockFault(f"the interpreter ended with {self.process.wait()}", "")
        output, failed = json.loads(answer)
        if failed:
            places = re.findall(r'File "' + re.escape(str(self.page)) + r'", line (\d+)', output)
            raise BlockFault("the block failed", output, int(places[-1]) - block.line if places else 0)
        return output

    def close(self):
        if self.process:
            self.process.stdin.close()
            self.process.stdout.close()
            self.process.wait(timeout=SECONDS)


# Reads blocks as JSON, a line each, and answers [what was printed, whether it failed].
_INTERPRETER = r"""
import json, os, sys, tempfile, traceback
asked, answers = sys.stdin, os.fdopen(os.dup(1), "w", encoding="utf-8")
printed = tempfile.TemporaryFile("w+b")
os.dup2(printed.fileno(), 1)
os.dup2(printed.fileno(), 2)
names = {"__name__": "__main__"}
for request in asked:
    text, page, line = json.loads(request)
    printed.seek(0)
    printed.truncate()
    failed = False
    try:
        exec(compile("\n" * (line - 1) + text, page, "exec"), names)
    except BaseException:
        traceback.print_exc()
        failed = True
    sys.stdout.flush()
    sys.stderr.flush()
    printed.seek(0)
    answers.write(json.dumps([printed.read().decode("utf-8", "replace"), failed]) + "\n")
    answers.flush()
"""
