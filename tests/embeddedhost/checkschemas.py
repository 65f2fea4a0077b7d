"""Holds the schemas in docs/ against the sample library and the documents that the loader's own
test uses. Ends with 77 where the validator is not installed."""

import json
import pathlib
import sys

try:
    import jsonschema
except ImportError:
    print("python3-jsonschema is missing")
    sys.exit(77)

root = pathlib.Path(__file__).resolve().parents[2]


def load(path):
    return json.loads(path.read_text(encoding="utf-8"))


def validator(form):
    schema = load(root / "docs" / f"{form}.schema.json")
    jsonschema.Draft7Validator.check_schema(schema)
    return jsonschema.Draft7Validator(schema)


def main():
    validators = {form: validator(form) for form in ("library", "object")}
    faults = []

    def expect(form, document, is_valid, place):
        errors = [error.message for error in validators[form].iter_errors(document)]
        if is_valid == bool(errors):
            faults.append(f"{place}: {'; '.join(errors) or 'the schema accepts it'}")

    for case in load(root / "tests/embeddedhost/data/documents.json"):
        if "document" not in case:
            continue
        place = f"{case['form']}: {case['case']}"
        is_valid = case["valid"] or case.get("schema") == "accepts"
        expect(case["form"], case["document"], is_valid, place)

    library = root / "samples/library"
    files = sorted(library.glob("*/**/*.json"))
    expect("library", load(library / "library.json"), True, "library.json")
    for file in files:
        expect("object", load(file), True, file.relative_to(library))

    print("\n".join(faults) or f"{len(files)} files of the sample library are valid")
    return 1 if faults or not files else 0


sys.exit(main())
