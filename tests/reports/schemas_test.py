"""Real documents of the batch tool hold to their schemas: schemas_test.py --tool anomalis-batch [--all].

With --all the slow commands take part too, and every property of a schema must occur, unless `seldom` says why not.
"""
import argparse
import sys
import tempfile

from documents import Documents
from schemas import Schemas


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--tool", required=True)
    parser.add_argument("--all", action="store_true")
    options = parser.parse_args()
    schemas, faults, count = Schemas(), list(words_that_are_missing(Schemas())), 0
    with tempfile.TemporaryDirectory() as folder:
        documents = Documents(options.tool, folder)
        for source in (documents.quick, documents.slow) if options.all else (documents.quick,):
            for schema, asked, document in source():
                count += 1
                faults += [f"{asked}: {schema}.json: {fault}" for fault in schemas.faults(schema, document)]
    faults += what_a_schema_must_refuse(schemas)
    if options.all:
        faults += not_seen(schemas)
    print("\n".join(faults[:60]))
    print(f"{count} documents, {len(faults)} faults")
    return 1 if faults else 0


def words_that_are_missing(schemas):
    """Each property says what it is, each number its unit."""
    for where, schema in schemas.properties():
        if not schema.get("description") and "$ref" not in schema:
            yield f"{where} has no description"
        kinds = schema.get("type", "")
        if "number" in kinds and "unit" not in schema:
            yield f"{where} is a number without a unit"


def not_seen(schemas):
    for where, schema in schemas.properties():
        if id(schema) not in schemas.seen and "seldom" not in schema:
            yield f"{where} is in no document"


def what_a_schema_must_refuse(schemas):
    """A schema that lets everything pass would find nothing."""
    field = {"total_nT": 1, "inclination_deg": 1, "declination_deg": 1, "north_nT": 1, "east_nT": 1, "down_nT": 1}
    wrong = (dict(field, up_nT=1), {name: 1 for name in list(field)[1:]}, dict(field, total_nT="1"))
    for document in wrong:
        if not Schemas().faults("field", document):
            yield f"field.json allows {document}"
    if schemas.faults("field", field):
        yield "field.json does not allow a field"


if __name__ == "__main__":
    sys.exit(main())
