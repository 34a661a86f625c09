#!/usr/bin/env python3
"""Makes the code-page tables in Foundation/Platform/CodePages/Tables.

    codepages.py DATA            writes the tables from the folder DATA
    codepages.py --check DATA    compares the committed tables with what would be written
    codepages.py --sums DATA     prints the rows of kWholePages in tests/Platform/CodePageTablesTest.cpp

DATA holds cpinfo.tsv, leadbytes.tsv, sb/cpN.tsv, db/cpN.tsv and gb18030.tsv: the strict mappings of
the Windows code pages (no best fit), facts that agree in the code-page files published for Windows
and in the tables that the ICU archive recorded from running systems (edition 2015). Rows are
(code, unit, flag), hexadecimal; flag "d" marks a row for decoding only. Python 3.9, standard
library only; the output depends on nothing but the input.

How the tables are laid out (CodePageTables.h has the declarations):

decoding   256 units per page for single bytes; a double-byte page also has one row of cells per
           lead byte, one cell per trail byte of the page's range and one more, the default unit,
           for trail bytes outside it. A code without a row holds the page's default unit.
encoding   units in blocks of 64, found through an index of 1,024 block numbers; equal blocks are
           stored once, for double-byte pages even across pages. A missing unit has the code 0 in
           single-byte pages (only U+0000 really has it) and 0xFFFF in double-byte pages.
GB18030    (54936) has the cells of page 936, and kGbPatches for the pairs that differ: all of them
           are private-use units there. kGbRuns names the runs of units that have four bytes.

Before anything is written, every code and every unit of every page is looked up in the finished
arrays, the way the library does it, and compared with the input.
"""
import argparse
import pathlib
import sys

BLOCK = 64
MISSING = 0xFFFF
TABLES = pathlib.Path(__file__).resolve().parents[2] / 'Foundation' / 'Platform' / 'CodePages' / 'Tables'

# The lead bytes that hold nearly all text of a page and whose rows are found by arithmetic: after
# an exclusive or with the first number they run from the second to the third without a gap.
FAST_LEADS = {
    932: (0x20, 0xA1, 0xDC), 10001: (0x20, 0xA1, 0xDC),
    936: (0, 0x81, 0xFE), 949: (0, 0x81, 0xFE), 950: (0, 0x81, 0xFE), 10002: (0, 0x81, 0xFC),
    1361: (0, 0x84, 0xD3), 10003: (0, 0xB0, 0xC8), 10008: (0, 0xB0, 0xF7),
    20932: (0, 0xA1, 0xFE), 20949: (0, 0xB0, 0xC8), 51932: (0, 0xA1, 0xFE),
}
GB18030 = 54936


def table_rows(path):
    """The rows of a tab-separated file below its heading."""
    lines = path.read_text(encoding='ascii').split('\n')
    return [line.split('\t') for line in lines[1:] if line]


class Page:
    """The mappings of one page: codes (lead * 256 + trail, or a byte) and units."""

    def __init__(self, number, info, leads, decode, encode):
        self.number = number
        self.max_char = int(info[2])
        self.default_unit = int(info[4], 16)
        self.lead_ranges = leads
        self.leads = [b for first, last in leads for b in range(first, last + 1)]
        self.decode = decode
        self.encode = encode
        self.default_code = encode[self.default_unit]

    @property
    def identity(self):
        """How much of the page is Latin-1, both ways: 0 unknown, 1 ASCII, 2 ASCII and A0 to FF."""
        def same(numbers):
            return all(self.decode.get(n) == n and self.encode.get(n) == n for n in numbers)
        if not same(range(0x80)):
            return 0
        return 2 if self.max_char == 1 and same(range(0xA0, 0x100)) else 1


def euc_jp(shift_jis):
    """Page 51932, the EUC form of JIS X 0201 and 0208 over the table of page 932."""
    decode = {b: b for b in range(0x81)}
    decode.update({0xA0: 0xF8F0, 0xFF: 0xF8F3})
    decode.update({0x8E00 + b: 0xFF61 + b - 0xA1 for b in range(0xA1, 0xE0)})
    for row in range(1, 95):
        for cell in range(1, 95):
            lead = 0x81 + (row - 1) // 2
            lead += 0x40 if lead > 0x9F else 0
            trail = cell + 0x9E if row % 2 == 0 else cell + 0x3F + (cell + 0x3F >= 0x7F)
            unit = shift_jis.get(lead * 256 + trail)
            if unit is not None:
                decode[(0xA0 + row) * 256 + 0xA0 + cell] = unit
    encode = {}
    for code in sorted(decode):
        encode.setdefault(decode[code], code)
    return decode, encode


def load(data):
    """All table pages of the folder, by number."""
    leads = {}
    for page, first, last in table_rows(data / 'leadbytes.tsv'):
        leads.setdefault(int(page), []).append((int(first, 16), int(last, 16)))
    mappings = {}
    infos = {int(info[0]): info for info in table_rows(data / 'cpinfo.tsv')}
    for number, info in infos.items():
        if not info[7].endswith('.tsv'):
            continue
        decode, encode = {}, {}
        for row in table_rows(data / info[7]):
            code, unit = int(row[0], 16), int(row[1], 16)
            decode[code] = unit
            if row[2:] != ['d']:
                encode[unit] = code
        mappings[number] = decode, encode
    mappings[51932] = euc_jp(mappings[932][0])
    rows = [(int(row[0], 16), int(row[1], 16)) for row in table_rows(data / 'db' / 'cp54936.tsv')]
    mappings[GB18030] = dict(rows), {unit: code for code, unit in rows}
    infos[GB18030][4] = infos[936][4]  # not named there
    return {number: Page(number, infos[number], leads.get(number, []), *mappings[number])
            for number in sorted(mappings)}


class Gb18030:
    """What page 54936 has that no table page has."""

    def __init__(self, data, pages):
        page, base = pages[GB18030], pages[936]
        page.leads, page.base = base.leads, base
        self.patches = sorted((base.decode[code], unit) for code, unit in page.decode.items()
                              if code > 0xFF and unit != base.decode[code])
        self.runs = [tuple(int(field, 16) for field in row)
                     for row in table_rows(data / 'gb18030.tsv')]
        self.verify(page, base)

    def verify(self, page, base):
        if {code for code in page.decode if code > 0xFF} != {c for c in base.decode if c > 0xFF}:
            sys.exit('54936 and 936 have other pairs')
        if not all(0xE000 <= unit <= 0xF8FF for unit, _ in self.patches):
            sys.exit('54936 and 936 differ in more than private-use units')
        index, units = 0, set(page.encode)
        for first, last, start in self.runs:
            if index != start or units & set(range(first, last + 1)):
                sys.exit('54936: the run from %04X is out of line' % first)
            units |= set(range(first, last + 1))
            index += last - first + 1
        if units != set(range(0xD800)) | set(range(0xE000, 0x10000)):
            sys.exit('54936: units without a code')


class Pool:
    """An array that grows by runs; a run that is there already is shared."""

    def __init__(self):
        self.values = []
        self.places = {}

    def add(self, run):
        run = tuple(run)
        if run not in self.places:
            self.places[run] = len(self.values)
            self.values += run
        return self.places[run]


class Tables:
    """The arrays, and one record per page that says where its parts are."""

    def __init__(self, pages, gb18030):
        self.pages = pages
        self.gb18030 = gb18030
        self.single_units, self.single_index, self.single_codes = Pool(), Pool(), Pool()
        self.lead_rows, self.cells = Pool(), Pool()
        self.double_index, self.double_codes = Pool(), Pool()
        self.double_codes.add([MISSING] * BLOCK)
        self.records = [self.record(page) for page in pages.values()]
        self.modulus, self.places = self.places_of(list(pages))

    def record(self, page):
        record = {
            'number': page.number, 'default_unit': page.default_unit,
            'default_code': self.stored(page.default_code), 'max_char_size': page.max_char,
            'identity': page.identity,
            'single_units': self.single_units.add(
                page.decode.get(b, page.default_unit) for b in range(256)),
        }
        record.update(self.single(page) if page.max_char == 1 else self.double(page))
        record['lead_bytes'] = [b for pair in page.lead_ranges for b in pair]
        return record

    @staticmethod
    def places_of(numbers):
        """The least modulus that tells all page numbers apart, and the record of each remainder."""
        modulus = next(m for m in range(len(numbers), 0x10000)
                       if len({number % m for number in numbers}) == len(numbers))
        records = {number % modulus: place for place, number in enumerate(numbers)}
        return modulus, [records.get(remainder, 0) for remainder in range(modulus)]

    @staticmethod
    def stored(code):
        """A code as the library stores it: the byte written first in the low half."""
        return code >> 8 | (code & 0xFF) << 8 if code > 0xFF else code

    def single(self, page):
        blocks = Pool()
        blocks.add([0] * BLOCK)
        index = [blocks.add(page.encode.get(u, 0) for u in range(first, first + BLOCK)) // BLOCK
                 for first in range(0, 0x10000, BLOCK)]
        return {'encode_index': self.single_index.add(index),
                'encode_codes': self.single_codes.add(blocks.values)}

    def double(self, page):
        base = getattr(page, 'base', page)  # the page whose pairs the cells hold
        index = [self.double_codes.add(self.stored(page.encode[u]) if u in page.encode else MISSING
                                       for u in range(first, first + BLOCK)) // BLOCK
                 for first in range(0, 0x10000, BLOCK)]
        flip, first, last = FAST_LEADS[base.number]
        fast = [byte ^ flip for byte in range(first, last + 1)]
        leads = fast + [byte for byte in page.leads if byte not in fast]
        if page.identity != 1:
            sys.exit('page %d: ASCII is not ASCII' % page.number)
        if sorted(leads) != sorted(page.leads):
            sys.exit('page %d: a fast lead byte is no lead byte' % page.number)
        trails = [code & 0xFF for code in base.decode if code > 0xFF]
        low, high = min(trails), max(trails)
        cells = []
        for lead in leads:
            cells += [base.decode.get(lead * 256 + trail, base.default_unit)
                      for trail in range(low, high + 1)] + [page.default_unit]
        rows = [leads.index(byte) + 1 if byte in leads else 0 for byte in range(256)]
        return {'encode_index': self.double_index.add(index), 'encode_codes': 0,
                'lead_rows': self.lead_rows.add(rows), 'cells': self.cells.add(cells),
                'first_trail': low, 'trail_count': high - low + 1,
                'fast_flip': flip, 'fast_first': first, 'fast_count': last - first + 1}

    # The checks below read the arrays only, never the dictionaries they came from.

    def decoded(self, record, code):
        if code < 0x100:
            return self.single_units.values[record['single_units'] + code]
        row = self.lead_rows.values[record['lead_rows'] + (code >> 8)] - 1
        column = min(((code & 0xFF) - record['first_trail']) & 0xFF, record['trail_count'])
        return self.cells.values[record['cells'] + row * (record['trail_count'] + 1) + column]

    def encoded(self, record, unit):
        if record['max_char_size'] == 1:
            block = self.single_index.values[record['encode_index'] + unit // BLOCK]
            code = self.single_codes.values[record['encode_codes'] + block * BLOCK + unit % BLOCK]
            return code if code or unit == 0 else None
        block = self.double_index.values[record['encode_index'] + unit // BLOCK]
        code = self.double_codes.values[block * BLOCK + unit % BLOCK]
        return None if code == MISSING else self.stored(code)

    def verify(self):
        for page, record in zip(self.pages.values(), self.records):
            if self.records[self.places[page.number % self.modulus]] is not record:
                sys.exit('page %d: not found by its number' % page.number)
            codes = list(range(256)) + [lead * 256 + b for lead in page.leads for b in range(256)]
            patches = dict(self.gb18030.patches if page.number == GB18030 else ())
            for code in codes:
                unit = self.decoded(record, code)
                if code > 0xFF:
                    unit = patches.get(unit, unit)
                if unit != page.decode.get(code, page.default_unit):
                    sys.exit('page %d: code %X decodes wrongly' % (page.number, code))
            for unit in range(0x10000):
                if self.encoded(record, unit) != page.encode.get(unit):
                    sys.exit('page %d: unit %04X encodes wrongly' % (page.number, unit))
            if set(page.decode) - set(codes):
                sys.exit('page %d: a code has no lead byte' % page.number)
            # The library tells an undefined code by its default unit; only 20127 repeats it.
            doubles = [c for c, u in page.decode.items()
                       if u == page.default_unit and c != page.default_code]
            if doubles and page.number not in (646, 20127):
                sys.exit('page %d: codes %s stand for the default unit' % (page.number, doubles))

    def size(self):
        wide = self.single_units, self.cells, self.double_index, self.double_codes
        narrow = self.single_index, self.single_codes, self.lead_rows
        return (sum(2 * len(p.values) for p in wide) + sum(len(p.values) for p in narrow) +
                self.modulus + 4 * len(self.gb18030.patches) + 6 * len(self.gb18030.runs))


HEADING = '''// Generated by scripts/generate/codepages.py from the strict mappings of the Windows code pages.
// Do not edit; run `cmake --build build --target gen_tables`.
'''

FIELDS = ('number', 'default_unit', 'default_code', 'max_char_size', 'identity', 'lead_bytes',
          'single_units', 'encode_index', 'encode_codes', 'lead_rows', 'cells', 'first_trail',
          'trail_count', 'fast_flip', 'fast_first', 'fast_count')


def array(kind, name, count, values, comment):
    """The definition of one array, its values filled into lines of at most 100 characters."""
    lines, line = [], ''
    for value in values:
        text = '%d,' % value
        if len(line) + len(text) > 100:
            lines.append(line)
            line = ''
        line += text
    lines.append(line)
    return '\n// %s\nconst %s %s[%s] = {\n%s\n};\n' % (comment, kind, name, count, '\n'.join(lines))


def rows(kind, name, values, comment):
    """The definition of an array of small structs, four to a line."""
    texts = ['{%s},' % ', '.join('0x%04X' % number for number in value) for value in values]
    lines = ['    ' + ' '.join(texts[at:at + 4]) for at in range(0, len(texts), 4)]
    return '\n// %s\nconst %s %s[%d] = {\n%s\n};\n' % (
        comment, kind, name, len(values), '\n'.join(lines))


def source(arrays):
    return (HEADING + '#include "Foundation/Platform/CodePages/Tables/CodePageTables.h"\n\n'
            'namespace zelkor::platform::nls {\n' + ''.join(arrays) + '\n}  // namespace zelkor::platform::nls\n')


def record_line(record):
    def field(name):
        value = record.get(name, 0)
        if isinstance(value, list):
            return '{' + ', '.join('0x%02X' % byte for byte in value) + '}'
        return '0x%04X' % value if name.startswith('default_') else str(value)
    return '    {' + ', '.join(field(name) for name in FIELDS) + '},\n'


def files(tables):
    """File name to content, for everything this script owns."""
    u8, u16, unit = 'std::uint8_t', 'std::uint16_t', 'char16_t'
    parts = [
        ('SingleBytePages.cpp', unit, 'kSingleUnits', tables.single_units,
         'One unit per byte; one run of 256 per page.'),
        ('SingleBytePages.cpp', u8, 'kSingleIndex', tables.single_index,
         'Block number per 64 units; one run of 1,024 per page.'),
        ('SingleBytePages.cpp', u8, 'kSingleCodes', tables.single_codes,
         'Blocks of 64 bytes; 0 is missing, but for U+0000.'),
        ('DoubleByteDecoding.cpp', u8, 'kLeadRows', tables.lead_rows,
         'Row number from 1 per lead byte, 0 for other bytes; one run of 256 per page.'),
        ('DoubleByteDecoding.cpp', unit, 'kCells', tables.cells,
         'One row per lead byte: a unit per trail byte of the range, and the default unit.'),
        ('DoubleByteEncoding.cpp', u16, 'kDoubleIndex', tables.double_index,
         'Block number per 64 units; one run of 1,024 per page.'),
        ('DoubleByteEncoding.cpp', u16, 'kDoubleCodes', tables.double_codes,
         'Blocks of 64 codes, the byte written first in the low half; 0xFFFF is missing.'),
    ]
    bodies, externs = {}, []
    for name, kind, array_name, pool, comment in parts:
        count = len(pool.values)
        bodies.setdefault(name, []).append(array(kind, array_name, count, pool.values, comment))
        externs.append('extern const %s %s[%d];' % (kind, array_name, count))
    gb18030 = tables.gb18030
    externs += ['extern const %s kPagePlaces[%d];' % (u8, tables.modulus),
                'extern const GbPatch kGbPatches[%d];' % len(gb18030.patches),
                'extern const GbRun kGbRuns[%d];' % len(gb18030.runs)]
    bodies['Gb18030.cpp'] = [
        rows('GbPatch', 'kGbPatches', gb18030.patches,
             'The unit in page 936 and in 54936 of the pairs where they differ, in that order.'),
        rows('GbRun', 'kGbRuns', gb18030.runs,
             'Runs of units that have four bytes, and the index of the first; in both orders.')]
    bodies['TablePages.cpp'] = [
        array(u8, 'kPagePlaces', tables.modulus, tables.places,
              'Place in kTablePages by the remainder of the page number; any for other numbers.'),
        '\nconst TablePage kTablePages[kTablePageCount] = {\n',
        *map(record_line, tables.records), '};\n']
    result = {name: source(body) for name, body in bodies.items()}
    result['CodePageTables.h'] = HEADER % {
        'heading': HEADING, 'size': format(tables.size(), ','), 'count': len(tables.records),
        'modulus': tables.modulus,
        'externs': '\n'.join(externs)}
    return result


HEADER = '''%(heading)s//
// The strict mappings of all table pages: %(size)s bytes, read-only, without pointers.
// kTablePages says where each page's parts begin; kPagePlaces finds the page of a number.
#ifndef FOUNDATION_PLATFORM_NLS_TABLES_CODEPAGETABLES_H
#define FOUNDATION_PLATFORM_NLS_TABLES_CODEPAGETABLES_H

#include <cstddef>
#include <cstdint>

namespace zelkor::platform::nls {

struct TablePage {
    std::uint16_t number;
    char16_t default_unit;        // stands for every code without a row
    std::uint16_t default_code;   // of default_unit, stored as in kDoubleCodes
    std::uint8_t max_char_size;   // 1 or 2 bytes; 4 in 54936, which has more than its tables
    std::uint8_t identity;        // 1: 00 to 7F are ASCII, both ways; 2: A0 to FF are Latin-1 too
    std::uint8_t lead_bytes[12];  // (first, last) pairs, ended by a pair of zeros
    std::uint32_t single_units;   // in kSingleUnits
    std::uint32_t encode_index;   // in kSingleIndex or kDoubleIndex
    std::uint32_t encode_codes;   // first block of a single-byte page in kSingleCodes

    // Double-byte pages: a row has trail_count + 1 cells. A lead byte of the fast range has the row
    // (lead ^ fast_flip) - fast_first, below fast_count; kLeadRows has the rows of all lead bytes.
    std::uint32_t lead_rows;      // in kLeadRows
    std::uint32_t cells;          // in kCells
    std::uint8_t first_trail;
    std::uint8_t trail_count;
    std::uint8_t fast_flip;
    std::uint8_t fast_first;
    std::uint8_t fast_count;
};

// Page 54936: a pair has the unit of page 936 but for the patches.
struct GbPatch {
    char16_t unit936;
    char16_t unit;
};
struct GbRun {
    char16_t first;
    char16_t last;
    std::uint16_t index;  // of `first` among the sequences of four bytes
};

inline constexpr std::size_t kTablePageCount = %(count)d;
inline constexpr std::uint32_t kPageModulus = %(modulus)d;
inline constexpr std::size_t kUnitsPerBlock = 64;
inline constexpr std::uint16_t kMissingCode = 0xFFFF;

extern const TablePage kTablePages[kTablePageCount];
%(externs)s

}  // namespace zelkor::platform::nls

#endif
'''


def checksum(pairs):
    """32-bit FNV-1a over pairs of numbers, each number a step."""
    state = 0x811C9DC5
    for pair in pairs:
        for number in pair:
            state = (state ^ number) * 0x01000193 & 0xFFFFFFFF
    return state


def gb18030_codes(page, runs):
    """(unit, code) of every unit, in order; the first byte of a code in its highest byte."""
    codes = dict(page.encode)
    for first, last, start in runs:
        for unit in range(first, last + 1):
            rest, fourth = divmod(start + unit - first, 10)
            rest, third = divmod(rest, 126)
            first_byte, second = divmod(rest, 10)
            codes[unit] = (0x81 + first_byte << 24 | 0x30 + second << 16 | 0x81 + third << 8 |
                           0x30 + fourth)
    return sorted(codes.items())


def print_sums(pages, gb18030):
    """Sums over the (code, unit) rows in code order and the encodings in unit order.

    A row that only repeats the default unit cannot be told from a missing one, and is left out.
    """
    for page in pages.values():
        if page.number == GB18030:
            continue
        rows = [row for row in sorted(page.decode.items())
                if row[1] != page.default_unit or row[0] == page.default_code]
        print('    {%d, 0x%04X, 0x%08X, 0x%08X},' % (
            page.number, page.default_unit, checksum(rows), checksum(sorted(page.encode.items()))))
    print('    54936: 0x%08X' % checksum(gb18030_codes(pages[GB18030], gb18030.runs)))


def main():
    parser = argparse.ArgumentParser(description='Makes the code-page tables.')
    parser.add_argument('data', type=pathlib.Path, help='folder of cpinfo.tsv, sb and db')
    parser.add_argument('--check', action='store_true', help='compare, write nothing')
    parser.add_argument('--sums', action='store_true', help='print checksums, write nothing')
    arguments = parser.parse_args()

    pages = load(arguments.data)
    gb18030 = Gb18030(arguments.data, pages)
    if arguments.sums:
        return print_sums(pages, gb18030)
    tables = Tables(pages, gb18030)
    tables.verify()
    stale = []
    for name, content in files(tables).items():
        path = TABLES / name
        if arguments.check:
            if not path.exists() or path.read_text(encoding='ascii') != content:
                stale.append(name)
        else:
            path.write_text(content, encoding='ascii')
    if stale:
        sys.exit('the data gives other content for ' + ', '.join(stale))
    print('%d table pages, %d bytes, verified' % (len(tables.records), tables.size()))


if __name__ == '__main__':
    main()
