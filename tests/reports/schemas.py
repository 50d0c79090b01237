"""The schemas of the documents that the programs write, and what of them real documents have shown."""
import json
import pathlib

import jsonschema

FOLDER = pathlib.Path(__file__).resolve().parents[2] / "docs" / "reference" / "schemas"


class Schemas:
    def __init__(self, folder=FOLDER):
        self.all = {path.name: json.loads(path.read_text(encoding="utf-8")) for path in sorted(folder.glob("*.json"))}
        self.seen = set()  # identities of the properties that a document had

    def validator(self, schema, name):
        resolver = jsonschema.RefResolver(name, self.all[name], store=self.all)
        return jsonschema.Draft202012Validator(schema, resolver=resolver)

    def faults(self, name, document):
        """What of the document `name`.json does not allow, a sentence each; otherwise its properties count as seen."""
        file = name + ".json"
        faults = [f"{fault.json_path}: {fault.message[:300]}"
                  for fault in self.validator(self.all[file], file).iter_errors(document)]
        if not faults:
            self.walk(self.all[file], file, document)
        return faults

    def resolved(self, schema, file):
        while "$ref" in schema:
            other, _, pointer = schema["$ref"].partition("#")
            file = other or file
            schema = self.all[file]
            for step in pointer.strip("/").split("/"):
                schema = schema[step] if step else schema
        return schema, file

    def walk(self, schema, file, value):
        schema, file = self.resolved(schema, file)
        for choice in schema.get("anyOf", []) + schema.get("oneOf", []):
            if self.validator(choice, file).is_valid(value):
                self.walk(choice, file, value)
        if isinstance(value, dict):
            for name, inner in value.items():
                if name in schema.get("properties", {}):
                    self.seen.add(id(schema["properties"][name]))
                    self.walk(schema["properties"][name], file, inner)
        elif isinstance(value, list) and "items" in schema and may_hold_objects(schema["items"]):
            for inner in value:
                self.walk(schema["items"], file, inner)

    def properties(self):
        """(where, property) of every property of every schema."""
        for file, schema in self.all.items():
            yield from properties_in(schema, file)


def may_hold_objects(schema):
    return any(word in schema for word in ("$ref", "properties", "items", "anyOf", "oneOf"))


def properties_in(schema, where):
    if isinstance(schema, dict):
        for name, inner in schema.get("properties", {}).items():
            yield f"{where}/{name}", inner
        for word, inner in schema.items():
            if word == "properties":
                for name, deeper in inner.items():
                    yield from properties_in(deeper, f"{where}/{name}")
            elif word == "$defs":
                for name, deeper in inner.items():
                    yield from properties_in(deeper, f"{where}#{name}")
            elif word in ("items", "additionalProperties"):
                yield from properties_in(inner, where)
    elif isinstance(schema, list):
        for inner in schema:
            yield from properties_in(inner, where)
    if isinstance(schema, dict):
        for word in ("anyOf", "oneOf", "prefixItems"):
            for inner in schema.get(word, []):
                yield from properties_in(inner, where)
