"""Includes go one way between the folders: arrows.py ROOT"""
import re
import sys
from pathlib import Path

from report import finish
from sources import sources

PLUGIN = ("debug", "javascript", "videobroadcast", "plugin")
# Each folder, and the folders from which it may include.
ARROWS = {
    "npapi": (),
    "platform": (),
    "debug": ("npapi", "platform"),
    "javascript": ("npapi", "platform", "debug"),
    "videobroadcast": ("npapi", "platform", "debug", "javascript"),
    "plugin": ("npapi", "platform", "debug", "javascript", "videobroadcast"),
    "television": ("npapi", "platform"),
    "browser": ("npapi", "platform", "television"),
}
# What shows in no header of the platform and in nothing of the plug-in.
FOREIGN = re.compile(r"(gst/|glib|dvbpsi|Qt|Q[A-Z])")

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.MULTILINE)


def complaints_about(root, folder, path):
    for bracket, name in INCLUDE.findall(path.read_text()):
        where = f"{path.relative_to(root)} includes {name}"
        if bracket == "<":
            if folder in ("npapi", "platform") + PLUGIN and FOREIGN.match(name):
                yield f"{where}: no GStreamer and no Qt here"
        elif "/" not in name:
            yield f"{where}: write it from the root"
        elif name.split("/")[0] not in ARROWS[folder] + (folder,):
            yield f"{where}: {folder}/ may include only from {', '.join(ARROWS[folder] + (folder,))}"


root = Path(sys.argv[1])
finish([complaint for folder in ARROWS for path in sources(root, folder)
        for complaint in complaints_about(root, folder, path)])
