#!/usr/bin/env python3
"""Writes the hand-made inputs into fuzz/corpus: one oddity a file, named after it.

Run it after a change here. The beginnings of the example data lie beside them, for which it needs
`orvel-phantom make examples/data`; without that they are left as they are.
"""
import glob
import os
import struct

HERE = os.path.dirname(os.path.abspath(__file__))


def save(reader, files):
    folder = os.path.join(HERE, "corpus", reader)
    os.makedirs(folder, exist_ok=True)
    for name, content in files.items():
        data = content.encode("utf-8") if isinstance(content, str) else content
        assert len(data) < 2048, name
        with open(os.path.join(folder, name), "wb") as f:
            f.write(data)


# ---- spectra ---------------------------------------------------------------------------------

SCAN_TOP = "9809     beamline 7\nsample A\n"
SCAN_D = "Mono :  Si(111)   D=  3.1355316 A    Initial angle= 12.91 deg\n"
SCAN_MODES = "  Angle(c)  Angle(o)  time/s   1   2\n      Mode     0     0     1     2\n"
SCAN_OFFSET = "    Offset     0     0     0.0    0.0\n"
SCAN_DATA = (" 14.20000 14.2001  1.0  10000  9000\n 14.00000 14.0001  1.0  10000  8800\n"
             " 13.80000 13.8001  1.0  10000  5000\n 13.60000 13.6001  1.0  10000  5100\n")
SCAN = SCAN_TOP + SCAN_D + SCAN_MODES + SCAN_OFFSET + SCAN_DATA
FLUORESCENCE = SCAN_MODES.replace("1     2\n", "1     3     3     3\n")
COLUMNS = "# energy mut\n7000 0.40\n7050 0.38\n7100 0.37\n7110 0.60\n7120 1.30\n7200 1.20\n"
MANY = "".join("%d %.4f\n" % (7000 + 10 * i, 0.5 + 0.5 * (i > 40)) for i in range(120))

save("spectrum", {
    "scan.dat": SCAN,
    "scan-crlf.dat": SCAN.replace("\n", "\r\n"),
    "scan-tabs.dat": SCAN.replace("  ", "\t"),
    "scan-blanks-before-9809.dat": " \t " + SCAN,
    "scan-980912.dat": SCAN.replace("9809", "980912"),
    "scan-shift-jis-title.dat": SCAN.encode().replace(b"sample A", "試料 ソ表 A".encode("shift-jis")),
    "scan-utf8-title.dat": SCAN.replace("sample A", "試料 µt 😀"),
    "scan-mark-before-9809.dat": "\ufeff" + SCAN,
    "scan-no-offset.dat": SCAN.replace("Offset", "offset"),
    "scan-no-mode.dat": SCAN.replace("Mode", "mode"),
    "scan-no-i0.dat": SCAN.replace("0     1     2\n", "0     0     2\n"),
    "scan-no-data.dat": SCAN.replace(SCAN_DATA, ""),
    "scan-fluorescence.dat": SCAN.replace(SCAN_MODES, FLUORESCENCE).replace("00\n", "00 7 8 9\n"),
    "scan-fluorescence-short-lines.dat": SCAN.replace(SCAN_MODES, FLUORESCENCE),
    "scan-mode-twice.dat": SCAN.replace(SCAN_MODES, SCAN_MODES + FLUORESCENCE),
    "scan-mode-within-data.dat": SCAN + SCAN_MODES.replace("1     2", "2     1") + SCAN_DATA,
    "scan-mode-odd-numbers.dat": SCAN.replace("1     2\n", "1 2.0 -2 99999999999 2147483647\n"),
    "scan-d-twice.dat": SCAN + "D= 1.6375\n" + SCAN_DATA,
    "scan-d-at-line-end.dat": SCAN + "Mono D=\nD=1.6\n" + SCAN_DATA,
    "scan-d-bad.dat": SCAN.replace("3.1355316", "3,1355316"),
    "scan-angle-zero.dat": SCAN + " 0 0 1.0 10000 9000\n 1 90 1.0 0 0\n 1 -14 1.0 -5 9\n",
    "scan-short-lines.dat": SCAN + "1 2 3 4\n1 2 3 4 5\n\n   \n",
    "scan-end-mark.dat": SCAN + "\x1a",
    "scan-no-newline.dat": SCAN[:-1],
    "scan-cut-within-number.dat": SCAN[:-4],
    "columns.dat": COLUMNS,
    "columns-crlf.dat": COLUMNS.replace("\n", "\r\n"),
    "columns-old-mac-ends.dat": COLUMNS.replace("\n", "\r"),
    "columns-tabs-trailing-blanks.dat": COLUMNS.replace(" ", "\t ").replace("\n", " \t \n"),
    "columns-further-items.dat": COLUMNS.replace("\n", "  1  2  3\n"),
    "columns-blanks-before-comment.dat": "   # 1 2\n #7 8\n" + COLUMNS,
    "columns-comment-mid-line.dat": COLUMNS + "7300 #1\n7400 1.1 # end\n",
    "columns-single-items.dat": "7000\n7100\n" + COLUMNS + "7300\n",
    "columns-descending.dat": "\n".join(reversed(COLUMNS.splitlines())) + "\n",
    "columns-equal-energies.dat": COLUMNS + "7200 1.1\n7200 1.0\n7300 1\n",
    "columns-bad-numbers.dat": "1,5 0.1\n0x1F00 0.2\n7000 5eV\n7010 1.e\n 7020 .5\n7030 --1\n+ -\n",
    "columns-nan-inf.dat": "nan 1\n7000 nan\n7010 inf\n-inf 2\n7020 -nan\ninfinity 1\n",
    "columns-overflow.dat": "1e400 1\n7000 -1e400\n7010 1e-400\n1e308 1e308\n-1e308 -1e308\n",
    "columns-many-digits.dat": "7000.%s 0.%s\n" % ("1" * 400, "0" * 400 + "7"),
    "columns-energy-zero.dat": "0 1\n-0 2\n0.0 3\n-7000 1\n1 2\n",
    "columns-full-width-digits.dat": COLUMNS.translate({ord("7"): "\uff17"}),
    "columns-other-blanks.dat": COLUMNS.replace(" ", "\u3000").replace("40", "40\u00a0"),
    "columns-mark-utf8.dat": "\ufeff" + COLUMNS[2:],
    "columns-mark-utf16.dat": b"\xff\xfe" + COLUMNS.encode("utf-16-le"),
    "columns-mark-utf16-cut.dat": b"\xfe\xff" + COLUMNS.encode("utf-16-be")[:-1],
    "columns-mark-utf32.dat": b"\xff\xfe\0\0" + COLUMNS[:200].encode("utf-32-le"),
    "columns-zero-bytes.dat": COLUMNS.encode().replace(b"7100", b"71\x0000"),
    "columns-bad-utf8.dat": COLUMNS.encode() + b"7300 1\xe3\n\xff\xfe 7\n7400 1\xf0\x9f",
    "columns-cut-character.dat": b"7000 1\n7010 2\xd0",
    "columns-end-mark.dat": COLUMNS + "\x1a\n\x1a 1\n",
    "columns-no-newline.dat": COLUMNS[:-1],
    "columns-many.dat": MANY,
    "empty.dat": "",
    "blank-lines.dat": "\n\r\n \t\n\r",
    "comments-only.dat": "# a\n#\n# b 1 2\n",
})

# ---- text maps -------------------------------------------------------------------------------

SCANNER = ("# 1306 mapping\n# ENERGY : 7120.5 eV\n# AXIS 0 X from 0.0 to 1 steps 1\n"
           "# AXIS 1 Y from 0.0 to 2 steps 2\n")
GRID = "# X-NUM 2\n# Y-NUM 3\n"
BEAMLINE = "# 2003901 scan\n# ENERGY : 7112 eV\n# I0 : 1\n# I : 2\n"
FOUR = "".join("%d %d %d %d\n" % (x, y, 900 + 10 * x + y, 1000) for y in range(3) for x in range(2))
THREE = "".join("%d %d 0.%d\n" % (x, y, 3 + x + y) for y in range(3) for x in range(2))
FIVE = "".join("%d %d 0.1 %d %d\n" % (x, y, 1000, 900 + x) for y in range(3) for x in range(2))

save("textmap", {
    "scanner.txt": SCANNER + FOUR,
    "scanner-crlf.txt": (SCANNER + FOUR).replace("\n", "\r\n"),
    "scanner-three-columns.txt": SCANNER + THREE,
    "plain-four-columns.txt": GRID + FOUR,
    "plain-mixed-columns.txt": GRID + THREE + FOUR + "1 2\n7\n1 2 3 4 5 6\n",
    "plain-lower-case-keys.txt": "# x-num 2\n# Y-nUm 3\n# energy : 7000 eV\n" + FOUR,
    "plain-keys-against-hash.txt": "#X-NUM 2\n#Y-NUM 3\n#ENERGY : 7000\n" + FOUR,
    "plain-header-within-data.txt": FOUR + GRID + "#\n# ENERGY : 1 eV\n# ENERGY : 2 eV\n" + FOUR,
    "plain-beamline-mark-later.txt": "#\n" + BEAMLINE + GRID + FIVE,
    "beamline.txt": BEAMLINE + FIVE,
    "beamline-tabs-trailing-blanks.txt": (BEAMLINE + FIVE).replace(" ", "\t").replace("\n", "  \n"),
    "beamline-blanks-before-mark.txt": " " + BEAMLINE + GRID + FIVE,
    "beamline-negative-column.txt": BEAMLINE.replace(": 1", ": -2").replace(": 2", ": -3") + FIVE,
    "beamline-negative-inside.txt": BEAMLINE.replace(": 1", ": -1").replace(": 2", ": -2") + FIVE,
    "beamline-column-overflow.txt": BEAMLINE.replace(": 2", ": 2147483647") + FIVE,
    "beamline-column-underflow.txt": BEAMLINE.replace(": 2", ": -2147483648") + FIVE,
    "beamline-column-no-colon.txt": BEAMLINE.replace("I : 2", "I 2 x") + FIVE,
    "beamline-column-two-colons.txt": BEAMLINE.replace("I : 2", "I : 2 : 3") + FIVE,
    "beamline-column-key-with-colon.txt": BEAMLINE.replace("I : 2", "I: 2 x") + FIVE,
    "beamline-columns-change.txt": BEAMLINE + FIVE + "# I : 0\n# I0 : 2\n" + FIVE,
    "beamline-short-lines.txt": BEAMLINE + FIVE + "1 2\n1 2 3\n1 2 3 4\n9\n",
    "beamline-one-pixel.txt": BEAMLINE + "5 5 1 1000 900\n",
    "beamline-nan-positions.txt": BEAMLINE + "nan 1 1 1 1\nnan 1 1 1 1\n-0 0 1 1 1\n0 -0 1 1 1\n",
    "beamline-no-data.txt": BEAMLINE,
    "axis-largest.txt": SCANNER.replace("steps 1\n", "steps 2147483647\n") + FOUR,
    "axis-overflow.txt": SCANNER.replace("steps 1\n", "steps 2147483648\n") + FOUR,
    "axis-minus-one.txt": SCANNER.replace("steps 1\n", "steps -1\n") + FOUR,
    "axis-smallest.txt": SCANNER.replace("steps 2\n", "steps -2147483648\n") + FOUR,
    "axis-both-largest.txt": SCANNER.replace("steps 1", "steps 2147483646").replace(
        "steps 2\n", "steps 2147483646\n") + FOUR,
    "axis-short-line.txt": SCANNER.replace(" steps 1", "") + FOUR,
    "axis-three.txt": SCANNER.replace("AXIS 1", "AXIS 2") + FOUR,
    "grid-just-too-large.txt": "# X-NUM 4194306\n# Y-NUM 1\n" + "0 0 1 2\n",
    "grid-just-taken.txt": "# X-NUM 1\n# Y-NUM 4194305\n" + "0 0 1 2\n",
    "grid-two-gibi.txt": "# X-NUM 46341\n# Y-NUM 46341\n" + FOUR,
    "grid-negative.txt": "# X-NUM -2\n# Y-NUM -3\n" + FOUR,
    "grid-bad-numbers.txt": "# X-NUM 2.0\n# Y-NUM three\n" + FOUR,
    "grid-smaller-than-data.txt": "# X-NUM 1\n# Y-NUM 1\n" + FOUR,
    "grid-one-way.txt": "# X-NUM 2\n" + FOUR,
    "no-header.txt": FOUR,
    "no-pixel.txt": GRID + "1 2\n",
    "shift-jis-header.txt": GRID.encode() + "# 試料 ソ表\n".encode("shift-jis") + FOUR.encode(),
    "utf8-header.txt": GRID + "# 試料 µm 😀\n" + FOUR,
    "utf8-other-blanks.txt": (GRID + FOUR).replace(" ", "\u2003"),
    "mark-utf8.txt": "\ufeff" + BEAMLINE + FIVE,
    "cut-character.txt": GRID.encode() + FOUR.encode()[:-1] + b"\xe3\x81",
    "cr-within-character.txt": GRID.encode() + b"# \xe9\r\xa7\xa7 \r\r\n" + FOUR.encode(),
    "mark-utf16.txt": b"\xff\xfe" + (GRID + FOUR).encode("utf-16-le"),
    "end-mark.txt": GRID + FOUR + "\x1a\n",
    "no-newline.txt": (GRID + FOUR)[:-1],
    "bad-numbers.txt": GRID + "a b c d\n1,5 2 0x3 4e\n1 1 +5 -5\n1 1 .5 5.\n1 1 1e5 1E-5\n1 1 5d0 5f\n",
    "overflow-numbers.txt": GRID + "1e400 -1e400 1e-400 -1e-400\n1 1 1.8e308 4.9e-324\n",
    "zero-intensities.txt": GRID + "0 0 0 0\n1 0 0 5\n0 1 5 0\n1 1 -5 5\n0 2 5 -5\n1 2 nan inf\n",
    "long-digits.txt": GRID + "0 0 0.%s1 1%s\n" % ("0" * 350, "0" * 330),
    "empty.txt": "",
    "hashes-only.txt": "#\n##\n# \n#\t#\n",
})

# ---- processed maps --------------------------------------------------------------------------

STRUCTURE = ("Header of Size ( HeaderSize: ), Row Double Data Block of pixels ( WIDTH: * HEIGHT ), "
             "Row Bool Valid Flag Block of pixels ( WIDTH: * HEIGHT ) ")


def processed(width=2, height=2, values=None, flags=None, size=None, id="map", first=None,
              low="0.25", high="4", extra="", end="END_OF_HEADER:\n"):
    rest = ("WIDTH: %s\nHEIGHT: %s\nDATA_ID: %s\nDATA_STRUCTURE: %s\nSIZE_OF_DOUBLE: 8\n"
            "SIZE_OF_BOOL: 1\nMIN_VAL: %s\nMAX_VAL: %s\n%s%s"
            % (width, height, id, STRUCTURE, low, high, extra, end)).encode("latin-1")
    real = ((65 + len(rest)) // 256 + 1) * 256
    line = first or "2dData-V0.0 HeaderSize: %s" % (real if size is None else size)
    header = (line.ljust(64) + "\n").encode("latin-1") + rest
    header += bytes(real - len(header))
    if values is None:
        values = [0.1, 1.7, -2.3, 4.9]  # no byte of them is 0, so cuts show
    if flags is None:
        flags = bytes([1, 1, 0, 1])
    return header + struct.pack("<%dd" % len(values), *values) + flags


NUMBERS = [float("nan"), float("inf"), -0.0, 5e-324]
WHOLE = processed()
MINIMAL = b"2dData-V0.0 HeaderSize: 64".ljust(64) + b"\nWIDTH: 1\nHEIGHT: 1\nEND_OF_HEADER:\n"

save("processed", {
    "map.tdd": WHOLE,
    "one-pixel.tdd": processed(1, 1, [1.5], b"\1"),
    "odd-numbers.tdd": processed(values=NUMBERS, flags=bytes([0, 255, 2, 1])),
    "id-with-blanks.tdd": processed(id="  a map with  blanks "),
    "id-quotes-latin1.tdd": processed(id='"half \xb5\xff\x85'),
    "id-empty.tdd": processed(id=""),
    "id-zero-byte.tdd": processed(id="a\0b\r"),
    "id-fills-the-unit.tdd": processed(id="x" * 180),
    "limits-many-digits.tdd": processed(low="-0.12345678901234", high="1e400"),
    "limits-bad.tdd": processed(low="low", high=""),
    "cut-in-first-line.tdd": WHOLE[:20],
    "cut-in-header.tdd": WHOLE[:100],
    "cut-behind-header.tdd": WHOLE[:-36],
    "cut-in-number.tdd": WHOLE[:-13],
    "cut-in-flags.tdd": WHOLE[:-2],
    "longer-than-needed.tdd": WHOLE + b"\1\2\3",
    "header-size-0.tdd": processed(size=0),
    "header-size-63.tdd": processed(size=63),
    "header-size-64.tdd": MINIMAL + bytes(9),
    "header-size-negative.tdd": processed(size=-512),
    "header-size-2-gibi.tdd": processed(size=2147483648),
    "header-size-too-large.tdd": processed(size=1048577),
    "header-size-behind-end.tdd": processed(size=1048576),
    "header-size-cuts-keys.tdd": processed(size=72),
    "header-size-missing.tdd": processed(first="2dData-V0.0"),
    "first-line-quoted.tdd": processed(first='2dData-V0.0 "HeaderSize: " "512"'),
    "first-line-quote-open.tdd": processed(first='2dData-V0.0 "HeaderSize: 512'),
    "first-line-other-version.tdd": processed(first="2dDataX"),
    "first-line-lower-case.tdd": processed(first="2ddata-V0.0 HeaderSize: 512"),
    "size-2-gibi.tdd": processed(65536, 32768),
    "size-product-overflow.tdd": processed(65536, 65536),
    "size-largest.tdd": processed(2147483647, 2147483647),
    "size-just-refused.tdd": processed(4194309, 1),
    "size-just-taken.tdd": processed(4194308, 1),
    "size-zero.tdd": processed(0, 2),
    "size-negative.tdd": processed(-2, -2),
    "size-bad-number.tdd": processed("2.0", "two"),
    "keys-twice.tdd": processed(extra="WIDTH: 1\nDATA_ID: second\n"),
    "keys-lower-case.tdd": WHOLE.replace(b"WIDTH: 2", b"width: 2"),
    "keys-without-blank.tdd": WHOLE.replace(b"WIDTH: 2", b"WIDTH:2 "),
    "keys-crlf.tdd": WHOLE.replace(b"\nHEIGHT: 2", b"\r\nHEIGHT: 2\r"),
    "keys-quoted.tdd": WHOLE.replace(b"WIDTH: 2\n", b'"WIDTH:" 2\n'),
    "no-end-of-header.tdd": processed(end=""),
    "magic-only.tdd": b"2dData",
    "empty.tdd": b"",
    "text-map.tdd": (GRID + FOUR).encode(),
})

# ---- sessions --------------------------------------------------------------------------------

HEAD = "[Session]\nVersion=1\n\n"
SESSION = HEAD + """[Edge]
EdgeE=7120
PreEEndDE=-40
PostEStartDE=90

[Ref1]
UseCB=true
XafsFS=refs/metal.dat
DE=0.5
Valence=0

[Target]
TargetFile=/data/target.dat

[Point1]
UseCB=1
VPointCB=true
Energy=7112
FileSelect=maps/7112.txt

[Method]
TypeNonEquiv=true
TypeTMK=LS
NonEquivBG=Linear

[Output]
SaveFSelect=result.dat

[View]
MapQuantity=C1
DispFiles=one.dat, "two, three.dat"
"""

save("session", {
    "session.ini": SESSION,
    "session-crlf.ini": SESSION.replace("\n", "\r\n"),
    "session-only.ini": HEAD,
    "version-missing.ini": "[Session]\n[Edge]\nEdgeE=1\n",
    "session-group-empty.ini": "[Session]\n",
    "version-2.ini": SESSION.replace("Version=1", "Version=2"),
    "version-odd.ini": SESSION.replace("Version=1", "Version=1, 1"),
    "no-session-group.ini": SESSION.replace("[Session]", "[Sessions]"),
    "no-group.ini": "Version=1\n" + SESSION,
    "no-newline.ini": SESSION[:-1],
    "mark-utf8.ini": "\ufeff" + SESSION,
    "mark-utf16.ini": b"\xff\xfe" + SESSION[:400].encode("utf-16-le"),
    "comments-blanks.ini": "; note\n# note\n\n  " + HEAD + "  [Edge]  \n  EdgeE =  7120  ; eV\n",
    "duplicate-keys.ini": HEAD + "[Edge]\nEdgeE=1\nEdgeE=2\n[Ref1]\nDE=1\n[Edge]\nEdgeE=3\n",
    "letter-case.ini": HEAD + "[edge]\nedgee=1\n[EDGE]\nEDGEE=2\n[method]\nTypeTMK=ls\n",
    "unknown-keys.ini": HEAD + "[Edge]\nEdgeF=1\n[Ref5]\nDE=1\n[Point0]\nEnergy=1\n[Ref01]\nDE=2\n",
    "many-unknown-keys.ini": HEAD + "[X]\n" + "".join("k%d=1\n" % i for i in range(30)),
    "unknown-choices.ini": HEAD + "[Method]\nTypeTMK=exact\nSubEforRef=\n[View]\nNormalize=4\n",
    "odd-boxes.ini": HEAD + "[Ref1]\nUseCB=TRUE\n[Ref2]\nUseCB=2\n[Ref3]\nUseCB=\n[Record]\nRecC1=0\n",
    "numbers-with-commas.ini": HEAD + "[Edge]\nEdgeE=7,120\nPreEEndDE=-50, 1, 2\n[Ref1]\nDE=,\n",
    "list-odd.ini": HEAD + "[View]\nDispFiles=a, ,, \"\", b,\"c\" ,\n",
    "list-one.ini": HEAD + "[View]\nDispFiles=\"one, two.dat\"\n",
    "list-empty.ini": HEAD + "[View]\nDispFiles=@Invalid()\n",
    "regions.ini": HEAD + "[Regions]\nRegion1=1 Rectangle 0 0 4 3\nRegion2=14 Polygon 0.5 0 9 1 2 7.25\n"
                          "[View]\nRegionsAlone=1\n",
    "regions-bad.ini": HEAD + "[Regions]\nRegion1=0 Rectangle 0 0 4 3\nRegion2=1 Polygon 0 0 nan 1 2 1e999\n"
                              "Region3=1, Polygon 0 0 1 1, 2 2\nRegion15=1 Rectangle 0 0 1 1\nRegion4=\n",
    "paths-up.ini": HEAD + "[Ref1]\nXafsFS=../a/./b/../c.dat\n[Ref2]\nXafsFS=..\n[Ref3]\nXafsFS=.\n",
    "paths-odd.ini": HEAD + "[Ref1]\nXafsFS=..a.dat\n[Ref2]\nXafsFS=//a//b/\n[Ref3]\nXafsFS=:/a\n"
                            "[Ref4]\nXafsFS=~/a\n[Target]\nTargetFile=C:\\\\a\\\\b.dat\n"
                            "[Point1]\nFileSelect=file:///a b\n[Point2]\nFileSelect= \" \" \n",
    "paths-japanese.ini": HEAD + "[Ref1]\nXafsFS=試料/ソ表.dat\n[Target]\nTargetFile=µt.dat\n",
    "paths-beyond-the-plane.ini": HEAD + "[Ref1]\nXafsFS=😀/𠮷.dat\n",
    "paths-at-sign.ini": HEAD + "[Ref1]\nXafsFS=\"scan,@7100 eV.dat\"\n[Ref2]\nXafsFS=a=@b.dat\n",
    "paths-double-slash.ini": HEAD + "[Ref1]\nXafsFS=a//b/./c/../d.dat\n",
    "paths-shift-jis.ini": HEAD.encode() + b"[Ref1]\nXafsFS=" + "試料.dat\n".encode("shift-jis"),
    "escapes.ini": HEAD + "[Ref1]\nDE=\\x41\\x3042\\0\\101\\t\\n\\\"\\;\\\\\\q\n[Ref2]\nDE=\\x\n",
    "escape-half-character.ini": HEAD + "[Ref1]\nDE=\\xd83d\n[Ref2]\nDE=\\xdc00\\xd800\n",
    "escaped-keys.ini": HEAD + "[%45dge]\nEdge%45=5\n[Ref1]\n%U0044E=2\n%ZZ=1\n",
    "continued-line.ini": HEAD + "[Edge]\nEdgeE=71\\\n20\nPreEEndDE=\"-5\\\n0\"\n",
    "quote-open.ini": HEAD + "[Ref1]\nXafsFS=\"a b\nDE=5\n[Ref2]\nDE=1\n",
    "quotes-within.ini": HEAD + "[Ref1]\nXafsFS=a\"b c\"d\nDE= \"1\" \"2\" \n",
    "group-open.ini": HEAD + "[Edge\nEdgeE=5\n",
    "group-nested.ini": HEAD + "[Edge/Deep]\nEdgeE=5\n[General]\nDE=1\n[%General]\nDE=2\n",
    "line-without-equals.ini": HEAD + "[Edge]\nEdgeE\n=5\n",
    "separators-in-keys.ini": "[Session]\nVersion=1\nEdge\\EdgeE=5\nA/B=6\n[]\nx=1\n",
    "zero-bytes.ini": HEAD.encode() + b"[Ref1]\nDE=1\0002\nValence\0=3\n",
    "type-invalid.ini": HEAD + "[Ref1]\nDE=@Invalid()\nXafsFS=@Invalid()\nValence=@@x\n",
    "type-bytes.ini": HEAD + "[Ref1]\nDE=@ByteArray(1.5)\nXafsFS=@ByteArray(\\xe3\\x81)\n",
    "type-rectangle.ini": HEAD + "[Ref1]\nDE=@Rect(1 2 3 4)\nXafsFS=@Size(1)\nValence=@Point(a b)\n",
    "type-variant.ini": HEAD + "[Ref1]\nDE=@Variant(\\0\\0\\0\\x2\\0\\0\\0\\x5)\n",
    "type-variant-list-2-gibi.ini": HEAD + "[Ref1]\nDE=@Variant(\\0\\0\\0\\x9\\x7f\\xff\\xff\\xff)\n",
    "type-variant-texts-2-gibi.ini": HEAD + "[Ref1]\nDE=\\x40V\\x61riant(\\0\\0\\0\\xb\\x7f\\xff\\xff\\xff)\n",
    "type-variant-cut.ini": HEAD + "[Ref1]\nDE=@Variant(\\0\\0\n[Ref2]\nDE=@Variant(\n",
    "type-unclosed.ini": HEAD + "[Ref1]\nDE=@Invalid(\nXafsFS=@\nValence=@x\n",
    "empty.ini": "",
    "text-map.ini": GRID + FOUR,
    "typed-plain.txt": "maps/7112.txt\n7112.5\n \n,\n;\n\"\n\\\na b\n%1\n試料\n[x]\n=\n#\n'\n",
    "typed-at-signs.txt": "@\n@Invalid()\n@@\n@ByteArray(1)\n",
    "typed-comma-at-sign.txt": "scan,@7100 eV.dat\n",
    "typed-equals-at-sign.txt": "t=@20.dat\n",
    "typed-mark.txt": "7112\n\ufeff7112\n",
    "typed-odd-names.txt": "..a\n:\n:/a\n~\n~/a\n%41\na \n a\n.\n",
})

# ---- line items ------------------------------------------------------------------------------

save("lineitems", {
    "plain": "one two  three",
    "blanks-around": "  \t one\ttwo \r\n ",
    "quoted-blank": "\"x y\" z",
    "quoted-empty": "\"\" \"\"\"\" x",
    "quote-open": "\"x y z",
    "quote-open-later": "a \"x y",
    "quote-last": "x y z\"",
    "quote-single": "\"",
    "quote-blank": "\" ",
    "quote-within": "x\"y z\"w",
    "quotes-touching": "\"a\"\"b\"c \"d",
    "commas": "a,b,\"c,d\",,",
    "escaped": "\\\"a\\\\\"b\\",
    "numbers": "1 -1 +1.5 .5 5. - + . -. 1.2.3 1e5 --1 +-1 0x1 1,5",
    "numbers-other-digits": "\uff11\uff12 \u0661 \u00bd \u00b2 1\uff0e5",
    "other-blanks": "a\u00a0b\u3000c\u2028d\u0085e\u200bf",
    "beyond-the-plane": "😀 \"𠮷 野\" x",
    "bad-utf8": b"a\xe3 \xff\"b \xf0\x9f",
    "zero-bytes": b"a\0b \"c\0 d\" \0",
    "placeholders": "%1 \"%2 %3 \"%1",
    "empty": "",
    "white-only": " \t\r\n\x0b\x0c",
})

# ---- numbers of the fast way -----------------------------------------------------------------

FAST_HEADER = "# X-NUM 6\n# Y-NUM 5\n# I : 1\n# I0 : 0\n"
FAST_NUMBERS = ("8000 -2.5 +.5 . 7. -0 1e3 1E-3 1e 1e+ e5 nan -nan inf 1e400 -1e-400 4.9e-324 1,5 0x10 "
                "1_0 --1 +-1 12345678901234567890 0.1234567890123456789 9007199254740993 "
                "2.2250738585072011e-308 1.7976931348623159e308 #1 1# \x1a \u0663 8000\u00a0-1 1\r2").split(" ")
FAST_LINES = "".join("%s 1\n2 %s\r\n%s\n3 %s\t4 5 6\n" % (n, n, n, n) for n in FAST_NUMBERS)

save("fasttext", {
    "numbers.dat": FAST_LINES,
    "numbers-scanner.txt": "# 1306\n" + FAST_HEADER + FAST_LINES,
    "numbers-beamline.txt": "# 2003901\n" + FAST_HEADER + FAST_LINES,
    "numbers-scan.dat": SCAN_MODES + "Offset\n" + "".join("9 %s 1 7 %s\n" % (n, n) for n in FAST_NUMBERS),
    "blanks.dat": "".join("%s1%s2%s3%s4\n%s\n" % (b, b, b, b, b)
                          for b in (" ", "\t", "  \t ", "\f", "\v", "\u00a0", "\u3000", "\u2028")),
    "comments.dat": "# 1 2\n #3 4\n\t# 5\n6 # 7\n8 9 # 10\n11#12 13\n#",
    "line-ends.dat": "1 2\r\r\n\r3\r 4\r\n\n5 6\r7\n\r\n8 9",
    "marks-within.txt": FAST_HEADER + "\ufeff1 2 3 4\n1 \ufeff2 3\n\ufeff# X-NUM 7\n1 2 3 4\ufeff\n",
    "zero-bytes.txt": FAST_HEADER + "1 2 3 4\0 5\n1 2\0 3\n\0\n1 2 3 \0\n",
})

# ---- the beginnings of the example data --------------------------------------------------------

EXAMPLES = os.path.join(os.path.dirname(HERE), "examples")


def beginnings(pattern, step=1, limit=2000):
    """Of each file the header, and then every so many lines while they fit."""
    cut = {}
    for path in sorted(glob.glob(os.path.join(EXAMPLES, "data", pattern))):
        lines = open(path, "rb").read().splitlines(keepends=True)
        kept = b""
        for line in lines[:10] + lines[10::step]:
            if len(kept) + len(line) > limit:
                break
            kept += line
        cut["example-" + os.path.basename(path)] = kept
    return cut


save("session", {"example-" + os.path.basename(path): open(path, "rb").read()
                 for path in glob.glob(os.path.join(EXAMPLES, "*.ini"))})
save("spectrum", beginnings("refs/*.dat", 15))
save("spectrum", beginnings("film/target.dat", 20))
save("textmap", beginnings("film/f83*.txt"))
save("textmap", beginnings("film/f8446.txt"))
save("processed", {"example-p8350.tdd": open(path, "rb").read()[:2000]
                   for path in glob.glob(os.path.join(EXAMPLES, "data", "*", "p8350.tdd"))})
