"""The names that the programs have: menu entries with their keys, commands with their options."""
import re
import subprocess

# Buttons that the desktop words.
BUTTONS_OF_ALL = {"OK", "Cancel", "Close", "Discard", "Apply", "Yes", "No"}
ROOMS_WITH_TEXTS = ("chart", "diagnostics", "edit", "flow", "show", "survey", "transform", "window")
# Of a terminal, of a text that is edited, and of every form of the desktop.
KEYS_OF_ALL = {"Ctrl+C", "Ctrl+V", "Alt+F4", "F3"}


def plain(text):
    return text.replace("&", "").rstrip(".").strip()


class Names:
    """`entries` are paths of menus and entries with their keys, "" for none; `labels` all that the window says;
    `commands` sets of options by name."""

    def __init__(self, entries, keys, labels, commands):
        self.entries = entries
        self.labels = labels | BUTTONS_OF_ALL
        self.menus = sorted({path[0] for path in entries})
        self.keys = keys | KEYS_OF_ALL
        self.commands = commands

    def entry(self, menu, path):
        """The key of what stands below a menu, whole path or end of one; None where there is no such entry."""
        for known, key in self.entries.items():
            if known[0] == menu and list(known[1:])[-len(path):] == path:
                return key
        return None


def shown_key(code):
    """Qt::CTRL | Qt::SHIFT | Qt::Key_S as Ctrl+Shift+S."""
    words = {"CTRL": "Ctrl", "SHIFT": "Shift", "ALT": "Alt", "Key_Comma": ",", "Key_Escape": "Esc",
             "Key_PageDown": "PgDown", "Key_PageUp": "PgUp", "Key_Backtab": "Shift+Tab"}
    return "+".join(words.get(each, each.replace("Key_", "")) for each in re.findall(r"Qt::(\w+)", code))


def action_rows(text):
    rows = {}
    for part in re.split(r"ActionRow\{\s*ActionId::", text)[1:]:
        identity = re.match(r"\w+", part)[0]
        label = re.match(r'\w+,\s*"[^"]*",\s*"([^"]*)"', part)
        key = re.search(r"((?:Qt::(?:CTRL|SHIFT|ALT)\s*\|\s*)*Qt::Key_\w+)", part)
        rows[identity] = (plain(label[1]), shown_key(key[1]) if key else "")
    return rows


def labels(sources):
    """Every text in the sources of the rooms that speak to a person."""
    found = set()
    for room in ROOMS_WITH_TEXTS:
        for path in sorted((sources / room).rglob("*.cpp")):
            text = re.sub(r'"\s*\n\s*"', "", path.read_text("utf-8"))
            found.update(plain(each).rstrip(":") for each in re.findall(r'"((?:[^"\\\n]|\\.)+)"', text))
    return found


def window_names(sources):
    """Entries and keys from the tables that the window is built from, and its texts."""
    folder = sources / "window/shell"
    rows = action_rows((folder / "action_table.cpp").read_text("utf-8"))
    tree = (folder / "menu_tree.cpp").read_text("utf-8")
    entries, path = {}, []
    for opened, entry, closed in re.findall(
            r'(?m)^ +(?:open\("\w+", "([^"]+)"|entry\(ActionId::(\w+)\)|(close),)', tree):
        if opened:
            path.append(plain(opened))
            entries[tuple(path)] = ""
        elif entry:
            entries[(*path, rows[entry][0])] = rows[entry][1]
        elif closed:
            path.pop()
    keys = {key for _, key in rows.values() if key}
    for words in re.findall(r'ControlKeys\{"[^"]*", "([^"]*)"', (folder / "shortcut_list.cpp").read_text("utf-8")):
        keys.update(re.split(r"\s{2,}", words))
    return entries, keys, labels(sources)


def batch_names(tool):
    def told(*words):
        return subprocess.run([tool, *words, "--help"], capture_output=True, text=True, check=True).stdout

    commands = re.findall(r"(?m)^  ([a-z]+) ", told().split("Subcommands:")[1])
    return {name: set(re.findall(r"(?m)^ +(?:-\w,)?(--[a-z][a-z0-9-]*)", told(name))) for name in commands}
