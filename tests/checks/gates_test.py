"""No room escapes the checks of the sources: in a small tree with a new room, each of them finds what is wrong there.

usage: gates_test.py PROJECT_DIRECTORY
"""
import runpy
import shutil
import subprocess
import sys
import tempfile
import types
import unittest
from pathlib import Path

PROJECT = Path(sys.argv.pop(1)).resolve()
GATES = [".clang-format", ".clang-tidy", "scripts/sources", "scripts/format", "scripts/tidy", "scripts/analyze",
         "scripts/coverage", "scripts/mutation", "tests/checks/include_rules.py", "tests/checks/braces.py", "tests/cppcheck.txt"]


class Tree(unittest.TestCase):
    """A git tree with the gates and two files that pass them all."""

    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.root = Path(directory.name)
        for name in GATES:
            (self.root / name).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(PROJECT / name, self.root / name)
        self.write("CMakeLists.txt", "cmake_minimum_required(VERSION 3.25)\nproject(tree LANGUAGES CXX)\n"
                                     "include_directories(include)\nadd_library(tree STATIC src/module/Module.cpp)\n")
        self.write("include/Module.h", "int Twice(int number);\n")
        self.write("src/module/Module.cpp", '#include "Module.h"\n\nint Twice(int number) { return 2 * number; }\n')
        subprocess.run(["git", "init", "--quiet", self.root], check=True)

    def write(self, name, text):
        (self.root / name).parent.mkdir(parents=True, exist_ok=True)
        (self.root / name).write_text(text)

    def run_gate(self, *command):
        return subprocess.run([self.root / command[0], *command[1:]], stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                              text=True, check=False)

    def passes(self, *command):
        run = self.run_gate(*command)
        self.assertEqual(run.returncode, 0, run.stdout)

    def refuses(self, message, *command):
        run = self.run_gate(*command)
        self.assertNotEqual(run.returncode, 0, run.stdout)
        self.assertIn(message, run.stdout)

    def include_rules(self):
        return subprocess.run([sys.executable, "-B", self.root / "tests/checks/include_rules.py", self.root],
                              stdout=subprocess.PIPE, text=True, check=False)


class NewRooms(Tree):
    def test_cannot_escape_the_layout(self):
        self.passes("scripts/format", "--check")
        self.write("attic/Attic.cpp", "int  Thrice( int number ){return 3*number;}\n")
        self.refuses("attic/Attic.cpp", "scripts/format", "--check")

    def test_cannot_escape_the_linter_even_when_no_build_compiles_them(self):
        self.passes("scripts/tidy", self.root / "build")
        self.write("attic/Attic.cpp", "bool Same(bool a) {\n  return a == true;\n}\n")
        self.refuses("attic/Attic.cpp:2", "scripts/tidy", self.root / "build")

    def test_cannot_escape_the_linter_with_a_header_alone(self):
        self.write("attic/Attic.h", "inline bool Same(bool a) { return a == true; }\n")
        self.write("src/module/Module.cpp", '#include "../../attic/Attic.h"\n')
        self.refuses("attic/Attic.h:1", "scripts/tidy", self.root / "build")

    def test_but_tests_are_linted_on_demand(self):
        self.write("tests/AtticTest.cpp", "bool Same(bool a) {\n  return a == true;\n}\n")
        self.passes("scripts/tidy", self.root / "build")
        self.refuses("tests/AtticTest.cpp:2", "scripts/tidy", "--all", self.root / "build")

    def test_cannot_escape_the_analyzers(self):
        self.passes("scripts/analyze")
        self.write("attic/Attic.cpp", "int Last() {\n  int numbers[2] = {1, 2};\n  return numbers[2];\n}\n")
        self.refuses("attic/Attic.cpp:3", "scripts/analyze")

    def test_need_an_include_rule(self):
        self.assertEqual(self.include_rules().returncode, 0, self.include_rules().stdout)
        self.write("attic/Attic.cpp", "#include <string>\n")
        run = self.include_rules()
        self.assertEqual(run.returncode, 1)
        self.assertIn("attic/ holds sources, but", run.stdout)

    def test_need_coverage(self):
        self.write("attic/Attic.cpp", "")
        coverage = load(self.root / "scripts" / "coverage")
        self.assertEqual(coverage.rooms(), ["attic", "src"])

    def test_are_looked_for_where_git_knows_the_files_only(self):
        shutil.rmtree(self.root / ".git")
        for gate in (["scripts/format", "--check"], ["scripts/tidy"], ["scripts/analyze"]):
            self.refuses("Run them in a git clone of the project", *gate)
        self.assertEqual(self.include_rules().returncode, 1)


class Braces(Tree):
    SHORT = "int Half(int n) {\n  if (n < 0) {\n    return 0;\n  }\n  return n / 2;\n}\n"
    JOINED = "int Half(int n) {\n  if (n < 0) return 0;\n  return n / 2;\n}\n"

    def braces(self, *options):
        return subprocess.run([sys.executable, "-B", self.root / "tests/checks/braces.py", *options, self.root],
                              stdout=subprocess.PIPE, text=True, check=False)

    def test_are_left_out_where_the_body_fits_on_the_line(self):
        self.write("attic/Attic.cpp", self.SHORT)
        run = self.braces()
        self.assertEqual((run.returncode, run.stdout),
                         (1, "attic/Attic.cpp:2: the body fits on this line, without braces\n"))
        self.assertEqual(self.braces("--fix").returncode, 0)
        self.assertEqual((self.root / "attic/Attic.cpp").read_text(), self.JOINED)
        self.assertEqual(self.braces().returncode, 0)

    def test_stay_at_bodies_that_do_not_fit_and_at_branches(self):
        long = "x" * 110
        for body in (f"if (n < 0) {{\n    {long} = 0;\n  }}\n", "if (n < 0) {\n    n = 0;\n  } else {\n    n = 1;\n  }\n",
                     "for (;;) {\n    if (n < 0) break;\n  }\n"):
            self.write("attic/Attic.cpp", f"void Half(int n) {{\n  {body}}}\n")
            self.assertEqual(self.braces().returncode, 0, body)

    def test_are_asked_of_a_body_on_a_line_of_its_own(self):
        self.write("attic/Attic.cpp", "int Half(int n) {\n  if (n < 0)\n    return 0;\n  return n / 2;\n}\n")
        self.refuses("readability-braces-around-statements", "scripts/tidy", self.root / "build")
        self.write("attic/Attic.cpp", self.JOINED)
        self.passes("scripts/tidy", self.root / "build")


class IncludeRules(Tree):
    def test_name_what_reaches_too_far(self):
        self.write("platform/hal/limid.h", "")
        self.write("softcard/Card.h", "")
        self.write("softcard/tables/Rows.h", "")
        self.write("calls/Call.h", "")
        self.write("scenario/Step.h", "")
        for file, include, complaint in [
                ("calls/A.cpp", '"calls/Call.h"', None),
                ("calls/A.cpp", '"Call.h"', '"Call.h" is no file of the project, written from the root'),
                ("calls/A.cpp", '"softcard/Card.h"', "calls/ may not include softcard/Card.h"),
                ("calls/A.cpp", '"scenario/Step.h"', "calls/ may not include scenario/Step.h"),
                ("calls/A.cpp", '"hal/limid.h"', None),
                ("calls/A.cpp", '"platform/hal/limid.h"', "is no file of the project, written from the root"),
                ("calls/A.cpp", "<map>", None),
                ("calls/A.cpp", "<cstdint>", None),
                ("calls/A.cpp", "<unistd.h>", "calls/ may not include <unistd.h>"),
                ("softcard/A.cpp", '"calls/../softcard/Card.h"', None),
                ("softcard/A.cpp", '"softcard/Nowhere.h"', "is no file of the project"),
                ("softcard/A.cpp", "<netinet/in.h>", None),
                ("softcard/A.cpp", "<CLI/CLI.hpp>", "softcard/ may not include <CLI/CLI.hpp>"),
                ("console/A.cpp", "<CLI/CLI.hpp>", None),
                ("console/A.cpp", "<pcap/pcap.h>", None),
                ("scenario/A.cpp", "<pcap/pcap.h>", "scenario/ may not include <pcap/pcap.h>"),
                ("scenario/A.cpp", '"hal/limid.h"', "scenario/ may not include platform/hal/limid.h"),
                ("router/A.cpp", '"softcard/tables/Rows.h"', None),
                ("router/A.cpp", '"softcard/Card.h"', "router/ may not include softcard/Card.h"),
                ("src/module/A.cpp", '"../module/Module.h"', "is no file of the project"),
                ("src/module/A.cpp", '"softcard/Card.h"', "is no file of the project"),
                ("src/module/A.cpp", '"../../softcard/Card.h"', "src/ may not include softcard/Card.h"),
                ("tests/A.cpp", '"softcard/Card.h"', None)]:
            with self.subTest(file=file, include=include):
                self.write(file, f"#include {include}\n")
                run = self.include_rules()
                self.assertEqual(run.returncode, 1 if complaint else 0, run.stdout)
                if complaint:
                    self.assertIn(f"{file}:1: ", run.stdout)
                    self.assertIn(complaint, run.stdout)
                (self.root / file).unlink()


class Coverage(unittest.TestCase):
    @staticmethod
    def verdict(covered, names=("attic",)):
        lines = {"count": 100, "covered": covered}
        files = {"attic/A.cpp": {"lines": lines}, "attic/B.cpp": {"lines": {"count": 0, "covered": 0}}}
        return load(PROJECT / "scripts" / "coverage").verdict(files, names)

    def test_of_a_room_without_a_bound_of_its_own_has_one(self):
        self.assertEqual(self.verdict(95), (["attic: 95.0 % of 100 lines, at least 95 %"], []))
        self.assertEqual(self.verdict(94), (["attic: 94.0 % of 100 lines, at least 95 %"], ["attic/A.cpp"]))

    def test_of_a_room_that_no_test_links_is_a_failure(self):
        self.assertEqual(self.verdict(95, ["cellar"]), (["cellar: nothing was measured of its lines"], ["cellar"]))

    def test_of_the_module_is_whole(self):
        files = {"src/A.cpp": {what: {"count": 1000, "covered": 999} for what in ("lines", "branches", "mcdc")}}
        texts, failed = load(PROJECT / "scripts" / "coverage").verdict(files, ["src"])
        self.assertEqual(texts, [f"src: 99.9 % of 1000 {what}, at least 100 %" for what in ("lines", "branches", "mcdc")])
        self.assertEqual(failed, ["src/A.cpp"])


class Mutation(Tree):
    def test_refuses_a_listed_change_that_the_source_no_longer_has(self):
        listed = "src/module/Module.cpp: int Twice(int number) { return 3 * number; }\n"
        self.write("tests/mutation-equivalents.txt", "A reason.\n" + listed)
        self.passes("scripts/mutation", "--list")
        gone = "src/module/Module.cpp: return 4 * number;"
        self.write("tests/mutation-equivalents.txt", f"A reason.\n{listed}{gone}\nsrc/Gone.cpp: return 1;\n")
        self.refuses(f"\n  src/Gone.cpp: return 1;\n  {gone}\n", "scripts/mutation", "--list")


class Demo(Tree):
    def test_shows_what_the_build_said_when_it_fails(self):
        shutil.copy(PROJECT / "scripts/demo", self.root / "scripts/demo")
        self.write("scripts/setup", "#!/bin/sh\necho nothing is missing\n")
        (self.root / "scripts/setup").chmod(0o755)
        run = self.run_gate("scripts/demo")
        self.assertEqual(run.returncode, 1)
        first, second, *said = run.stdout.splitlines()
        self.assertRegex(first, "^Setting up.* done$")
        self.assertRegex(second, "^Building.* failed; build/demo.log says:$")
        self.assertIn("Could not read presets", "".join(said))


def load(path):
    """A script's functions, without running it."""
    return types.SimpleNamespace(**runpy.run_path(str(path)))


if __name__ == "__main__":
    unittest.main()
