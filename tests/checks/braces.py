"""One brace style: a body that fits on the line of its if, for or while stands there without braces. (That a body on a
line of its own has braces is clang-tidy's to say; GoogleTest's expectations have an else inside and keep theirs.) Names
what differs; with --fix writes it so.

usage: braces.py [--fix] PROJECT_DIRECTORY [FOLDER...]
"""
import re
import subprocess
import sys
from pathlib import Path

COLUMNS = 120
BRACED = re.compile(r"^( *)((?:if|for|while) \(.*\)) \{\n +((?! |if |for |while |switch |do |//|EXPECT_|ASSERT_)[^{}\n]*;)\n\1\}\n", re.M)


def without_braces(text, found):
    """Joins a short body to its head, where that fits; `found` gets the line numbers."""
    def join(match):
        line = f"{match[1]}{match[2]} {match[3]}"
        if len(line) > COLUMNS:
            return match[0]
        found.append(text.count("\n", 0, match.start()) + 1)
        return line + "\n"

    return BRACED.sub(join, text)


def main(arguments):
    fix = arguments[:1] == ["--fix"]
    project, *folders = arguments[fix:]
    sources = subprocess.run([f"{project}/scripts/sources", *folders], stdout=subprocess.PIPE, text=True, check=False)
    if sources.returncode != 0:
        return 1
    failures = 0
    for name in sources.stdout.split():
        path, lines = Path(project) / name, []
        text = path.read_text()
        joined = without_braces(text, lines)
        if fix and lines:
            path.write_text(joined)
        elif lines:
            failures += len(lines)
            print(*(f"{name}:{line}: the body fits on this line, without braces" for line in lines), sep="\n")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
