#!/usr/bin/env python3
"""Prints the page reports.md from docs/reports_head.md and the schemas: docs/reference/reports.py > docs/reference/reports.md

With --check it says whether the page is what it would print.
"""
import json
import pathlib
import sys

HERE = pathlib.Path(__file__).resolve().parent
ORDER = ("invert", "find", "uncertainty", "follow", "info", "lines", "import", "field", "survey_log", "line_result", "survey",
         "shard", "geojson", "dump", "common")
KINDS = {"number": "number", "integer": "whole number", "string": "text", "boolean": "true or false", "array": "list",
         "object": "object"}


def page():
    text = [(HERE.parent / "reports_head.md").read_text(encoding="utf-8").rstrip()]
    for name in ORDER:
        schema = json.loads((HERE / "schemas" / f"{name}.json").read_text(encoding="utf-8"))
        text += shared_parts(schema) if name == "common" else document(name, schema)
    return "\n".join(text) + "\n"


def document(name, schema):
    text = ["", f"## {schema['title']}", "", f"{schema['description']} Schema: [`{name}.json`](schemas/{name}.json).", ""]
    if "oneOf" not in schema:
        return text + table(rows_of(schema, ""))
    for choice in schema["oneOf"]:
        text += [f"`{choice['properties']['event']['const']}`: {sentence(choice)}", "", *table(rows_of(choice, "")), ""]
    return text[:-1]


def shared_parts(schema):
    text = ["", "## Parts that several documents share", "", "Schema: [`common.json`](schemas/common.json).", ""]
    for name, part in schema["$defs"].items():
        rows = rows_of(part, "")
        text += [f"### {name}", "", sentence(part)]
        text += ["", *table(rows)] if rows else []
        text += [""]
    return text[:-1]


def table(rows):
    return ["| Name | What stands there | Unit |", "|---|---|---|", *(f"| `{name}` | {what} | {unit} |" for name, what, unit in rows)]


def rows_of(schema, path):
    """(name, what, unit) of the properties below an object, those of objects in it behind it."""
    rows = []
    for name, inner in schema.get("properties", {}).items():
        optional = "" if name in schema.get("required", []) else " *Not always there.*"
        rows.append((path + name, sentence(inner) + kind(inner) + optional, inner.get("unit", "")))
        for deeper, mark in inside(inner):
            rows += rows_of(deeper, f"{path}{name}{mark}{layer_of(deeper)}.")
    return rows


def layer_of(schema):
    layer = schema["properties"].get("layer", {}).get("const")
    return f" ({layer})" if layer else ""


def inside(schema):
    """The objects that a property holds, with what stands behind its name."""
    if "properties" in schema:
        yield schema, ""
    for choice in schema.get("anyOf", []) + schema.get("oneOf", []):
        yield from inside(choice)
    if "items" in schema:
        for deeper, mark in inside(schema["items"]):
            yield deeper, "[]" + mark


def sentence(schema):
    return schema.get("description", "").replace("|", "\\|")


def kind(schema):
    named = reference(schema)
    if named:
        return f" See [{named}](#{named})."
    if "items" in schema and reference(schema["items"]):
        named = reference(schema["items"])
        return f" A list of [{named}](#{named})."
    if "enum" in schema:
        return " One of " + ", ".join(f"`{json.dumps(value)}`" for value in schema["enum"]) + "."
    if "const" in schema:
        return f" `{json.dumps(schema['const'])}`."
    kinds = schema.get("type", [])
    kinds = [KINDS[one] for one in ([kinds] if isinstance(kinds, str) else kinds) if one != "null"]
    return f" ({', '.join(kinds)})" if kinds else ""


def reference(schema):
    for choice in [schema, *schema.get("anyOf", [])]:
        if "$ref" in choice:
            return choice["$ref"].rpartition("/")[2]
    return None


def main():
    if sys.argv[1:] == ["--check"]:
        if (HERE / "reports.md").read_text(encoding="utf-8") != page():
            print("reports.md is not what the schemas say; run docs/reference/reports.py > docs/reference/reports.md")
            return 1
        return 0
    sys.stdout.write(page())
    return 0


if __name__ == "__main__":
    sys.exit(main())
