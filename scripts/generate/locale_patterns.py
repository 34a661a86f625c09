"""CLDR's patterns and sets of characters, turned into the platform's forms; used by locales.py."""
import re

SEPARATORS = {ord("’"): "'", ord("\u202f"): "\u00a0"}  # what the code pages have of them
MARKS = dict.fromkeys(map(ord, "\u200e\u200f\u061c\u200b"))


def tidy(text):
    """Without marks of direction, with the one no-break space that the code pages know."""
    return text.translate(MARKS).replace("\u202f", "\u00a0").strip()


def plain(text):
    """Tidy, with blanks for all kinds of spaces."""
    return tidy(text).replace("\u00a0", " ").replace("\u2009", " ")


def quoted(literal):
    """A literal of a picture, its letters between quotes (with all that stands between letters)."""
    letters = [i for i, c in enumerate(literal) if c.isalpha()]
    if not letters:
        return literal
    first, end = letters[0], letters[-1] + 1
    while end < len(literal) and not literal[end].isspace() and literal[end] not in ",،":
        end += 1  # marks, and the point of an abbreviation
    inner = literal[first:end].replace("'", "''")
    return literal[:first] + "'" + inner + "'" + literal[end:]


def fields(pattern):
    """A CLDR date pattern as [(letter, count)] and literals, quotes resolved."""
    parts, literal, i = [], "", 0
    while i < len(pattern):
        c = pattern[i]
        if c == "'":
            end = pattern.index("'", i + 1)
            literal += pattern[i + 1:end] or "'"
            i = end + 1
        elif c.isascii() and c.isalpha():
            run = re.match(f"{c}+", pattern[i:]).end()
            if literal:
                parts.append(literal)
            literal = ""
            parts.append((c, run))
            i += run
        else:
            literal += c
            i += 1
    return parts + ([literal] if literal else [])


def element(letter, count):
    if letter in "yru":
        return "yyyy"
    if letter in "ML":
        return "M" * min(count, 4)
    if letter == "d":
        return "d" * min(count, 2)
    if letter in "Ec":
        return "dddd" if count == 4 else "ddd"
    if letter in "hHms":
        return letter * min(count, 2)
    if letter in "KkjJ":
        return ("h" if letter == "K" else "H") * min(count, 2)
    if letter in "abB":
        return "tt"
    if letter == "G":
        return ""
    raise ValueError(f"no picture letter for {letter}")


def picture(pattern):
    out, last = "", ""
    for part in fields(plain(pattern)):
        piece = quoted(part) if isinstance(part, str) else element(*part)
        # Two elements without anything between them: the day period stands apart.
        if "tt" in (piece, last) and piece and last and not isinstance(part, str) and out[-1] != " ":
            out += " "
        out += piece
        last = piece
    return re.sub(" +", " ", out).strip(" ,")


def tokens(text):
    """A picture as a list of elements (runs of one letter) and literals, quotes resolved."""
    out, i = [], 0
    while i < len(text):
        if text[i] == "'":
            end = i + 1
            while text[end:end + 1] != "'" or text[end:end + 2] == "''":
                end += 2 if text[end:end + 2] == "''" else 1
            out.append("=" + text[i + 1:end].replace("''", "'"))
            i = end + 1
        elif text[i] in "dMyghHmst":
            run = re.match(f"{text[i]}+", text[i:]).group()
            out.append(run)
            i += len(run)
        else:
            out.append("=" + text[i])
            i += 1
    return out


def with_era(text):
    """A date picture with a year of an era in place of the four-digit year."""
    first = text.index("yyyy") < min(text.find("M") % 999, text.find("d") % 999)
    return text.replace("yyyy", "gg y" if first else "y gg")


def separator(text, before, after):
    """The literals between an element of the letters `before` and the next one of `after`."""
    found, between = False, ""
    for token in tokens(text):
        if token[0] == "=":
            between += token[1:] if found else ""
        elif found and token[0] in after:
            break
        else:
            found, between = token[0] in before, ""
    return between


def grouping(number_pattern):
    """"#,##0.###" gives "3;0", "#,##,##0.###" "3;2;0"."""
    groups = [len(g) for g in number_pattern.split(";")[0].split(".")[0].split(",")][1:]
    if not groups:
        return "3;0"
    first, rest = groups[-1], groups[:-1]
    return f"{first};{rest[-1]};0" if rest and rest[-1] != first else f"{first};0"


def currency_orders(pattern, symbol):
    """(positive order 0 to 3, negative order 0 to 15) of a CLDR currency pattern."""
    positive, _, negative = plain(pattern).partition(";")
    if not positive.startswith("¤"):
        return (3, 8) if " " in positive else (1, 5)
    spaced = " " in positive or symbol[-1].isalpha()  # CLDR sets letters apart from digits
    if negative.startswith("¤"):
        return 2 if spaced else 0, 12 if negative.startswith("¤ ") else 2
    return (2, 9) if spaced else (0, 1)


def signs(order, negative_order):
    """(positive sign's place, negative sign's place, symbol precedes, a space between: twice)."""
    places = (0, 3, 4, 2, 0, 1, 3, 4, 1, 3, 4, 2, 4, 3, 0, 0)
    precedes = negative_order in (0, 1, 2, 3, 9, 11, 12, 14)
    spaced = negative_order >= 8
    return (3 if order in (0, 2) else 1, places[negative_order], int(order in (0, 2)),
            int(order >= 2), int(precedes), int(spaced))


def exemplars(pattern):
    """The code points of a CLDR set such as [a-c {ch} \\u0301], in both cases."""
    # An accent that only a sequence of letters has (Dutch {\u00edj\u0301}) is not needed of a font.
    pattern = re.sub("{[^}]*}", lambda found: re.sub("[\u0300-\u036f]", "", found[0]), pattern)
    items, i, text = [], 1, pattern
    while i < len(text) - 1:
        c = text[i]
        if c == "\\" and text[i + 1] == "u":
            items.append(chr(int(text[i + 2:i + 6], 16)))
            i += 6
            continue
        if c == "\\":
            items.append(text[i + 1])
            i += 2
            continue
        if c == "-" and items and items[-1] is not None and text[i + 1] not in " ]":
            items.append(None)  # a range: the next item ends it
        elif c not in " {}":
            items.append(c)
        i += 1
    points = set()
    for at, item in enumerate(items):
        if item is None:
            points.update(range(ord(items[at - 1]), ord(items[at + 1]) + 1))
        else:
            points.add(ord(item))
    cases = {c for p in points for c in (chr(p), chr(p).upper(), chr(p).lower()) if len(c) == 1}
    return sorted(map(ord, cases))
