"""Small mistakes in C++ sources, one at a time: what each mutant of a text is.

Relies on the layout of clang-format: an operator of two operands stands between blanks, the angle
brackets of a template do not.
"""

import re

TOKEN = re.compile(
    r"""
    (?P<comment>//[^\n]*|/\*.*?\*/)
    |(?P<directive>^[ \t]*\#(?:\\\n|[^\n])*)
    |(?P<string>(?:u8|[uUL])?R"(?P<mark>[^()\\\s]{0,16})\(.*?\)(?P=mark)"
        |"(?:\\.|[^"\\\n])*"(?:_\w+)?)
    |(?P<character>'(?:\\.|[^'\\\n])*')
    |(?P<number>\.?\d(?:[eEpP][+-]|'?[\w.])*)
    |(?P<word>[A-Za-z_]\w*)
    |(?P<sign><<=|>>=|<=>|->\*|\.\.\.|<<|>>|<=|>=|==|!=|&&|\|\||\+\+|--|\+=|-=|\*=|/=|%=|&=|\|=|\^=
        |->|::|\.\*|.)
    """,
    re.DOTALL | re.VERBOSE | re.MULTILINE,
)

SWAPS = {
    "<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==",
    "+": "-", "-": "+", "*": "/", "/": "*", "%": "*",
    "&&": "||", "||": "&&", "&": "|", "|": "&", "^": "|", "<<": ">>", ">>": "<<",
    "+=": "-=", "-=": "+=", "*=": "+=", "/=": "*=", "&=": "|=", "|=": "&=", "^=": "|=",
    "<<=": ">>=", ">>=": "<<=",
}
OPENING = {"(": ")", "[": "]", "{": "}"}
CLOSING = set(OPENING.values())
NO_STATEMENT = re.compile(
    r"(const|constexpr|consteval|auto|static|using|template|struct|class|enum|union|inline"
    r"|namespace|typename|friend|public|private|case|default|if|for|while|do|else|switch|try|catch"
    r"|static_assert)\b"
)
DECLARATION = re.compile(r"[\w:]+(<.*>)?[&*]*\s+[&*]*\w+\s*([=;{(\[]|$)", re.DOTALL)


class Token:
    def __init__(self, match):
        self.kind = match.lastgroup if match.lastgroup != "mark" else "string"
        self.text = match[0]
        self.begin, self.end = match.span()


class Mutant:
    """`text` with the characters from `begin` to `end` replaced."""

    def __init__(self, text, begin, end, replacement):
        self.text = text[:begin] + replacement + text[end:]
        self.line = text.count("\n", 0, begin) + 1
        first = text.rfind("\n", 0, begin) + 1
        last = text.find("\n", end)
        last = len(text) if last < 0 else last
        self.before = compact(text[first:last])
        self.after = compact(text[first:begin] + replacement + text[end:last])


def compact(text):
    return " ".join(text.split())


def tokens_of(text):
    found = []
    for match in TOKEN.finditer(text):
        token = Token(match)
        if token.kind in ("comment", "directive") or token.text.isspace():
            continue
        found.append(token)
    return found


def end_of_bracket(tokens, start):
    """The place of the bracket that closes the one at `start`."""
    depth = 0
    for i in range(start, len(tokens)):
        if tokens[i].kind == "sign":
            if tokens[i].text in OPENING:
                depth += 1
            elif tokens[i].text in CLOSING:
                depth -= 1
                if depth == 0:
                    return i
    return len(tokens) - 1


def without_assertions(tokens):
    """What only the compiler looks at is no behaviour."""
    kept = []
    i = 0
    while i < len(tokens):
        if tokens[i].text == "static_assert":
            i = end_of_bracket(tokens, i + 1) + 2  # and the semicolon
            continue
        kept.append(tokens[i])
        i += 1
    return kept


def next_number(text):
    """The number after this one, or None for a text that is not understood."""
    match = re.fullmatch(r"(0[xX])?([0-9a-fA-F']+)([uUlLzZ]*)", text)
    if match and (match[1] or not re.search(r"[a-fA-F]", match[2])):
        value = int(match[2].replace("'", ""), 16 if match[1] else 10) + 1
        return (f"0x{value:X}" if match[1] else str(value)) + match[3]
    match = re.fullmatch(r"([0-9.']+)([fFlL]?)", text)
    if match:
        return str(float(match[1].replace("'", "")) + 1) + match[2]
    return None


def next_character(text):
    inner = text[1:-1]
    if len(inner) == 1 and inner not in "[&z":
        return "'" + chr(ord(inner) + 1) + "'"
    return "'x'"


def swapped_operators(text, tokens):
    for token in tokens:
        spaced = text[token.begin - 1].isspace() and text[token.end : token.end + 1].isspace()
        if token.kind == "sign" and spaced and token.text in SWAPS:
            yield token.begin, token.end, SWAPS[token.text]
        elif token.kind == "sign" and token.text in ("++", "--"):
            yield token.begin, token.end, "--" if token.text == "++" else "++"
        elif token.kind == "sign" and token.text == "!":
            yield token.begin, token.end, ""
        elif token.kind == "sign" and token.text == "?" and spaced:
            yield token.begin, token.end, "== false ?"


def changed_constants(tokens):
    for token in tokens:
        changed = None
        if token.kind == "number":
            changed = next_number(token.text)
        elif token.kind == "character":
            changed = next_character(token.text)
        elif token.text in ("true", "false"):
            changed = "false" if token.text == "true" else "true"
        if changed is not None:
            yield token.begin, token.end, changed


def negated_conditions(text, tokens):
    for i, token in enumerate(tokens):
        if token.text not in ("if", "while") or i + 2 >= len(tokens):
            continue
        opening = i + 2 if tokens[i + 1].text == "constexpr" else i + 1
        closing = end_of_bracket(tokens, opening)
        begin = tokens[opening].end
        depth = 0
        for inner in tokens[opening + 1 : closing]:  # behind a declaration that comes first
            if inner.text in OPENING:
                depth += 1
            elif inner.text in CLOSING:
                depth -= 1
            elif inner.text == ";" and depth == 0:
                begin = inner.end
        end = tokens[closing].begin
        condition = text[begin:end].strip()
        # One sign alone is negated by swapping it.
        if "&&" in condition or "||" in condition or not re.search(r"[=!]= |^!", condition):
            yield begin, end, f"!({condition})"


def statement_end(tokens, start):
    """The place of the semicolon that ends a statement, or None when it is none."""
    depth = 0
    for i in range(start, len(tokens)):
        sign = tokens[i].text if tokens[i].kind == "sign" else ""
        if sign in OPENING:
            depth += 1
        elif sign in CLOSING:
            depth -= 1
            if depth < 0:
                return None
        elif sign == ";" and depth == 0:
            return i
    return None


def statement_starts(tokens):
    for i, token in enumerate(tokens):
        if token.text in ("{", "}", ";", "else") and i + 1 < len(tokens):
            yield i + 1
        elif token.text in ("if", "for", "while") and i + 2 < len(tokens):
            opening = i + 2 if tokens[i + 1].text == "constexpr" else i + 1
            yield end_of_bracket(tokens, opening) + 1


def removed_statements(text, tokens):
    seen = set()
    for start in statement_starts(tokens):
        if start in seen or start >= len(tokens) or tokens[start].text in OPENING:
            continue
        seen.add(start)
        end = statement_end(tokens, start)
        if end is None or end == start:
            continue
        begin, finish = tokens[start].begin, tokens[end].begin
        statement = text[begin:finish]
        first = tokens[start].text
        if first == "return" and end > start + 1:
            yield begin, finish, "return {}"
        elif first in ("return", "continue", "break"):
            yield begin, finish, ""
        elif not NO_STATEMENT.match(statement) and not DECLARATION.match(statement):
            yield begin, finish, ""


def mutants_of(text):
    tokens = without_assertions(tokens_of(text))
    edits = [
        *swapped_operators(text, tokens),
        *changed_constants(tokens),
        *negated_conditions(text, tokens),
        *removed_statements(text, tokens),
    ]
    return [Mutant(text, *edit) for edit in sorted(set(edits))]
