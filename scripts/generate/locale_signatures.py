"""What the letters of a language need of a font, in the bits of the OpenType OS/2 table (ulUnicodeRange,
ulCodePageRange), and their texts in the letters of a code page; used by locales.py."""
import unicodedata

# Bit of ulUnicodeRange: its blocks. Those that no locale needs are left out.
RANGES = {
    0: [(0x0000, 0x007F)], 1: [(0x0080, 0x00FF)], 2: [(0x0100, 0x017F)], 3: [(0x0180, 0x024F)],
    4: [(0x0250, 0x02AF)], 5: [(0x02B0, 0x02FF)], 6: [(0x0300, 0x036F)],
    7: [(0x0370, 0x03FF)], 9: [(0x0400, 0x052F)], 10: [(0x0530, 0x058F)], 11: [(0x0590, 0x05FF)],
    13: [(0x0600, 0x06FF), (0x0750, 0x077F)], 15: [(0x0900, 0x097F)], 16: [(0x0980, 0x09FF)],
    17: [(0x0A00, 0x0A7F)], 18: [(0x0A80, 0x0AFF)], 19: [(0x0B00, 0x0B7F)], 20: [(0x0B80, 0x0BFF)],
    21: [(0x0C00, 0x0C7F)], 22: [(0x0C80, 0x0CFF)], 23: [(0x0D00, 0x0D7F)], 24: [(0x0E00, 0x0E7F)],
    26: [(0x10A0, 0x10FF), (0x2D00, 0x2D2F), (0x1C90, 0x1CBF)], 29: [(0x1E00, 0x1EFF)],
    31: [(0x2000, 0x206F)], 48: [(0x3000, 0x303F)], 49: [(0x3040, 0x309F)], 50: [(0x30A0, 0x30FF)],
    56: [(0xAC00, 0xD7AF)], 57: [(0x10000, 0x10FFFF)], 59: [(0x4E00, 0x9FFF), (0x3400, 0x4DBF)],
    71: [(0x0700, 0x074F)], 72: [(0x0780, 0x07BF)],
}

# Code page: its bit of ulCodePageRange, as ANSI page (the double-byte ones are OEM pages as well) and as
# OEM page.
ANSI_PAGES = {1252: 0, 1250: 1, 1251: 2, 1253: 3, 1254: 4, 1255: 5, 1256: 6, 1257: 7, 1258: 8, 874: 16,
              932: 17, 936: 18, 949: 19, 950: 20, 1361: 21}
OEM_PAGES = {1258: 47, 869: 48, 866: 49, 865: 50, 864: 51, 863: 52, 862: 53, 861: 54, 860: 55, 857: 56,
             855: 57, 852: 58, 775: 59, 737: 60, 720: 61, 850: 62, 437: 63}
# Bits of a locale's ulUnicodeRange that name no block: written from right to left; always set.
RIGHT_TO_LEFT, ALWAYS = 123, 127
CODECS = {949: "cp949", 950: "cp950", 936: "gbk", 932: "cp932", 1361: "johab", 874: "cp874"}


# What a code page may have for a letter that it lacks: apostrophes, cedillas for commas.
LIKE = {"\u02bb": "'", "\u02bc": "'", "\u02bf": "'", "ț": "ţ", "ș": "ş", "Ț": "Ţ", "Ș": "Ş"}


def fitted(text, page):
    """The text with such letters, and with an accent behind its letter, where the page needs it."""
    out = ""
    for c in text:
        if not writes(page, [ord(c)]):
            letter, *accents = unicodedata.normalize("NFD", c)
            forms = [unicodedata.normalize("NFC", letter + "".join(accents).replace(accent, "")) + accent
                     for accent in accents]
            c = next((form for form in [LIKE.get(c, c), *forms] if writes(page, map(ord, form))), c)
        out += c
    return out


def writes(page, points):
    text = "".join(map(chr, points))
    try:
        text.encode(CODECS.get(page, f"cp{page}"))
    except UnicodeEncodeError:
        return False
    return True


def signature(points, pages):
    """Eight 32-bit words: Unicode ranges (4), default code pages (2), all code pages (2)."""
    ansi, oem = map(int, pages)
    if ansi in ANSI_PAGES:  # what the page has for letters that it lacks is in the texts too
        points = sorted({*points, *map(ord, fitted("".join(map(chr, points)), ansi))})
    needed = {bit for bit, blocks in RANGES.items() for first, last in blocks
              if any(first <= point <= last for point in points)} | {0, 1, ALWAYS}
    assert all(any(first <= point <= last for blocks in RANGES.values() for first, last in blocks)
               for point in points), [hex(p) for p in points]
    if any(unicodedata.bidirectional(chr(point)) in ("R", "AL") for point in points):
        needed.add(RIGHT_TO_LEFT)
    default = {ANSI_PAGES.get(ansi), OEM_PAGES.get(oem, ANSI_PAGES.get(oem))} - {None}
    known = default | {bit for pages in (ANSI_PAGES, OEM_PAGES) for page, bit in pages.items()
                       if writes(page, points)}
    words = []
    for bits, count in ((needed, 4), (default, 2), (known, 2)):
        words += [sum(1 << bit % 32 for bit in bits if bit // 32 == word) for word in range(count)]
    return words
