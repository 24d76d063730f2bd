"""Runs the TV browser on damaged streams: run.py TV-BROWSER RECORDING SECONDS [DAMAGE...] [--seeds N]

It must not crash, not hang, not grow, and say what it must. Without a name all kinds of damage are tried.
"""
import argparse
import os
import random
import re
import subprocess
import sys
import tempfile
import time

import damage
from sections import cut

PATIENCE = 40  # seconds beyond the run's own, for a machine with other work
LARGEST = 450  # MiB of memory; undamaged it takes some 200
LARGEST_GROWTH = 40  # MiB in the second half of the run, and per minute where that is longer


def memory_of(pid):
    """MiB; None once the process has ended."""
    try:
        with open(f"/proc/{pid}/status") as status:
            found = re.search(r"VmRSS:\s*(\d+)", status.read())
    except (FileNotFoundError, ProcessLookupError):
        return None
    return int(found.group(1)) / 1024 if found else None


def watch(process, seconds):
    """What memory the process took, second by second. It is killed when it does not end."""
    taken, end = [], time.monotonic() + seconds + PATIENCE
    while process.poll() is None:
        if time.monotonic() > end:
            process.kill()
            process.wait()
            return taken, True
        taken.append(memory_of(process.pid))
        time.sleep(0.2)
    return [amount for amount in taken if amount], False


def complaint_about(kind, output, status, taken, hangs, seconds):
    if hangs:
        return "it hangs"
    if status not in (0, 1):
        return f"it ended with status {status}"
    if kind.starts is not None and kind.starts != (status == 0):
        return f"it ended with status {status}"
    if kind.says not in output and (seconds >= 5 or kind.says != damage.NO_PICTURE):
        return f'it does not say "{kind.says}"'
    if status == 1 and not re.search(r"[^\n]{20,}[.:][^\n]*\n\Z", output):
        return "it does not say why it ends"
    if max(taken, default=0) > LARGEST:
        return f"it took {max(taken):.0f} MiB"
    growth = max(taken[len(taken) // 2:], default=0) - max(taken[:len(taken) // 2], default=0)
    if growth > LARGEST_GROWTH * max(1, seconds / 120) and seconds >= 20:
        return f"it grew by {growth:.0f} MiB in the second half"
    return None


def run(browser, stream, seconds):
    with tempfile.TemporaryFile("w+", errors="replace") as output, tempfile.TemporaryDirectory() as home:
        process = subprocess.Popen(
            [browser, "--no-sound", "--remote", "none", "--seconds", str(seconds), "--stream", stream],
            stdout=output, stderr=subprocess.STDOUT, stdin=subprocess.DEVNULL,
            env=dict(os.environ, XDG_RUNTIME_DIR=home))
        taken, hangs = watch(process, seconds)
        output.seek(0)
        return output.read(), process.returncode, taken, hangs


def attempt(arguments, name, seed, folder):
    kind = damage.ALL[name]
    stream = kind.make(cut(arguments.packets), random.Random(f"{name} {seed}"))
    path = os.path.join(folder, f"{name}-{seed}.ts")
    if stream is None:
        path = folder
    else:
        with open(path, "wb") as file:
            file.write(stream)
    output, status, taken, hangs = run(arguments.browser, path, arguments.seconds)
    complaint = complaint_about(kind, output, status, taken, hangs, arguments.seconds)
    presented = "presented" if damage.PRESENTED in output else "not presented" if status == 0 else "refused"
    print(f"{name} {seed}: {complaint or 'well'} ({presented}, at most {max(taken, default=0):.0f} MiB)", flush=True)
    if complaint or arguments.verbose:
        print("    " + output.replace("\n", "\n    "), flush=True)
    if stream is not None and not (complaint and arguments.keep):
        os.unlink(path)
    return complaint is None


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("browser")
    parser.add_argument("recording")
    parser.add_argument("seconds", type=int)
    parser.add_argument("damage", nargs="*")
    parser.add_argument("--seeds", type=int, default=1, help="so many streams of each kind")
    parser.add_argument("--keep", metavar="FOLDER", help="where streams stay that did harm")
    parser.add_argument("--verbose", action="store_true", help="print what the TV browser says")
    arguments = parser.parse_args()
    for name in arguments.damage:
        if name not in damage.ALL:
            parser.error(f'there is no damage "{name}", only {", ".join(damage.ALL)}')
    with open(arguments.recording, "rb") as file:
        arguments.packets = file.read()
    with tempfile.TemporaryDirectory() as temporary:
        folder = arguments.keep or temporary
        results = [attempt(arguments, name, seed, folder)
                   for name in arguments.damage or damage.ALL for seed in range(arguments.seeds)]
    print(f"{results.count(True)} streams did no harm, {results.count(False)} did.")
    return 1 if False in results else 0


sys.exit(main())
