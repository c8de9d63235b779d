"""json_lines_test.py SCHEMA KEY STATUS PROGRAM...: what PROGRAM prints is a JSON object a line as the schema says, with every value of KEY.

It has to end with STATUS.
"""
import json
import subprocess
import sys

import jsonschema

schema = json.load(open(sys.argv[1], encoding="utf-8"))
jsonschema.Draft202012Validator.check_schema(schema)
validator = jsonschema.Draft202012Validator(schema)
run = subprocess.run(sys.argv[4:], stdout=subprocess.PIPE, check=False)
assert run.returncode == int(sys.argv[3]), run.returncode
objects = [json.loads(line) for line in run.stdout.decode("utf-8").splitlines()]
key = sys.argv[2]
for one in objects:
    validator.validate(one)
    # A check that finds nothing wrong must be able to.
    for wrong in ({**one, "more": 1}, {**one, "version": 2}, {name: one[name] for name in one if name != key}):
        assert not validator.is_valid(wrong), wrong
kinds = {one[key] for one in objects}
assert kinds == set(schema["properties"][key]["enum"]), kinds
