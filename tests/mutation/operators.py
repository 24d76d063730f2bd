"""The mutants of a C++ source file: small changes, each of which a test should notice."""
import re
from dataclasses import dataclass

TOKEN = re.compile(r"""
    (?P<comment>//[^\n]*|/\*.*?\*/)
  | (?P<directive>^[ \t]*\#(?:[^\n\\]|\\.|\\\n)*)
  | (?P<raw>R"(?P<mark>[^(\s]*)\(.*?\)(?P=mark)")
  | (?P<string>"(?:[^"\\\n]|\\.)*")
  | (?P<character>'(?:[^'\\\n]|\\.)+')
  | (?P<number>\.?\d(?:[\w.]|'\d|[eEpP][+-])*)
  | (?P<word>[A-Za-z_]\w*)
  | (?P<operator><<=|>>=|->\*|\.\.\.|<=>|::|->|\+\+|--|<<|>>|<=|>=|==|!=|&&|\|\||[-+*/%&|^]=|[^\s\w])
""", re.VERBOSE | re.DOTALL | re.MULTILINE)

# Only with blanks on both sides: elsewhere they belong to templates, references and signs.
BINARY = {"==": "!=", "!=": "==", "<": "<=", "<=": "<", ">": ">=", ">=": ">", "&&": "||", "||": "&&", "+": "-",
          "-": "+", "|": "&", "&": "|"}
ANYWHERE = {"++": "--", "--": "++", "!": ""}
WORDS = {"true": "false", "false": "true"}
NO_STATEMENT = {"using", "namespace", "template", "class", "struct", "enum", "static_assert", "public", "private",
                "protected", "friend", "typedef", "case", "default", "extern", "if", "for", "while", "switch", "do",
                "else", "try", "catch", "return"}


@dataclass(frozen=True)
class Mutant:
    path: str
    line: int
    begin: int
    end: int
    text: str  # takes the place of what stands from begin to end
    what: str

    def apply(self, source):
        return source[:self.begin] + self.text + source[self.end:]


@dataclass(frozen=True)
class Token:
    kind: str
    text: str
    begin: int
    end: int


def tokens(source):
    found = []
    for match in TOKEN.finditer(source):
        if match.lastgroup == "mark" or match["raw"]:
            found.append(Token("raw", match[0], match.start(), match.end()))
        elif match.lastgroup not in ("comment", "directive"):
            found.append(Token(match.lastgroup, match[0], match.start(), match.end()))
    return found


def small_changes(source, all_tokens):
    for index, token in enumerate(all_tokens):
        before = all_tokens[index - 1] if index else None
        spaced = source[token.begin - 1:token.begin].isspace() and source[token.end:token.end + 1].isspace()
        if token.kind == "operator" and spaced and token.text in BINARY:
            yield token.begin, token.end, BINARY[token.text]
        elif token.kind == "operator" and token.text in ANYWHERE:
            yield token.begin, token.end, ANYWHERE[token.text]
        elif token.kind == "word" and token.text in WORDS:
            yield token.begin, token.end, WORDS[token.text]
        elif token.kind == "number" and re.fullmatch(r"\d+", token.text):
            yield token.begin, token.end, str(int(token.text) + 1)
        elif token.kind == "number" and re.fullmatch(r"0[xX][0-9a-fA-F]+", token.text):
            yield token.begin, token.end, hex(int(token.text, 16) + 1)
        elif token.kind == "string" and not (before and before.text == "extern"):
            yield token.end - 1, token.end - 1, "~"


def closing(all_tokens, index):
    """The index of the bracket that closes the one at index."""
    depth = 0
    for at in range(index, len(all_tokens)):
        depth += all_tokens[at].text in ("(", "[", "{")
        depth -= all_tokens[at].text in (")", "]", "}")
        if depth == 0:
            return at
    return len(all_tokens) - 1


def conditions(source, all_tokens):
    """Each condition turned round, but for those that other changes turn round."""
    for index, token in enumerate(all_tokens[:-1]):
        if token.text not in ("if", "while") or all_tokens[index + 1].text != "(":
            continue
        begin, end = all_tokens[index + 1].end, all_tokens[closing(all_tokens, index + 1)].begin
        condition = source[begin:end]
        if not re.search(r";|==|!=|&&|\|\|| [<>]=? |^!", condition):
            yield begin, end, f"!({condition})"


def statements(all_tokens):
    """The spans of the simple statements, and whether one begins where the one before it ends."""
    starts_after = {";", "{", "}", "else", "do"}
    headers = {closing(all_tokens, i + 1) for i, token in enumerate(all_tokens[:-1])
               if token.text in ("if", "for", "while", "switch") and all_tokens[i + 1].text == "("}
    index = 1
    while index < len(all_tokens):
        first, before = all_tokens[index], all_tokens[index - 1]
        if not (before.text in starts_after or index - 1 in headers) or first.text in NO_STATEMENT | {"{", "}", ";"}:
            index += 1
            continue
        at = index
        while at < len(all_tokens) and all_tokens[at].text not in (";", "{", "}"):
            at = closing(all_tokens, at) + 1 if all_tokens[at].text in ("(", "[") else at + 1
        if at < len(all_tokens) and all_tokens[at].text == "{" and all_tokens[at - 1].kind == "word":
            at = closing(all_tokens, at) + 1  # an initialiser
        if at < len(all_tokens) and all_tokens[at].text == ";":
            yield index, at, before.text == ";"
            index = at
        index += 1


def is_call(all_tokens, first, last):
    words = [all_tokens[i] for i in range(first, last)]
    name = next((i for i, token in enumerate(words) if token.text == "("), None)
    if not name or words[-1].text != ")":
        return False
    adjacent = any(a.kind == b.kind == "word" for a, b in zip(words[:name], words[1:name]))
    return not adjacent and not any(token.text == "=" for token in words[:name])


def dropped(all_tokens):
    for first, last, _ in statements(all_tokens):
        yield all_tokens[first].begin, all_tokens[last].end, ";"


def swapped(source, all_tokens):
    before = None
    for first, last, adjoins in statements(all_tokens):
        call = is_call(all_tokens, first, last)
        here = (all_tokens[first].begin, all_tokens[last].end)
        if call and before and adjoins:
            between = source[before[1]:here[0]]
            yield before[0], here[1], source[here[0]:here[1]] + between + source[before[0]:before[1]]
        before = here if call else None


def mutants(path, source):
    all_tokens = tokens(source)
    changes = [*small_changes(source, all_tokens), *conditions(source, all_tokens)]
    if path.endswith(".cpp"):  # what could be dropped from a header is mostly declarations
        changes += [*dropped(all_tokens), *swapped(source, all_tokens)]
    for begin, end, text in sorted(set(changes)):
        line_begin, line_end = source.rfind("\n", 0, begin) + 1, source.find("\n", end)
        was = " ".join(source[line_begin:line_end].split())
        now = " ".join((source[line_begin:begin] + text + source[end:line_end]).split())
        yield Mutant(path, source.count("\n", 0, begin) + 1, begin, end, text, f"{was}  =>  {now}")
