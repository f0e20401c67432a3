#!/usr/bin/python3
"""The converters of tools/, on images that are made here.

    test_tools.py ORVEL_BATCH ORVEL_PHANTOM TOOLS_FOLDER EXAMPLES_FOLDER [Class.test ...]

The round trips turn the maps of orvel-phantom, whose truth is known, into images, these by a converter
into maps again, run an example session on them and let the phantom judge, by its own bounds.

Status 77: a Python package is missing.
"""

import os
import shutil
import subprocess
import sys
import tempfile
import unittest

try:
    import h5py
    import numpy
    import tifffile
    from PIL import Image
except ImportError as error:
    print(f"skipped: {error}; ./check --all installs what is needed")
    sys.exit(77)

BATCH, PHANTOM, TOOLS, EXAMPLES = map(os.path.abspath, sys.argv[1:5])

SAMPLE = numpy.array([[100.0, 200.0, 300.0], [50.0, 80.0, 1000.0]])
FLAT = numpy.array([[200.0, 600.0, 450.0], [350.0, 120.0, 500.0]])


class Folder(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.mkdtemp(prefix="orvel tools ")
        self.addCleanup(shutil.rmtree, self.folder)

    def path(self, name):
        return os.path.join(self.folder, name)

    def tool(self, name, *arguments, status=0, says=""):
        """Runs a converter in the folder; its output, or what it complained."""
        done = subprocess.run(
            ["/usr/bin/python3", os.path.join(TOOLS, name), *arguments],
            cwd=self.folder,
            capture_output=True,
            text=True,
            check=False,
        )
        self.assertEqual(done.returncode, status, done.stderr)
        text = done.stderr if status else done.stdout
        self.assertIn(says, text)
        self.assertNotIn("Traceback", done.stderr)
        return text

    def tiff(self, name, images, **options):
        tifffile.imwrite(self.path(name), numpy.asarray(images), photometric="minisblack", **options)

    def hdf(self, name, datasets, attributes=()):
        with h5py.File(self.path(name), "w") as file:
            for path, value in datasets.items():
                file[path] = value
            for path, key, value in attributes:
                file[path].attrs[key] = value

    def pairs(self, *extra):
        """Images for the faults, as TIFF and HDF5."""
        self.tiff("8331eV.tif", SAMPLE)
        self.tiff("flat.tif", FLAT)
        self.hdf("s.h5", {"/e/sample": SAMPLE, "/e/flat": FLAT})

    def lines(self, name):
        """Header and data lines of a text map."""
        with open(self.path(name), encoding="utf-8") as file:
            lines = file.read().splitlines()
        return (
            [line for line in lines if line.startswith("#")],
            [line.split() for line in lines if not line.startswith("#")],
        )

    def absorptions(self, name):
        """By the rules that docs/formats.md states for text maps, of the columns alone."""
        columns = numpy.array([[float(item) for item in line] for line in self.lines(name)[1]])
        return numpy.log(columns[:, 3] / columns[:, 2])


class TextMaps(Folder):
    def test_whole_file(self):
        self.tiff("ni 8331.5eV.tif", SAMPLE.astype("uint16"))
        self.tiff("flat.tif", FLAT.astype("uint16"))
        self.tiff("dark.tif", numpy.full((2, 3), 10, "uint16"))
        said = self.tool(
            "tiff2map",
            "ni 8331.5eV.tif",
            "flat.tif",
            "m.txt",
            "--dark",
            "dark.tif",
            "--pixel",
            "0.65,0.5",
            "--origin=-1,2",
        )
        self.assertEqual(said, "m.txt: 3 x 2, 8331.5 eV, 0 pixels without absorption\n")
        with open(self.path("m.txt"), encoding="ascii") as file:
            self.assertEqual(
                file.read(),
                """\
# made by tiff2map
# SAMPLE : ni 8331.5eV.tif
# FLAT : flat.tif
# DARK : dark.tif
# ENERGY : 8331.5 eV
# AXIS 0 X um -1 0.3 2
# AXIS 1 Y um 2 2.5 1
# x y I I0
-1 2 90 190
-0.35 2 190 590
0.3 2 290 440
-1 2.5 40 340
-0.35 2.5 70 110
0.3 2.5 990 490
""",
            )

    def test_whole_processed_file(self):
        self.hdf("n.h5", {"s": SAMPLE[:1, :2], "f": numpy.array([[100.0, -1.0]])})
        self.tool("hdf2map", "n.h5:/s", ":/f", "m.tdd", "--format", "processed", "--energy", "8331.5")
        with open(self.path("m.tdd"), "rb") as file:
            whole = file.read()
        self.assertEqual(len(whole), 530)  # of two pixels, in docs/formats.md
        self.assertEqual(
            whole[:512].rstrip(b"\0").decode("latin-1"),
            "2dData-V0.0 HeaderSize: 512".ljust(64)
            + """
WIDTH: 2
HEIGHT: 1
DATA_ID: n.h5:/s 8331.5 eV
DATA_STRUCTURE: Header of Size ( HeaderSize: ), Row Double Data Block of pixels ( WIDTH: * HEIGHT ), \
Row Bool Valid Flag Block of pixels ( WIDTH: * HEIGHT )\x20
SIZE_OF_DOUBLE: 8
SIZE_OF_BOOL: 1
MIN_VAL: 0
MAX_VAL: 0
END_OF_HEADER:
""",
        )
        self.assertEqual(whole[512:520] + whole[528:], bytes(8) + b"\1\0")

    def test_kinds_of_numbers(self):
        wanted = numpy.log(FLAT / SAMPLE).ravel()
        for kind in ("uint8", "uint16", ">u2", "int32", ">i4", "float32", "float64", ">f8"):
            for tool in ("tiff2map", "hdf2map"):
                scale = 0.125 if kind == "uint8" else 1.0  # exactly kept by all, but for rounding there
                sample, flat = (numpy.floor(image * scale).astype(kind) for image in (SAMPLE, FLAT))
                with self.subTest(kind=kind, tool=tool):
                    if tool == "tiff2map":
                        order = ">" if kind.startswith(">") else "<"
                        self.tiff("s.bin", sample, byteorder=order)
                        self.tiff("f.bin", flat, byteorder=order)
                        self.tool(tool, "s.bin", "f.bin", "m.txt", "--energy", "8331")
                    else:
                        self.hdf("s.bin", {"s": sample, "f": flat})
                        self.tool(tool, "s.bin:/s", ":/f", "m.txt", "--energy", "8331")
                    if scale == 1.0:
                        numpy.testing.assert_array_equal(self.absorptions("m.txt"), wanted)
                    else:
                        numpy.testing.assert_array_equal(
                            self.absorptions("m.txt"), numpy.log(flat / sample.astype(float)).ravel()
                        )

    def test_every_digit_is_kept(self):
        sample, flat = numpy.random.default_rng(7).uniform(1e-3, 1e5, (2, 20, 30))
        self.hdf("s.h5", {"s": sample, "f": flat})
        self.tool("hdf2map", "s.h5:/s", ":/f", "m.txt", "--no-energy")
        header, data = self.lines("m.txt")
        self.assertNotIn("ENERGY", " ".join(header))
        self.assertEqual([float(line[2]) for line in data], sample.ravel().tolist())
        self.assertEqual([float(line[3]) for line in data], flat.ravel().tolist())
        self.assertEqual([line[:2] for line in data[29:31]], [["29", "0"], ["0", "1"]])

    def test_rows_can_be_turned(self):
        self.hdf("s.h5", {"s": SAMPLE, "f": FLAT})
        self.tool("hdf2map", "s.h5:/s", ":/f", "m.txt", "--no-energy", "--flip-y")
        self.assertEqual(
            [line[2] for line in self.lines("m.txt")[1]], ["50", "80", "1000", "100", "200", "300"]
        )

    def test_pixels_without_absorption(self):
        inf, nan = numpy.inf, numpy.nan
        sample = numpy.array([[0.0, -1.0, 5.0, 5.0, -5.0, nan, 5.0, inf, 5.0]])
        flat = numpy.array([[9.0, 9.0, 0.0, -9.0, -9.0, 9.0, nan, 9.0, 9.0]])
        self.hdf("s.h5", {"s": sample, "f": flat})
        self.tool("hdf2map", "s.h5:/s", ":/f", "m.txt", "--no-energy", says="8 pixels without absorption")
        self.assertEqual([line[2:] for line in self.lines("m.txt")[1]], [["nan", "1"]] * 8 + [["5", "9"]])
        self.tool("hdf2map", "s.h5:/s", ":/f", "m.tdd", "--no-energy", "--format", "processed")
        with open(self.path("m.tdd"), "rb") as file:
            tail = file.read()[512:]
        values = numpy.frombuffer(tail[:72], "<f8")
        self.assertTrue(numpy.isnan(values[:8]).all())
        self.assertEqual(values[8], numpy.log(9.0 / 5.0))
        self.assertEqual(tail[72:], bytes(8) + b"\1")

    def test_names_cannot_break_the_header(self):
        name = "a\n# ENERGY : 1 eV\n8331 é \udcff.tif"
        self.tiff(name, SAMPLE)
        self.tiff("flat.tif", FLAT)
        self.tool("tiff2map", name, "flat.tif", "m.txt", "--energy", "8331")
        header, data = self.lines("m.txt")
        self.assertEqual(sum(line.startswith("# ENERGY") for line in header), 1)
        self.assertEqual(len(data), 6)


class Stacks(Folder):
    def test_a_map_an_image(self):
        for tool in ("tiff2map", "hdf2map"):
            with self.subTest(tool):
                stack = numpy.stack([SAMPLE, SAMPLE / 2, SAMPLE / 4])
                if tool == "tiff2map":
                    self.tiff("s.tif", stack)
                    self.tiff("f.tif", FLAT)
                    self.tool(
                        tool, "s.tif", "f.tif", "t{energy}_{index}.txt", "--energy", "8300,8331.5,9000"
                    )
                else:
                    self.hdf(
                        "s.h5",
                        {"s": stack, "f": FLAT[numpy.newaxis], "energy": [8.3, 8.3315, 9.0]},
                        [("energy", "units", "keV")],
                    )
                    self.tool(tool, "s.h5:/s", ":/f", "t{energy}_{index}.txt")
                for i, energy in enumerate(("8300", "8331.5", "9000")):
                    name = f"t{energy}_{i}.txt"
                    self.assertIn(f"# ENERGY : {energy} eV", self.lines(name)[0])
                    # The images are halves of each other exactly, so only the logarithm rounds.
                    numpy.testing.assert_allclose(
                        self.absorptions(name),
                        numpy.log(FLAT / SAMPLE).ravel() + i * numpy.log(2),
                        rtol=0,
                        atol=1e-14,
                    )
                    os.unlink(self.path(name))

    def test_flats_and_darks_go_with_their_image(self):
        stack = numpy.stack([SAMPLE, SAMPLE])
        self.hdf(
            "s.h5",
            {"s": stack, "f": numpy.stack([FLAT, 2 * FLAT]), "d": numpy.stack([0 * FLAT, 10 + 0 * FLAT])},
        )
        self.tool("hdf2map", "s.h5:/s", ":/f", "m{index}.txt", "--dark", ":/d", "--no-energy")
        self.assertEqual(self.lines("m0.txt")[1][0], ["0", "0", "100", "200"])
        self.assertEqual(self.lines("m1.txt")[1][0], ["0", "0", "90", "390"])

    def test_means(self):
        self.tiff("8331eV.tif", numpy.stack([SAMPLE, SAMPLE + 2]))
        self.tiff("f.tif", numpy.stack([FLAT, FLAT + 3, FLAT + 6]))
        self.tool("tiff2map", "8331eV.tif", "f.tif", "m.txt", "--mean")
        self.assertEqual(self.lines("m.txt")[1][0], ["0", "0", "101", "203"])


class Energies(Folder):
    def test_names_of_tiff_files(self):
        self.tiff("flat.tif", FLAT)
        for name, options, energy in (
            ("ni_8331eV_01.tif", [], "8331"),
            ("12_8.3315_keV.tif", [], "8331.5"),
            ("a8331.25EV.tif", [], "8331.25"),
            ("8331eV_flat8331eV.tif", [], "8331"),
            ("e083315.tif", ["--energy-pattern", r"e(\d{5})\d"], "8331"),
            ("8p331.tif", ["--energy-pattern", r"331", "--energy-unit", "eV"], "331"),
            ("x8.331.tif", ["--energy-pattern", r"\d\.\d+", "--energy-unit", "keV"], "8331"),
            ("9000eV.tif", ["--energy", "8331"], "8331"),
        ):
            with self.subTest(name):
                self.tiff(name, SAMPLE)
                self.tool("tiff2map", name, "flat.tif", "m.txt", *options)
                self.assertIn(f"# ENERGY : {energy} eV", self.lines("m.txt")[0])

    def test_names_that_tell_none(self):
        self.tiff("flat.tif", FLAT)
        for name, says in (
            ("ni.tif", "the files tell no energy"),
            ("8331eVx.tif", "the files tell no energy"),
            ("8331,5eV.tif", "the files tell no energy"),
            ("8p5keV.tif", "the files tell no energy"),
            ("8331eV_8340eV.tif", "several energies"),
            ("8.331eV.tif", "8.331 eV is no photon energy"),
        ):
            with self.subTest(name):
                self.tiff(name, SAMPLE)
                self.tool("tiff2map", name, "flat.tif", "m.txt", status=3, says=says)

    def test_tags_of_tiff_files(self):
        self.tiff("flat.tif", FLAT)
        for kind, value, options, energy in (
            ("d", 8331.5, [], "8331.5"),
            ("I", 8331, [], "8331"),
            ("2I", (16663, 2), [], "8331.5"),
            ("s", "8331.5", [], "8331.5"),
            ("s", "Energy: 8.3315 keV, 5 s", [], "8331.5"),
            ("s", "mono=8331.5;", ["--energy-pattern", r"mono=([\d.]+)"], "8331.5"),
            ("d", 8.3315, ["--energy-unit", "keV"], "8331.5"),
        ):
            with self.subTest(value=value):
                count = 2 if kind == "2I" else 0 if kind == "s" else 1
                self.tiff("s.tif", SAMPLE, extratags=[(65000, kind[-1], count, value, True)])
                self.tool("tiff2map", "s.tif", "flat.tif", "m.txt", "--energy-tag", "65000", *options)
                self.assertIn(f"# ENERGY : {energy} eV", self.lines("m.txt")[0])
        self.tool(
            "tiff2map", "s.tif", "flat.tif", "m.txt", "--energy-tag", "65001", status=3, says="no tag 65001"
        )
        self.tool(
            "tiff2map",
            "s.tif",
            "flat.tif",
            "m.txt",
            "--energy-tag",
            "ImageWidth",
            status=3,
            says="no photon energy",
        )

    def test_a_tag_a_page(self):
        with tifffile.TiffWriter(self.path("s.tif")) as file:
            for i, energy in enumerate((8300.0, 8400.0)):
                file.write(
                    SAMPLE * (i + 1),
                    extratags=[(65000, "d", 1, energy, True)],
                    contiguous=False,
                    photometric="minisblack",
                    metadata=None,
                )
        self.tiff("flat.tif", FLAT)
        self.tool("tiff2map", "s.tif", "flat.tif", "{energy}.txt", "--energy-tag", "65000")
        self.assertEqual(self.lines("8400.txt")[1][0], ["0", "0", "200", "200"])

    def test_nexus_files(self):
        self.hdf(
            "n.nxs",
            {
                "/entry/data/counts": SAMPLE,
                "/entry/flat/counts": FLAT,
                "/entry/instrument/mono/energy": 8.3315,
                "/entry/instrument/detector/pitch": 6.5e-7,
            },
            [
                ("/", "default", "entry"),
                ("/entry", "default", "data"),
                ("/entry/data", "signal", "counts"),
                ("/entry/data", "NX_class", "NXdata"),
                ("/entry/instrument", "NX_class", "NXinstrument"),
                ("/entry/instrument/mono", "NX_class", "NXmonochromator"),
                ("/entry/instrument/mono/energy", "units", "keV"),
                ("/entry/instrument/detector/pitch", "units", "m"),
            ],
        )
        self.tool(
            "hdf2map",
            "n.nxs",
            ":/entry/flat/counts",
            "m.txt",
            "--pixel-dataset",
            ":/entry/instrument/detector/pitch",
        )
        header, data = self.lines("m.txt")
        self.assertIn("# ENERGY : 8331.5 eV", header)
        self.assertIn("# AXIS 0 X um 0 1.3 2", header)
        self.assertEqual(data[0], ["0", "0", "100", "200"])

    def test_nexus_files_without_defaults(self):
        self.hdf(
            "n.nxs",
            {"/scan/data/counts": SAMPLE, "/scan/data/energy": [8331.5], "/f": FLAT},
            [
                ("/scan", "NX_class", b"NXentry"),
                ("/scan/data", "NX_class", b"NXdata"),
                ("/scan/data", "signal", b"counts"),
            ],
        )
        self.tool("hdf2map", "n.nxs", "n.nxs:/f", "m.txt", says="8331.5 eV")
        self.hdf("e.h5", {"/e": [8.3325]})
        self.tool(
            "hdf2map",
            "n.nxs",
            ":/f",
            "m.txt",
            "--energy-dataset",
            "e.h5:/e",
            "--energy-unit",
            "keV",
            says="8332.5 eV",
        )


class Faults(Folder):
    def test_arguments_and_inputs(self):
        self.pairs()
        self.tiff("small.tif", SAMPLE[:, :2])
        self.tiff("rgb.bin", numpy.zeros((2, 3), "uint8"))
        Image.new("RGB", (3, 2)).save(self.path("rgb.tif"))
        self.tiff("three.tif", numpy.stack([SAMPLE] * 3))
        self.tiff("two.tif", numpy.stack([SAMPLE] * 2))
        with open(self.path("8331eV.tif"), "rb") as whole, open(self.path("cut.tif"), "wb") as cut:
            cut.write(whole.read()[:-20])
        with open(self.path("text.tif"), "w", encoding="ascii") as file:
            file.write("no image")
        self.hdf(
            "odd.h5",
            {
                "/one": [1.0, 2.0],
                "/text": "x",
                "/image": SAMPLE,
                "/deg": 8331.0,
                "/empty": numpy.zeros((0, 3)),
                "/complex": SAMPLE + 1j,
                "/null": h5py.Empty("f8"),
            },
            [("/deg", "units", "deg")],
        )
        before = set(os.listdir(self.folder))
        t, h = "tiff2map", "hdf2map"
        for tool, arguments, status, says in (
            (t, [], 2, "usage"),
            (t, ["8331eV.tif", "flat.tif", "m.txt", "--colour"], 2, "--colour"),
            (t, ["8331eV.tif", "flat.tif", "m.txt", "--ener", "8331"], 2, "--ener"),
            (t, ["8331eV.tif", "flat.tif", "m.txt", "--energy", "8331eV"], 2, "invalid number list value"),
            (t, ["8331eV.tif", "flat.tif", "m.txt", "--pixel", "0"], 2, "invalid pixel size value"),
            (t, ["8331eV.tif", "flat.tif", "m.txt", "--energy-pattern", "("], 2, "no regular expression"),
            (t, ["8331eV.tif", "flat.tif", "m.txt", "--energy", "nan"], 2, "invalid number list value"),
            (t, ["8331eV.tif", "flat.tif", "flat.tif"], 2, "also an input"),
            (t, ["8331eV.tif", "flat.tif", "./8331eV.tif"], 2, "also an input"),
            (t, ["8331eV.tif", "flat.tif", "{energy}", "--no-energy"], 2, "no energy for {energy}"),
            (t, ["three.tif", "flat.tif", "m.txt", "--energy", "8300,8301,8302"], 2, "names of their own"),
            (t, ["8331eV.tif", "flat.tif", "m.txt", "--energy", "8.3"], 3, "8.3 eV is no photon energy"),
            (
                t,
                ["three.tif", "flat.tif", "{index}", "--energy", "8300,8301"],
                3,
                "2 energies for 3 images",
            ),
            (t, ["three.tif", "two.tif", "{index}", "--no-energy"], 3, "two.tif holds 2 images"),
            (t, ["8331eV.tif", "small.tif", "m.txt"], 3, "small.tif has 2 x 2 pixels, 8331eV.tif 3 x 2"),
            (
                t,
                ["8331eV.tif", "flat.tif", "m.txt", "--dark", "small.tif"],
                3,
                "small.tif has 2 x 2 pixels",
            ),
            (t, ["8331eV.tif", "rgb.tif", "m.txt"], 3, "no grey images"),
            (t, ["missing.tif", "flat.tif", "m.txt"], 3, "cannot read missing.tif: No such file"),
            (t, [".", "flat.tif", "m.txt"], 3, "cannot read .: "),
            (t, ["text.tif", "flat.tif", "m.txt"], 3, "cannot read text.tif"),
            (t, ["cut.tif", "flat.tif", "m.txt", "--no-energy"], 3, "cannot read cut.tif"),
            (h, ["missing.h5", ":/f", "m.txt"], 3, "cannot read missing.h5"),
            (h, ["text.tif", ":/f", "m.txt"], 3, "cannot read text.tif"),
            (h, [":/f", ":/f", "m.txt"], 2, "names no file"),
            (h, ["s.h5:/e/flat2", ":/e/flat", "m.txt"], 3, "\n  /e/sample (2, 3) float64"),
            (h, ["s.h5", ":/e/flat", "m.txt"], 3, "\n  /e/sample (2, 3) float64"),
            (h, ["s.h5:/e", ":/e/flat", "m.txt"], 3, "no dataset /e;"),
            (h, ["s.h5:/e/sample", ":/e/flat", "m.txt"], 3, "the files tell no energy"),
            (h, ["s.h5:/e/sample", ":/e/flat", "m.txt", "--energy-dataset", "odd.h5:/deg"], 3, "is in deg"),
            (
                h,
                ["s.h5:/e/sample", ":/e/flat", "m.txt", "--energy-dataset", "odd.h5:/text"],
                3,
                "no plain numbers",
            ),
            (
                h,
                ["s.h5:/e/sample", ":/e/flat", "m.txt", "--energy-dataset", "odd.h5:/null"],
                3,
                "is empty",
            ),
            (h, ["odd.h5:/one", ":/image", "m.txt"], 3, "1 dimensions"),
            (h, ["odd.h5:/complex", ":/image", "m.txt"], 3, "no plain numbers"),
            (h, ["odd.h5:/empty", ":/image", "m.txt"], 3, "no pixel"),
            (
                h,
                ["s.h5:/e/sample", ":/e/flat", "m.txt", "--no-energy", "--pixel-dataset", "odd.h5:/one"],
                3,
                "no unit",
            ),
            (h, ["s.h5:/e/sample", ":/e/flat", "s.h5", "--no-energy"], 2, "also an input"),
            (
                h,
                ["s.h5:/e/sample", ":/e/flat", "no/m.txt", "--no-energy"],
                4,
                "cannot write no/m.txt: No such file",
            ),
            (h, ["s.h5:/e/sample", ":/e/flat", ".", "--no-energy"], 4, "no regular file"),
        ):
            with self.subTest(tool=tool, arguments=arguments):
                self.tool(tool, *arguments, status=status, says=says)
                self.assertEqual(set(os.listdir(self.folder)), before)

    def test_no_map_of_a_broken_stack(self):
        """The third image cannot be read: neither of the first two is there, an old map is whole."""
        with h5py.File(self.path("s.h5"), "w") as file:
            numbers = numpy.random.default_rng(1).uniform(1, 2, (3, 64, 64))
            sample = file.create_dataset("s", data=numbers, chunks=(1, 64, 64), compression="gzip")
            file["f"] = numbers[0]
            broken = sample.id.get_chunk_info(2)
        with open(self.path("s.h5"), "r+b") as file:
            file.seek(broken.byte_offset)
            file.write(bytes(broken.size))
        with open(self.path("m0.txt"), "w", encoding="ascii") as file:
            file.write("old")
        self.tool(
            "hdf2map", "s.h5:/s", ":/f", "m{index}.txt", "--no-energy", status=3, says="cannot read s.h5:/s"
        )
        self.assertEqual(sorted(os.listdir(self.folder)), ["m0.txt", "s.h5"])
        with open(self.path("m0.txt"), encoding="ascii") as file:
            self.assertEqual(file.read(), "old")

    def test_compressed_tiff_files(self):
        for compression in ("tiff_lzw", "tiff_adobe_deflate"):
            with self.subTest(compression):
                Image.fromarray(SAMPLE.astype("uint16")).save(self.path("s.tif"), compression=compression)
                Image.fromarray(FLAT.astype("float32")).save(self.path("f.tif"), compression=compression)
                self.tool("tiff2map", "s.tif", "f.tif", "m.txt", "--energy", "8331")
                numpy.testing.assert_array_equal(
                    self.absorptions("m.txt"), numpy.log(FLAT / SAMPLE).ravel()
                )


class RoundTrips(Folder):
    def setUp(self):
        super().setUp()
        subprocess.run([PHANTOM, "make", self.path("data")], check=True, capture_output=True)

    def absorption(self, name):
        """Of a map of the phantom, 128 x 128; and its corner and pitch."""
        with open(self.path(name), encoding="utf-8") as file:
            lines = file.read().splitlines()
        header = [line for line in lines if line.startswith("#")]
        columns = numpy.array(
            [[float(item) for item in line.split()] for line in lines if not line.startswith("#")]
        )
        if header[0].startswith("# 2003901"):
            values = numpy.log(columns[:, 3] / columns[:, 4])
        else:
            values = numpy.log((columns[:, 3] if columns.shape[1] > 3 else 1.0) / columns[:, 2])
        place = ["--pixel", f"{columns[1, 0] - columns[0, 0]}", f"--origin={columns[0, 0]},{columns[0, 1]}"]
        return values.reshape(128, 128), place

    def images(self, absorptions):
        """Sample and flat with a dark level; doubles, since the phantom judges to ten digits."""
        flat = numpy.random.default_rng(3).uniform(2e4, 6e4, absorptions[0].shape)
        return (
            [flat * numpy.exp(-a) + 100.0 for a in absorptions],
            flat + 100.0,
            numpy.full(flat.shape, 100.0),
        )

    def judge(self, name):
        shutil.copy(os.path.join(EXAMPLES, f"{name}.ini"), self.folder)
        done = subprocess.run(
            [BATCH, "--quiet", f"{name}.ini"], cwd=self.folder, capture_output=True, text=True, check=False
        )
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        done = subprocess.run(
            [PHANTOM, "compare", name, f"results/{name}.dat"],
            cwd=self.folder,
            capture_output=True,
            text=True,
            check=False,
        )
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)

    def test_hdf_stack_to_four_points(self):
        energies = [8260, 8320, 8340, 8347, 8446, 8520, 8640]
        read = [self.absorption(f"data/film/f{energy}.txt") for energy in energies]
        samples, flat, dark = self.images([values for values, _ in read])
        self.hdf(
            "film.h5",
            {
                "/scan/sample": numpy.stack(samples),
                "/scan/energy": numpy.array(energies) / 1000,
                "/scan/flat": flat,
                "/scan/dark": dark,
            },
            [("/scan/energy", "units", "keV")],
        )
        for energy in energies:
            os.unlink(self.path(f"data/film/f{energy}.txt"))
        self.tool(
            "hdf2map",
            "film.h5:/scan/sample",
            ":/scan/flat",
            "data/film/f{energy}.txt",
            "--dark",
            ":/scan/dark",
            *read[0][1],
        )
        self.judge("least-squares")

    def test_tiff_images_to_the_nonequivalent_method(self):
        for energy in (8000, 8320, 8340, 8346, 8350, 8356, 8446, 8900):
            options = []
            if energy == 8350:  # the phantom's own processed map
                name, options = "data/particles/p8350.tdd", ["--format", "processed"]
                with open(self.path(name), "rb") as file:
                    values = numpy.frombuffer(file.read()[512 : 512 + 8 * 128 * 128], "<f8").reshape(
                        128, 128
                    )
            else:
                name = f"data/particles/p{energy}.txt"
                values, options = self.absorption(name)
            samples, flat, dark = self.images([values])
            self.tiff(f"ni_{energy}eV.tif", samples[0])
            self.tiff("flat.tif", flat)
            self.tiff("dark.tif", dark)
            os.unlink(self.path(name))
            self.tool("tiff2map", f"ni_{energy}eV.tif", "flat.tif", name, "--dark", "dark.tif", *options)
        self.judge("nonequiv-vic")

    def test_pixels_without_absorption_are_no_numbers(self):
        """orvel-batch takes what has no absorption as not-a-number, and its neighbours as they are."""
        values, place = self.absorption("data/film/f8347.txt")
        samples, flat, dark = self.images([values])
        flat[0, 1] = 0.0
        samples[0][0, 2] = 50.0  # below the dark level
        self.hdf("s.h5", {"s": samples[0], "f": flat, "d": dark})
        self.tool(
            "hdf2map", "s.h5:/s", ":/f", "data/film/f8347.txt", "--dark", ":/d", "--energy", "8347", *place
        )
        shutil.copy(os.path.join(EXAMPLES, "three-points.ini"), self.folder)
        subprocess.run(
            [BATCH, "--quiet", "three-points.ini"], cwd=self.folder, capture_output=True, check=True
        )
        with open(self.path("results/three-points.dat"), encoding="utf-8") as file:
            lines = [line.split() for line in file if line.strip() and not line.startswith("#")]
        self.assertEqual([line[3] == "nan" for line in lines[:4]], [False, True, True, False])
        self.assertEqual(sum(line[3] == "nan" for line in lines), 2)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[5:]])
