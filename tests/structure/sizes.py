"""No function is longer than 60 lines and no file longer than 500: sizes.py ROOT"""
import re
import sys
from pathlib import Path

from report import finish
from sources import CPP, sources, without_comments_and_strings

FOLDERS = ("npapi", "platform", "debug", "javascript", "videobroadcast", "plugin", "television", "browser", "tests",
           "benchmarks", "examples", "tools")
FUNCTION_LINES = 60
FILE_LINES = 500


def opens_function(head):
    """Whether a brace after `head` opens a function: a parameter list, and neither a type nor a value in braces."""
    while (bare := re.sub(r"\([^()]*\)|<[^<>;]*>", " @ ", head)) != head:
        head = bare
    head = re.sub(r"\boperator\s*[^\s\w]+", "operator ", head)
    return "@" in head and not re.search(r"\b(namespace|class|struct|union|enum)\b|=", head)


def plain(text):
    """Without comments, strings, directives and values like m_size{0}; the line ends stay."""
    text = re.sub(r"^[ \t]*#.*", "", without_comments_and_strings(text), flags=re.MULTILINE)
    return re.sub(r"(?<=[\w>])\{[^{};]*\}", lambda match: "()" + "\n" * match.group().count("\n"), text)


def functions(text):
    """The outermost functions, as pairs of first and last line. A table in braces is none."""
    depth_of_function = start = None
    depth, head, line, head_line = 0, "", 1, None
    for character in text:
        if character == "\n":
            line += 1
        if character == "{":
            if depth_of_function is None and opens_function(head):
                depth_of_function, start = depth, head_line
            depth += 1
        elif character == "}":
            depth -= 1
            if depth == depth_of_function:
                yield start, line
                depth_of_function = None
        if character in "{};":
            head, head_line = "", None
        else:
            if head_line is None and not character.isspace():
                head_line = line
            head += character


def complaints_about(root, path):
    text, name = path.read_text(), path.relative_to(root)
    lines = text.count("\n")
    if lines > FILE_LINES:
        yield f"{name} has {lines} lines, {FILE_LINES} is the limit"
    if path.suffix in CPP:
        for first, last in functions(plain(text)):
            if last - first + 1 > FUNCTION_LINES:
                yield f"{name}:{first}: a function of {last - first + 1} lines, {FUNCTION_LINES} is the limit"


root = Path(sys.argv[1])
files = [path for folder in FOLDERS for path in sources(root, folder, CPP | {".js", ".py", ".sh"})]
finish([complaint for path in files for complaint in complaints_about(root, path)]
       or ([] if files else ["no source file was found"]))
