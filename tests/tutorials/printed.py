"""Whether a block printed what its page says: as it stands, `...` for anything, numbers to the digits shown."""
import re

_NUMBER = re.compile(r"(?<![\w.])[-+]?\d+(?:\.\d+)?(?:[eE][-+]?\d+)?(?![\w])")
# How far a survey is, which is told now and then: how often hangs on the machine.
_PROGRESS = re.compile(r"^\d+ of \d+ lines?( \(\d+ done before\))?(, .*)?\n", re.MULTILINE)


def without_progress(text):
    return _PROGRESS.sub("", text)


def first_difference(expected, printed):
    """The number of the first line of `expected`, from 0, that `printed` has not; None where it has all, no more."""
    wanted = [line.rstrip() for line in expected.rstrip().split("\n")]
    there = [line.rstrip() for line in printed.rstrip().split("\n")]
    return _differ(wanted, there)


def _differ(wanted, there):
    # Row by row: which lines of `there` may have been used up when `wanted[i]` comes. A line `...` uses any number.
    reached = {0}
    for number, line in enumerate(wanted):
        if line == "...":
            reached = set(range(min(reached), len(there) + 1))
            continue
        reached = {used + 1 for used in reached if used < len(there) and same_line(line, there[used])}
        if not reached:
            return number
    return None if len(there) in reached else len(wanted)


def same_line(wanted, there):
    pattern = ".*".join(_with_numbers(part) for part in wanted.split("..."))
    found = re.fullmatch(pattern, there)
    shown = [number for part in wanted.split("...") for number in _NUMBER.findall(part)]
    return bool(found) and all(same_number(*pair) for pair in zip(shown, found.groups()))


def _with_numbers(text):
    parts = []
    at = 0
    for number in _NUMBER.finditer(text):
        parts += [re.escape(text[at:number.start()]), r"([-+]?\d+(?:\.\d+)?(?:[eE][-+]?\d+)?)"]
        at = number.end()
    return "".join(parts) + re.escape(text[at:])


def same_number(shown, there):
    """Whether `there` is `shown` when it is rounded to as many digits."""
    if shown == there:
        return True
    mantissa, _, power = shown.lower().partition("e")
    digits = len(mantissa.partition(".")[2]) - int(power or 0)
    more = len(there.lower().partition("e")[0].partition(".")[2]) - int(there.lower().partition("e")[2] or 0)
    return more > digits and abs(float(shown) - float(there)) <= 0.5000001 * 10.0 ** -digits
