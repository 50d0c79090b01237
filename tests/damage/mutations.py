"""Kinds of damage that files meet: broken transfers, other programs, wrong columns, typing errors."""
import re

EXTREME_NUMBERS = [
    b"0", b"-0", b"1", b"-1", b"1e-45", b"1e38", b"-1e38", b"3.4e38", b"-3.4e38", b"3.5e38", b"1e308", b"1e999",
    b"2147483647", b"-2147483648", b"2147483648", b"4294967296", b"9223372036854775808", b"10000000", b"100000",
    b"nan", b"inf", b"-inf", b"", b"12,5", b"1.2.3", b"1e", b"--5", b"0x10", b"abc def", b"-99999", b"*",
    b"1E+0005", b"99999999999999999999999999999999", b"\xef\xbc\x91", b"1\x002",
]
# Names as people and other systems give them, and some that nobody should.
NAMES = [
    b"", b" ", b".", b"..", b"/", b"/dev/null", b"/dev/zero", b"line.dat/", b"no such file.dat", b"a" * 255,
    b"a" * 5000, b"C:\\Surveys\\line.dat", b"..\\..\\line.dat", b"./././line.dat", b"~/line.dat",
    b"%s%n%d", b"\x1b[31mred", b"=1+1", b"-o", b"\xff\xfe", b"gr\xc3\xb6\xc3\x9fe.dat", b"a\tb", b"d/" * 60 + b"x",
]
NUMBER = re.compile(rb"[-+]?[0-9][0-9.eE+-]*")


def place(random, data, room=0):
    """An index that leaves `room` bytes behind it."""
    return random.randrange(max(1, len(data) - room + 1))


def flip_bits(random, data, _others):
    changed = bytearray(data)
    for _ in range(random.choice([1, 1, 2, 5, 20])):
        if changed:
            changed[random.randrange(len(changed))] ^= 1 << random.randrange(8)
    return bytes(changed)


def write_bytes(random, data, _others):
    at = place(random, data)
    return data[:at] + random.randbytes(random.choice([1, 2, 8, 100])) + data[at + random.choice([0, 1, 8]):]


def cut_end(random, data, _others):
    return data[:place(random, data)]


def cut_middle(random, data, _others):
    at = place(random, data)
    return data[:at] + data[at + random.choice([1, 2, 10, 100, 1000]):]


def lines_of(data):
    return data.splitlines(keepends=True) or [b""]


def double_line(random, data, _others):
    lines = lines_of(data)
    at = random.randrange(len(lines))
    return b"".join(lines[:at] + [lines[at]] * random.choice([2, 2, 3, 50]) + lines[at + 1:])


def drop_line(random, data, _others):
    lines = lines_of(data)
    at = random.randrange(len(lines))
    return b"".join(lines[:at] + lines[at + random.choice([1, 1, 2, 10]):])


def swap_lines(random, data, _others):
    lines = lines_of(data)
    one, other = random.randrange(len(lines)), random.randrange(len(lines))
    lines[one], lines[other] = lines[other], lines[one]
    return b"".join(lines)


def extreme_number(random, data, _others):
    """The numbers of the head are met as often as the many behind them."""
    for _ in range(random.choice([1, 1, 1, 2, 4])):
        found = list(NUMBER.finditer(data[:600] if random.random() < 0.3 else data))
        if not found:
            break
        hit = random.choice(found)
        data = data[:hit.start()] + random.choice(EXTREME_NUMBERS) + data[hit.end():]
    return data


def extreme_column(random, data, _others):
    """One value in the same place of all lines, as a wrong export does."""
    lines = lines_of(data)
    column, value = random.randrange(8), random.choice(EXTREME_NUMBERS)
    for at, line in enumerate(lines):
        words = line.split(b" ")
        if column < len(words):
            words[column] = value
            lines[at] = b" ".join(words)
    return b"".join(lines)


def other_line_ends(random, data, _others):
    end = random.choice([b"\n", b"\r", b"\r\n", b"\r\r\n", b"\n\n", b"\x1a\n", b"\x00", b"\xe2\x80\xa8"])
    return re.sub(rb"\r?\n", end, data)


def decimal_commas(_random, data, _others):
    return re.sub(rb"(?<=[0-9])\.(?=[0-9])", b",", data)


def other_separators(random, data, _others):
    return data.replace(b" ", random.choice([b"\t", b",", b";", b"  ", b"\xc2\xa0", b""]))


def other_encoding(random, data, _others):
    encoding = random.choice(["utf-16", "utf-16-le", "utf-32", "utf-8-sig"])
    return data.decode("latin-1").encode(encoding)


def splice(random, data, others):
    other = random.choice(others)
    return data[:place(random, data)] + other[place(random, other):]


def whole_other_file(random, _data, others):
    return random.choice(others + [b"", b"\n", b"\x00" * 4096, b"\x7fELF" + random.randbytes(500),
                                   b"\x89PNG\r\n\x1a\n" + random.randbytes(500), b"{}", b"word " * 400])


def deep_name(random, data, _others):
    """Another name in the first line, which is the data file of a workspace."""
    return random.choice(NAMES) + b"\n" + data.partition(b"\n")[2]


KINDS = {kind.__name__: kind for kind in (
    flip_bits, write_bytes, cut_end, cut_middle, double_line, drop_line, swap_lines, extreme_number, extreme_column,
    other_line_ends, decimal_commas, other_separators, other_encoding, splice, whole_other_file, deep_name)}
# Numbers that are wrong are what people meet most, and what says most about the calculation.
WEIGHTS = [6 if name == "extreme_number" else 1 for name in KINDS]


def mutate(random, data, others):
    """The name of the kind and the damaged bytes."""
    name = random.choices(list(KINDS), WEIGHTS)[0]
    for _ in range(random.choice([1, 1, 1, 2, 3])):
        data = KINDS[name](random, data, others)
    return name, data
