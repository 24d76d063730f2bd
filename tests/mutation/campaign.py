"""Breaks the plug-in on purpose, in one place at a time, and asks the unit tests: campaign.py BUILD [OPTIONS]

Each mutant is compiled by itself, linked in the place of the original object and run by the unit tests. A mutant that
no test notices survives. Those that behave as the original does are listed in equivalent.txt, with the reason.
"""
import argparse
import json
import os
import random
import re
import resource
import shlex
import shutil
import subprocess
import sys
import tempfile
import threading
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from operators import mutants

ROOT = Path(__file__).resolve().parents[2]
FOLDERS = ("debug", "javascript", "videobroadcast", "plugin")
# The last one takes its time: it is asked about what the others let pass.
PROGRAMS = ("unit_debug", "unit_javascript", "unit_plugin", "unit_videobroadcast", "unit_endurance")
SLOW = PROGRAMS[-1]
SECONDS, SLOW_SECONDS = 120, 600
MEMORY = 8 << 30


def run(command, **options):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace",
                          **options)


class Build:
    """How the build compiles each of the plug-in's files and links each program."""

    def __init__(self, folder):
        self.folder = Path(folder).resolve()
        database = json.loads(subprocess.check_output(["ninja", "-C", str(self.folder), "-t", "compdb"]))
        self.compiles, self.users = {}, {}
        for entry in database:
            source = Path(self.folder, entry["file"]).resolve()
            if source.suffix == ".cpp" and entry["output"].endswith(".o") and ROOT in source.parents:
                self.compiles.setdefault(str(source.relative_to(ROOT)), []).append((entry["command"], entry["output"]))
        self.links = {program: self.link_command(program) for program in PROGRAMS}
        self.sanitized = "-fsanitize=" in self.links[PROGRAMS[0]]

    def link_command(self, program):
        commands = subprocess.check_output(["ninja", "-C", str(self.folder), "-t", "commands", program], text=True)
        line = next(line for line in reversed(commands.splitlines()) if f"-o tests/unit/{program} " in line)
        return next(part for part in line.split(" && ") if f"-o tests/unit/{program} " in part)

    def objects(self, path):
        """What a mutant of this file changes in the unit tests' programs: (source, command, object). The tests of the
        videobroadcast folder are too many to be compiled for each change of a header: they keep the original."""
        if path.endswith(".cpp"):
            return [(path, *self.compiles[path][0])]
        if path not in self.users:
            folder = path.split("/")[0]
            folders = FOLDERS if folder == "videobroadcast" else (*FOLDERS, f"tests/unit/{folder}")
            self.users[path] = [(source, command, output) for source, entries in self.compiles.items()
                                if source.startswith(tuple(f"{folder}/" for folder in folders))
                                for command, output in entries
                                if any(output in link for link in self.links.values()) and self.includes(output, path)]
        return self.users[path]

    def includes(self, output, header):
        return str(ROOT / header) in run(["ninja", "-C", str(self.folder), "-t", "deps", output]).stdout


def compiled(build, mutant, source, work):
    """The mutated objects in the place of the original ones; None when the mutant is no valid program."""
    overlay = work / "source"
    target = overlay / mutant.path
    target.parent.mkdir(parents=True)
    target.write_text(mutant.apply(source))
    replaced = {}
    for user, command, output in build.objects(mutant.path):
        file = target if user == mutant.path else ROOT / user
        product = work / f"{len(replaced)}.o"
        arguments = [argument for argument in shlex.split(command)
                     if argument not in ("-O2", "-g", "-Werror", "-Winvalid-pch") and not argument.startswith("-W")]
        arguments = arguments[:1] + [f"-I{overlay}"] + strip_outputs(arguments[1:]) + \
            ["-O0", "-w", "-o", str(product), "-c", str(file)]
        if run(arguments, cwd=build.folder).returncode:
            return None
        replaced[output] = str(product)
    return replaced


def strip_outputs(arguments):
    kept, skip = [], False
    for argument in arguments:
        if skip:
            skip = False
        elif argument in ("-o", "-c", "-MF", "-MT", "-include"):  # a precompiled header holds the originals
            skip = True
        elif argument != "-MD":
            kept.append(argument)
    return kept


def limit(program, sanitized):
    """For a test program; a sanitizer makes it ten times as slow and needs all addresses for itself."""
    seconds = (60 if program == SLOW else 10) * (10 if sanitized else 1)
    resource.setrlimit(resource.RLIMIT_CPU, (seconds, seconds))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    if not sanitized:
        resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))


def verdict(build, mutant, source):
    """("invalid", ""), ("survived", "") or ("killed", by what)."""
    work = Path(tempfile.mkdtemp(prefix="mutant-"))
    try:
        replaced = compiled(build, mutant, source, work)
        if replaced is None:
            return "invalid", ""
        own = f"unit_{mutant.path.split('/')[0]}"
        for program in sorted(PROGRAMS, key=lambda name: name != own):
            killer = kills(build, program, replaced, work)
            if killer:
                return "killed", killer
        return "survived", ""
    finally:
        shutil.rmtree(work)


def kills(build, program, replaced, work):
    link = build.links[program]
    if not any(output in link for output in replaced):
        return None
    arguments = [replaced.get(argument, argument) for argument in shlex.split(link)]
    arguments[arguments.index("-o") + 1] = str(work / program)
    linked = run([argument for argument in arguments if argument != ":"] + ["-fuse-ld=gold", "-Wl,-S"],
                 cwd=build.folder)
    if linked.returncode:
        return "the linker"
    try:
        tests = run([str(work / program), "--gtest_brief=1", "--gtest_fail_fast"], cwd=work,
                    timeout=SLOW_SECONDS if program == SLOW else SECONDS,
                    preexec_fn=lambda: limit(program, build.sanitized))
    except subprocess.TimeoutExpired:
        return "a test that never ends"
    if tests.returncode == 0:
        return None
    failed = re.findall(r"^\[  FAILED  \] ([\w./]+)", tests.stdout, re.MULTILINE)
    return failed[0] if failed else f"the end of {program} (status {tests.returncode})"


def equivalents():
    """What cannot be noticed: a regular expression a line for 'file: was  =>  now', with the reason before them."""
    lines = (Path(__file__).parent / "equivalent.txt").read_text().splitlines()
    return [re.compile(line) for line in lines if line and not line.startswith("#")]


def is_equivalent(mutant, known):
    return any(pattern.fullmatch(f"{mutant.path}: {mutant.what}") for pattern in known)


def judged(results, verdicts=frozenset({"invalid", "killed", "equivalent", "survived"})):
    with open(results) as lines:
        return {(entry["path"], entry["what"]) for entry in map(json.loads, lines) if entry["verdict"] in verdicts}


def chosen(options):
    every = []
    # Headers last: a mutant of one takes as long as forty of a source.
    for path in [path for ending in ("*.cpp", "*.h") for folder in FOLDERS
                 for path in sorted((ROOT / folder).rglob(ending))]:
        name = str(path.relative_to(ROOT))
        if not options.files or any(part in name for part in options.files):
            source = path.read_text()
            every += [(mutant, source) for mutant in mutants(name, source)]
    if options.again:
        survivors, known = judged(options.again, {"survived"}), equivalents()
        every = [(mutant, source) for mutant, source in every
                 if (mutant.path, mutant.what) in survivors and not is_equivalent(mutant, known)]
    if options.results and os.path.exists(options.results):
        done = judged(options.results)
        every = [(mutant, source) for mutant, source in every if (mutant.path, mutant.what) not in done]
    if options.sample:
        code = "".join(sorted({source for _, source in every}))
        random.Random(code).shuffle(every)
        known = equivalents()
        every = [pair for pair in every if pair[0].path.endswith(".cpp")
                 and not is_equivalent(pair[0], known)][:options.sample]
    return every


def arguments():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("build", help="the folder of a build whose unit tests pass")
    parser.add_argument("--sample", type=int, metavar="N", help="only N mutants, chosen by what the code is")
    parser.add_argument("--files", nargs="*", metavar="PART", help="only files with this in their name")
    parser.add_argument("--again", metavar="RESULTS", help="only those that survived in an earlier run")
    parser.add_argument("--results", metavar="FILE",
                        help="write a line of JSON for each mutant, and go on where that file ends")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), metavar="N")
    return parser.parse_args()


def main():
    options = arguments()
    build = Build(options.build)
    todo = chosen(options)
    known = equivalents()
    counts = {"invalid": 0, "killed": 0, "equivalent": 0, "survived": 0}
    results = open(options.results, "a") if options.results else None
    lock = threading.Lock()

    def judge(pair):
        mutant, source = pair
        result, by = verdict(build, mutant, source)
        if result == "survived" and is_equivalent(mutant, known):
            result = "equivalent"
        with lock:
            counts[result] += 1
            if results:
                print(json.dumps({"path": mutant.path, "line": mutant.line, "what": mutant.what, "verdict": result,
                                  "by": by}), file=results, flush=True)
            if result == "survived":
                print(f"SURVIVED {mutant.path}:{mutant.line}: {mutant.what}", flush=True)

    with ThreadPoolExecutor(options.jobs) as pool:
        list(pool.map(judge, todo))
    total = sum(counts.values()) - counts["invalid"]
    print(f"{total} mutants: {counts['killed']} killed, {counts['equivalent']} equivalent, {counts['survived']} "
          f"survived; {counts['invalid']} changes were no valid program")
    return 1 if counts["survived"] or not total else 0


if __name__ == "__main__":
    sys.exit(main())
