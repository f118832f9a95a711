#!/usr/bin/env python3
"""Makes src/core/code_page_table.inc, the characters of code page 932, from the C library's iconv.

    scripts/make_code_page.py          writes the table
    scripts/make_code_page.py --check  tells whether the table is what this script would write

Either way every byte, every double byte and every one of the 65,536 code units is held against iconv: the table, read by
the rules that code_page.cpp follows, must give iconv's answer, except where BEST_FIT and SINGLE_BYTES say more.
"""

import ctypes
import pathlib
import sys

TABLE = pathlib.Path(__file__).resolve().parent.parent / "src/core/code_page_table.inc"

LEADS = [*range(0x81, 0xA0), *range(0xE0, 0xFD)]
TRAILS = [*range(0x40, 0x7F), *range(0x80, 0xFD)]
USER_LEADS = range(0xF0, 0xFA)  # the user-defined area runs from U+E000 on and needs no table
STORED_LEADS = [lead for lead in LEADS if lead not in USER_LEADS]
# Second copies of characters that other rows hold too; never written.
SHADOWED_LEADS = (0xED, 0xEE)

# Single bytes that iconv refuses and Windows reads as these.
SINGLE_BYTES = {0x80: 0x80, 0xA0: 0xF8F0, 0xFD: 0xF8F1, 0xFE: 0xF8F2, 0xFF: 0xF8F3}

# Characters that the page lacks and Windows writes as their nearest relative, which stands in front.
BEST_FIT = {
    "A": "ÀÁÂÃÄÅÆ", "C": "Ç", "D": "Ð", "E": "ÈÉÊË", "I": "ÌÍÎÏ", "N": "Ñ", "O": "ÒÓÔÕÖØ", "R": "®", "T": "Þ",
    "U": "ÙÚÛÜ", "Y": "Ý",
    "a": "ªàáâãäåæ", "c": "©ç", "d": "ð", "e": "èéêë", "i": "ìíîï", "n": "ñ", "o": "ºòóôõöø", "s": "ß", "t": "þ",
    "u": "ùúûü", "y": "ýÿ",
    "1": "¹", "2": "²", "3": "³", "!": "¡", "|": "¦", "-": "\u00ad",
    "≪": "«", "≫": "»", "￣": "¯", "μ": "µ", "・": "·", "，": "¸", "ヴ": "ゔ",
}

HEADER = """\
// Made by scripts/make_code_page.py from the C library's iconv; not to be edited by hand.

// The double bytes of lead bytes 81 to 9F, E0 to EF and FA to FC, each with its 188 trail bytes 40 to 7E and 80 to FC.
// U+FFFD stands where the page has no character.
"""
NEAREST = """\

// Characters that the page lacks, and what is written for them.
"""


class Iconv:
    """One direction of iconv(3), a character at a time; None for what it refuses."""

    def __init__(self, target, source):
        self.libc = ctypes.CDLL(None)
        self.libc.iconv_open.restype = ctypes.c_void_p
        self.libc.iconv.restype = ctypes.c_size_t
        self.libc.iconv.argtypes = [ctypes.c_void_p] * 5
        self.failure = ctypes.c_size_t(-1).value
        self.handle = self.libc.iconv_open(target, source)
        if self.handle == self.failure:
            sys.exit("iconv does not know CP932 here")

    def __call__(self, data):
        source, target = ctypes.create_string_buffer(data, len(data)), ctypes.create_string_buffer(8)
        source_at, target_at = (ctypes.c_void_p(ctypes.addressof(buffer)) for buffer in (source, target))
        source_left, target_left = ctypes.c_size_t(len(data)), ctypes.c_size_t(8)
        self.libc.iconv(self.handle, None, None, None, None)
        result = self.libc.iconv(self.handle, *map(ctypes.byref, (source_at, source_left, target_at, target_left)))
        return None if result == self.failure else target.raw[: 8 - target_left.value]


def by_iconv():
    """What every code means, and how every code unit is written, with what this page adds to iconv."""
    decode, encode = Iconv(b"UTF-16LE", b"CP932"), Iconv(b"CP932", b"UTF-16LE")
    meaning = dict(SINGLE_BYTES)
    for data in [bytes([b]) for b in range(256)] + [bytes([b, t]) for b in range(256) for t in range(256)]:
        character = decode(data)
        if character is not None and len(character) == 2:
            meaning[int.from_bytes(data, "big")] = int.from_bytes(character, "little")
    for code in [code for code in meaning if code > 255 and code >> 8 not in LEADS]:
        del meaning[code]  # a NUL in front, or two single bytes
    written = {}
    for unit in range(0x10000):
        data = encode(unit.to_bytes(2, "little"))
        if data is not None:
            written[unit] = int.from_bytes(data, "big")
    for code, unit in SINGLE_BYTES.items():
        written[unit] = code
    for nearest, characters in BEST_FIT.items():
        for character in characters:
            if ord(character) in written:
                sys.exit(f"iconv has an answer of its own for {character}")
            written[ord(character)] = written[ord(nearest)]
    return meaning, written


def inverse(meaning):
    """How each character is written: the first code that means it, shadowed rows last."""
    written = {}
    for code in sorted(meaning, key=lambda code: (code >> 8 in SHADOWED_LEADS, code)):
        written.setdefault(meaning[code], code)
    return written


def literal(units):
    escapes = {0x22: '\\"', 0x5C: "\\\\", 0xAD: "\\u00ad"}
    return 'u"' + "".join(escapes.get(unit, chr(unit)) for unit in units) + '"'


def table(meaning, written):
    lines = []
    for lead in STORED_LEADS:
        row = [meaning.get(lead * 256 + trail, 0xFFFD) for trail in TRAILS]
        lines += [f"    {literal(row[at : at + 47])}" for at in range(0, len(row), 47)]
    strict = inverse(meaning)
    lacking = sorted(unit for unit in written if unit not in strict)
    character = {code: unit for unit, code in strict.items()}
    nearest = [character[written[unit]] for unit in lacking]
    return (HEADER + "constexpr char16_t kDoubleBytes[] =\n" + "\n".join(lines) + ";\n" + NEAREST
            + "constexpr char16_t kLacking[] =\n    " + literal(lacking) + ";\n"
            + "constexpr char16_t kNearest[] =\n    " + literal(nearest) + ";\n"), dict(zip(lacking, nearest))


def main():
    meaning, written = by_iconv()
    text, lacking = table(meaning, written)

    # The rules of code_page.cpp, from what is stored alone.
    ruled = {code: code for code in range(0x80)} | SINGLE_BYTES
    ruled |= {code: 0xFF61 + code - 0xA1 for code in range(0xA1, 0xE0)}
    for lead in LEADS:
        for at, trail in enumerate(TRAILS):
            if lead in USER_LEADS:
                ruled[lead * 256 + trail] = 0xE000 + (lead - USER_LEADS[0]) * len(TRAILS) + at
            elif lead * 256 + trail in meaning:
                ruled[lead * 256 + trail] = meaning[lead * 256 + trail]
    if ruled != meaning:
        sys.exit("reading: the rules and iconv differ")
    strict = inverse(ruled)
    if strict | {unit: strict[nearest] for unit, nearest in lacking.items()} != written:
        sys.exit("writing: the rules and iconv differ")

    if sys.argv[1:] == ["--check"]:
        if TABLE.read_text(encoding="utf-8") != text:
            sys.exit(f"{TABLE.name} is not what this script makes")
    elif sys.argv[1:]:
        sys.exit(__doc__)
    else:
        TABLE.write_text(text, encoding="utf-8")


if __name__ == "__main__":
    main()
