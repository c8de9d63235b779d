"""state_test.py SCHEMA SCENARIO FOLDER PROGRAM...: what the statement save writes is as the schema says."""
import json
import pathlib
import subprocess
import sys

import jsonschema

schema = json.load(open(sys.argv[1], encoding="utf-8"))
jsonschema.Draft202012Validator.check_schema(schema)
validator = jsonschema.Draft202012Validator(schema)
folder, softcard = pathlib.Path(sys.argv[3]), sys.argv[4:]
scenario, state = folder / "saving.scn", folder / "state.json"
full = pathlib.Path(sys.argv[2]).read_text(encoding="utf-8").split("say Half")[0]  # what follows takes it down
scenario.write_text(f"{full}\nsave {state}\n", encoding="utf-8")
subprocess.run(softcard + ["run", "--quiet", scenario], check=True)
saved = json.loads(state.read_text(encoding="utf-8"))
validator.validate(saved)
assert len(saved["tables"]["destinations"]) > 300, len(saved["tables"]["destinations"])
assert subprocess.run(softcard + ["diff", state, state], check=False).returncode == 0
# A check that finds nothing wrong must be able to.
for wrong in ({**saved, "version": 2}, {**saved, "tables": {}}, {**saved, "checksum": "0"}):
    assert not validator.is_valid(wrong), wrong
