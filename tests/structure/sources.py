"""The source files of a folder, and their text without comments."""
import re
from pathlib import Path

CPP = {".h", ".cpp"}


def sources(root, folder, suffixes=CPP):
    return sorted(path for path in (Path(root) / folder).rglob("*") if path.suffix in suffixes and path.is_file())


_NOISE = re.compile(r"""//[^\n]*|/\*.*?\*/|R"(\w*)\(.*?\)\1"|"(?:\\.|[^"\\\n])*"|'(?:\\.[^'\n]{0,7}|[^'\\\n])'""", re.DOTALL)


def without_comments_and_strings(text):
    """Keeps the line ends, so that line numbers stay."""
    return _NOISE.sub(lambda match: '""' + "\n" * match.group().count("\n"), text)
