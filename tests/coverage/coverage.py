"""What of the plug-in's code the unit tests do not reach: coverage.py BUILD

Runs the unit tests of a build with --coverage and lists each line and each branch that none of them took. Those that
cannot be taken are listed in exceptions.txt, with the reason; the status is 0 if there are no others.
"""
import json
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
FOLDERS = ("debug", "javascript", "videobroadcast", "plugin")


def run_tests(build):
    for counts in build.rglob("*.gcda"):
        counts.unlink()
    for program in sorted((build / "tests/unit").glob("unit_*")):
        if program.is_file() and not program.suffix and "[" not in program.name:
            subprocess.run([str(program), "--gtest_brief=1"], check=True, stdout=subprocess.DEVNULL)


def report(build):
    found = build / "coverage.json"
    filters = [part for folder in FOLDERS for part in ("--filter", f"{ROOT}/{folder}/")]
    subprocess.run(["gcovr", "--root", str(ROOT), "--object-directory", str(build), *filters,
                    "--exclude-throw-branches", "--exclude-unreachable-branches", "--json", str(found), str(build)],
                   check=True)
    return json.loads(found.read_text())["files"]


def exceptions():
    """Texts of lines by file: 'file: text', after a line '# reason'."""
    listed = set()
    for line in (Path(__file__).parent / "exceptions.txt").read_text().splitlines():
        if line and not line.startswith("#"):
            path, text = line.split(": ", 1)
            listed.add((path, text))
    return listed


def gaps(entry, source):
    """(line, text, what is missing) for each line that is not wholly covered."""
    for line in entry["lines"]:
        text = source[line["line_number"] - 1].strip()
        missed = sum(1 for branch in line["branches"] if branch["count"] == 0)
        if line["count"] == 0:
            yield line["line_number"], text, "never reached"
        elif missed:
            yield line["line_number"], text, f"{missed} of {len(line['branches'])} branches never taken"


def main():
    build = Path(sys.argv[1]).resolve()
    run_tests(build)
    known, used, bad = exceptions(), set(), 0
    lines = covered = branches = taken = 0
    for entry in report(build):
        path = entry["file"]
        entry["lines"] = [line for line in entry["lines"] if not line.get("gcovr/noncode")]
        for line in entry["lines"]:
            lines, covered = lines + 1, covered + (line["count"] > 0)
            branches += len(line["branches"])
            taken += sum(1 for branch in line["branches"] if branch["count"])
        for number, text, what in gaps(entry, (ROOT / path).read_text().splitlines()):
            if (path, text) in known:
                used.add((path, text))
            else:
                bad += 1
                print(f"{path}:{number}: {what}: {text}")
    for path, text in sorted(known - used):
        bad += 1
        print(f"exceptions.txt: this is covered, or gone: {path}: {text}")
    print(f"{covered} of {lines} lines, {taken} of {branches} branches; {len(used)} lines are listed as exceptions")
    return 1 if bad or not lines else 0


if __name__ == "__main__":
    sys.exit(main())
