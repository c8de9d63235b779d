"""junit_test.py FOLDER REPORT PROGRAM...: what `softcard run --junit REPORT FOLDER` writes is what a reader of such reports reads."""
import subprocess
import sys

import junitparser

subprocess.run(sys.argv[3:] + ["run", "--quiet", "-D", "PORTS=3", "--junit", sys.argv[2], sys.argv[1]], check=False,
               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
report = junitparser.JUnitXml.fromfile(sys.argv[2])
suites = {suite.name.rsplit("/", 1)[-1]: suite for suite in report}
assert {name: (suite.tests, suite.failures, suite.errors) for name, suite in suites.items()} == {
    "a-fails.scn": (1, 1, 0), "b-holds.scn": (2, 0, 0), "c-unusable.scn": (1, 0, 1), "d-defined.scn": (1, 0, 0)}, suites
failed = next(iter(suites["a-fails.scn"]))
assert failed.name == "line 2: expect result 7", failed.name
assert isinstance(failed.result[0], junitparser.Failure), failed.result
assert "expected: 7" in failed.result[0].text and "after line 1: install-vrf 1" in failed.result[0].text, failed.result
assert isinstance(next(iter(suites["c-unusable.scn"])).result[0], junitparser.Error)
