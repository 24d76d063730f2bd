"""The entries of a library's dynamic section."""
import re
import subprocess


def dynamic(library, tag):
    text = subprocess.check_output(["readelf", "--dynamic", "--wide", library], text=True)
    return re.findall(rf"\({tag}\).*\[(.*)\]", text)
