"""What tiff2map and hdf2map share: from stacks of images to map files of orvel.

A stack is an object with
    name    for messages and headers
    path    its file
    count   images in it
    shape   (rows, columns) of each
    image(i)  image i as doubles, rows x columns

Map layouts: docs/formats.md, "Text maps" and "Processed maps".
"""

import argparse
import math
import os
import re
import signal
import sys

try:
    import numpy
except ImportError:
    numpy = None

NO_PACKAGE, BAD_USAGE, BAD_INPUT, BAD_OUTPUT = 1, 2, 3, 4

MOST_PIXELS = 1 << 27  # orvel refuses larger maps
LEAST_EV = 50.0  # below any absorption edge that is imaged: such a number is in keV, or is no energy

ENDING = """
Absorption is ln(flat / sample), both less the dark image where one is given. A pixel whose sample or
flat is then zero, negative or not a number has none: text maps hold "nan 1" there, processed maps
not-a-number with flag 0, and the number of such pixels is printed. (As they stand, orvel would take
the sample's counts for the absorption where the flat is 0, and 1 where the sample is 0.)

Several images in SAMPLE give a map each; FLAT and DARK then hold as many, or one for all. All maps
are written before the first takes its name, and an older map of that name is replaced.

Exit status: 0 all maps are written; 1 a Python package is missing; 2 wrong usage; 3 an input cannot
be read or used; 4 a map cannot be written.
"""


class Fault(Exception):
    def __init__(self, text, status=BAD_INPUT):
        super().__init__(text)
        self.status = status


def need(module, package):
    if module is None:
        raise Fault(f"{package} is missing; on Debian: apt-get install {package}", NO_PACKAGE)


# Arguments


def numbers(text):
    """Numbers between commas."""
    values = [float(item) for item in text.split(",")]
    if not all(math.isfinite(value) for value in values):
        raise ValueError(text)
    return values


def pair(text):
    values = numbers(text)
    if len(values) > 2:
        raise ValueError(text)
    return values[0], values[-1]


def pixel_pair(text):
    values = pair(text)
    if min(values) <= 0:
        raise ValueError(text)
    return values


def origin_pair(text):
    values = numbers(text)
    if len(values) != 2:
        raise ValueError(text)
    return tuple(values)


# argparse names these functions when a value is wrong: 'invalid numbers value: "8331eV"'.
numbers.__name__ = "number list"
pixel_pair.__name__ = "pixel size"
origin_pair.__name__ = "origin"


def regular_expression(text):
    try:
        return re.compile(text)
    except re.error as error:
        raise argparse.ArgumentTypeError(f"{text!r} is no regular expression: {error}") from error


def argument_parser(program, description, sample_help):
    parser = argparse.ArgumentParser(
        prog=program,
        description=description,
        epilog=ENDING,
        formatter_class=argparse.RawDescriptionHelpFormatter,
        allow_abbrev=False,  # a later option must not change what a script means
    )
    parser.add_argument("sample", metavar="SAMPLE", help=sample_help)
    parser.add_argument("flat", metavar="FLAT", help="the same without the sample")
    parser.add_argument(
        "out",
        metavar="OUT",
        help="map file; {energy} in it stands for the energy in eV, {index} for the number of the "
        "image from 0",
    )
    parser.add_argument("--dark", metavar="DARK", help="taken off SAMPLE and FLAT")
    parser.add_argument(
        "--mean",
        action="store_true",
        help="take the mean of all images in a file: repeated exposures, one map",
    )
    parser.add_argument(
        "--format",
        choices=("text", "processed"),
        default="text",
        help="text map with sample and flat (default), or processed map with the absorption alone, "
        "which has no energy and no positions that orvel reads",
    )
    parser.add_argument(
        "--flip-y", action="store_true", help="last row first: orvel draws row 0 at the bottom"
    )
    parser.add_argument("--energy", metavar="EV,...", type=numbers, help="energy of each image [eV]")
    parser.add_argument(
        "--energy-unit",
        choices=("eV", "keV"),
        default="eV",
        help="of energies in files that come without a unit; eV",
    )
    parser.add_argument("--no-energy", action="store_true", help="write no energy; the session gives it")
    parser.add_argument(
        "--pixel",
        metavar="SIZE[,Y]",
        type=pixel_pair,
        help="pixel size at the sample [um]; else positions count pixels",
    )
    parser.add_argument(
        "--origin",
        metavar="X,Y",
        type=origin_pair,
        help="position of the first pixel [um]; 0,0. A negative one as --origin=-80,20",
    )
    return parser


# Energies

_ENERGY = re.compile(r"(?<![\d])(?<!\d[.,pP])(\d+(?:\.\d+)?)\s*_?(k?eV)(?![a-z])", re.IGNORECASE)


def in_ev(value, unit):
    """An energy in eV; a Fault where it cannot be one."""
    energy = value * (1000.0 if unit.lower() == "kev" else 1.0)
    if not math.isfinite(energy) or energy < LEAST_EV:
        raise Fault(f"{value:g} {unit} is no photon energy here (is it in another unit? --energy-unit)")
    return energy


def energy_in_text(text, pattern, unit, where):
    """The energy that a file name or tag tells, or None.

    Without a pattern: the one number before "eV" or "keV". With one: its first group, or the whole
    of what it matches.
    """
    if pattern is not None:
        found = pattern.search(text)
        if found is None:
            return None
        item = found.group(1) if pattern.groups else found.group(0)
        try:
            return in_ev(float(item), unit)
        except (TypeError, ValueError):
            raise Fault(f"{where}: the pattern finds {item!r}, which is no number") from None
    found = {in_ev(float(number), named) for number, named in _ENERGY.findall(text)}
    if len(found) > 1:
        raise Fault(f"{where} names several energies; give --energy or --energy-pattern")
    return found.pop() if found else None


def settled_energies(args, count, from_files):
    """An energy per image, or None for all with --no-energy.

    from_files  called without --energy; gives a list, empty where the files tell none
    """
    if args.no_energy:
        if args.energy:
            raise Fault("--energy and --no-energy exclude each other", BAD_USAGE)
        return [None] * count
    energies = [in_ev(value, "eV") for value in args.energy] if args.energy else from_files()
    if not energies:
        raise Fault("the files tell no energy; give --energy, or --no-energy")
    if args.mean and len(set(energies)) == 1:
        energies = energies[:1]
    if len(energies) != count:
        raise Fault(f"{len(energies)} energies for {count} images")
    return energies


# Stacks


def check_kind(dtype, name):
    if dtype.kind not in "iuf":
        raise Fault(f"{name} holds no plain numbers but {dtype}")


class MeanStack:
    """The mean of all images of a stack, as a stack of one."""

    def __init__(self, stack):
        self.name, self.path, self.shape, self.count = stack.name, stack.path, stack.shape, 1
        self._stack = stack

    def image(self, _):
        total = numpy.zeros(self.shape)
        for i in range(self._stack.count):
            total += self._stack.image(i)
        return total / self._stack.count


def check_stacks(sample, others):
    if sample.shape[0] * sample.shape[1] > MOST_PIXELS:
        raise Fault(f"{sample.name} has more than {MOST_PIXELS} pixels an image")
    for stack in others:
        if stack.shape != sample.shape:
            raise Fault(
                f"{stack.name} has {stack.shape[1]} x {stack.shape[0]} pixels, "
                f"{sample.name} {sample.shape[1]} x {sample.shape[0]}"
            )
        if stack.count not in (1, sample.count):
            raise Fault(
                f"{stack.name} holds {stack.count} images, {sample.name} {sample.count} (see --mean)"
            )


# Maps


class Map:
    """One map, ready to be written."""

    def __init__(self, program, args, stacks, i, energy):
        """stacks  of sample, flat and perhaps dark"""
        self.program = program
        self.names = [stack.name for stack in stacks]
        self.energy = energy
        self.pixel, self.origin = args.pixel, args.origin or (0.0, 0.0)
        sample, flat, *dark = (stack.image(i if stack.count > 1 else 0) for stack in stacks)
        if dark:
            sample, flat = sample - dark[0], flat - dark[0]
        if args.flip_y:
            sample, flat = sample[::-1], flat[::-1]
        with numpy.errstate(invalid="ignore"):
            self.valid = (sample > 0) & (flat > 0) & numpy.isfinite(sample) & numpy.isfinite(flat)
        self.signal = numpy.where(self.valid, sample, numpy.nan)
        self.reference = numpy.where(self.valid, flat, 1.0)
        self.height, self.width = self.signal.shape

    def summary(self, path):
        energy = "no energy" if self.energy is None else f"{self.energy:.10g} eV"
        lost = int(self.valid.size - numpy.count_nonzero(self.valid))
        return f"{path}: {self.width} x {self.height}, {energy}, {lost} pixels without absorption"

    def write_text(self, file):
        unit = "pixel" if self.pixel is None else "um"
        places = [
            [f"{start + i * step:.10g}" for i in range(count)]
            for start, step, count in zip(self.origin, self.pixel or (1.0, 1.0), (self.width, self.height))
        ]
        lines = [f"# made by {self.program}"]
        for key, name in zip(("SAMPLE", "FLAT", "DARK"), self.names):
            lines.append(f"# {key} : {one_line(name)}")
        if self.energy is not None:
            lines.append(f"# ENERGY : {self.energy:.10g} eV")
        for axis, letter in enumerate("XY"):
            place = places[axis]
            lines.append(f"# AXIS {axis} {letter} {unit} {place[0]} {place[-1]} {len(place) - 1}")
        lines.append("# x y I I0\n")
        file.write("\n".join(lines).encode("utf-8"))
        for y, signals, references in zip(places[1], self.signal, self.reference):
            file.write(
                "".join(
                    f"{x} {y} {number_text(s)} {number_text(r)}\n"
                    for x, s, r in zip(places[0], signals.tolist(), references.tolist())
                ).encode("ascii")
            )

    def write_processed(self, file):
        absorption = numpy.log(self.reference / self.signal)
        valid = absorption[self.valid]
        low, high = (valid.min(), valid.max()) if valid.size else (1e300, -1e300)
        identity = one_line(self.names[0])[:200] + (
            "" if self.energy is None else f" {self.energy:.10g} eV"
        )
        rest = (
            f"WIDTH: {self.width}\nHEIGHT: {self.height}\nDATA_ID: {identity}\n"
            "DATA_STRUCTURE: Header of Size ( HeaderSize: ), "
            "Row Double Data Block of pixels ( WIDTH: * HEIGHT ), "
            "Row Bool Valid Flag Block of pixels ( WIDTH: * HEIGHT ) \n"
            f"SIZE_OF_DOUBLE: 8\nSIZE_OF_BOOL: 1\nMIN_VAL: {low:.6g}\nMAX_VAL: {high:.6g}\n"
            "END_OF_HEADER:\n"
        ).encode("latin-1", "replace")
        size = ((64 + 1 + len(rest)) // 256 + 1) * 256
        first = f"2dData-V0.0 HeaderSize: {size}".ljust(64).encode("ascii")
        file.write((first + b"\n" + rest).ljust(size, b"\0"))
        file.write(absorption.astype("<f8").tobytes())
        file.write(self.valid.astype("u1").tobytes())


def number_text(value):
    """Shortest text that reads back as the same double; counts without a point."""
    return str(int(value)) if value.is_integer() and abs(value) < 1e15 else repr(value)


def one_line(text):
    """File names may hold anything, header lines may not."""
    printable = "".join(c if c.isprintable() else "?" for c in text)
    return printable.encode("utf-8", "replace").decode("utf-8")


class Outputs:
    """Files that take their names together, in commit(), or not at all."""

    def __init__(self):
        self._waiting = []  # (temporary path, path)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        for temporary, _ in self._waiting:
            os.unlink(temporary)

    def write(self, path, writer):
        if os.path.exists(path) and not os.path.isfile(path):
            raise Fault(f"{path} is no regular file", BAD_OUTPUT)
        path = os.path.realpath(path)  # a link stays one
        temporary = os.path.join(os.path.dirname(path), f".{os.path.basename(path)}.{os.getpid()}.part")
        with open(temporary, "xb") as file:
            self._waiting.append((temporary, path))
            writer(file)
            file.flush()
            os.fsync(file.fileno())

    def commit(self):
        while self._waiting:
            os.replace(*self._waiting[0])
            self._waiting.pop(0)


def output_paths(out, energies):
    names = []
    for i, energy in enumerate(energies):
        if energy is None and "{energy}" in out:
            raise Fault("there is no energy for {energy}", BAD_USAGE)
        name = out if energy is None else out.replace("{energy}", f"{energy:.10g}")
        names.append(name.replace("{index}", str(i)))
    if len(set(names)) < len(names):
        raise Fault(
            f"{len(names)} maps need names of their own: put {{energy}} or {{index}} into OUT", BAD_USAGE
        )
    return names


def make_maps(program, args, stacks, energies_from_files):
    """Writes a map for every image of stacks[0].

    stacks  of sample, flat and perhaps dark
    """
    inputs = {os.path.realpath(stack.path) for stack in stacks}
    if args.mean:
        stacks = [MeanStack(stack) for stack in stacks]
    check_stacks(stacks[0], stacks[1:])
    energies = settled_energies(args, stacks[0].count, energies_from_files)
    paths = output_paths(args.out, energies)
    for path in paths:
        if os.path.realpath(path) in inputs:
            raise Fault(f"{path} is also an input", BAD_USAGE)
    summaries = []
    with Outputs() as outputs:
        for i, (path, energy) in enumerate(zip(paths, energies)):
            made = Map(program, args, stacks, i, energy)
            try:
                outputs.write(path, made.write_text if args.format == "text" else made.write_processed)
            except OSError as error:
                raise Fault(f"cannot write {path}: {error.strerror}", BAD_OUTPUT) from error
            summaries.append(made.summary(path))
        try:
            outputs.commit()
        except OSError as error:
            raise Fault(f"cannot write {error.filename2}: {error.strerror}", BAD_OUTPUT) from error
    print("\n".join(summaries))


def run(program, work):
    """Calls work(); a Fault becomes its message and exit status."""
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(128 + signal.SIGTERM))  # unwinds: no leftovers
    try:
        need(numpy, "python3-numpy")
        work()
    except Fault as fault:
        print(f"{program}: {fault}", file=sys.stderr)
        sys.exit(fault.status)
    except MemoryError:
        print(f"{program}: there is not enough memory for these images", file=sys.stderr)
        sys.exit(BAD_INPUT)
    except KeyboardInterrupt:
        sys.exit(128 + signal.SIGINT)
