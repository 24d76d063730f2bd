"""The map in README.md names every folder at the top: map.py ROOT"""
import sys
from pathlib import Path

from report import finish

root = Path(sys.argv[1])
text = (root / "README.md").read_text()
folders = sorted(path.name for path in root.iterdir()
                 if path.is_dir() and not path.name.startswith((".", "build")) and any(path.iterdir()))
finish([f"README.md does not name {folder}/" for folder in folders if f"{folder}/" not in text])
