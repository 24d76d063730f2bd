"""Every header compiles on its own: headers.py ROOT COMPILER FLAG..."""
import os
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from report import finish
from sources import sources

FOLDERS = ("npapi", "platform", "debug", "javascript", "videobroadcast", "plugin")


def compile_alone(header):
    command = [*sys.argv[2:], "-Wall", "-Wextra", "-Wpedantic", "-Werror",
               "-fsyntax-only", "-x", "c++", "-include", str(header), os.devnull]
    return subprocess.run(command, stderr=subprocess.PIPE, text=True).stderr


root = Path(sys.argv[1])
headers = [header for folder in FOLDERS for header in sources(root, folder, {".h"})]
with ThreadPoolExecutor(os.cpu_count()) as pool:
    errors = pool.map(compile_alone, headers)
finish([f"{header.relative_to(root)} does not compile on its own:\n{error}"
        for header, error in zip(headers, errors) if error] or ([] if headers else ["no header was found"]))
