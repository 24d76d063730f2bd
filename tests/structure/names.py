"""Names carry their prefixes, as .clang-tidy says: names.py ROOT FLAG..."""
import os
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from report import finish
from sources import sources

FOLDERS = ("debug", "javascript", "videobroadcast", "plugin")


def tidy(path):
    command = ["clang-tidy", "--quiet", "--warnings-as-errors=*", str(path), "--", *sys.argv[2:]]
    run = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    return run.stdout if run.returncode else ""


root = Path(sys.argv[1])
files = [path for folder in FOLDERS for path in sources(root, folder, {".cpp"})]
with ThreadPoolExecutor(os.cpu_count()) as pool:
    finish([complaint for complaint in pool.map(tidy, files) if complaint]
           or ([] if files else ["no source file was found"]))
