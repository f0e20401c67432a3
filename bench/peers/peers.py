#!/usr/bin/env python3
"""Times the works of orvel_bench as a user of numpy would do them, on inputs of the same shape.

    bench/peers/peers.py [NAME...]        # prints 'NAME numpy_median_ms', one line a work

Needs python3 and numpy (Debian: python3-numpy). Run it in turns with orvel_bench and compare within
the same minutes.
"""
import os
import statistics
import sys
import tempfile
import time

os.environ.setdefault("OMP_NUM_THREADS", "1")
os.environ.setdefault("OPENBLAS_NUM_THREADS", "1")
import numpy as np

PIXELS = 1_000_000
ENERGIES = np.array([7040.0, 7100.0, 7115.0, 7120.0, 7125.0, 7132.0, 7150.0, 7200.0])


def model():
    """Columns of the fit: four references, a constant, wavelength^3 and wavelength^4."""
    wavelength = 12398.424360387684 / ENERGIES
    references = [
        0.5 + np.arctan((ENERGIES - e0) / 2) / np.pi + 0.4 * np.exp(-(((ENERGIES - e0 - 4) / 4) ** 2))
        for e0 in (7112.0, 7116.0, 7120.0, 7124.0)
    ]
    return np.column_stack(references + [np.ones(8), wavelength**3, wavelength**4])


def images(random):
    shares = random.random((4, PIXELS))
    absorption = model()[:, :4] @ shares + 0.1
    reference = 1000.0 + 200.0 * random.random((8, PIXELS))
    return reference * np.exp(-absorption), reference


def derived(x):
    total = x[:4].sum(axis=0)
    return np.vstack([x[:4] / total, x[:4], x[4:], (x[:4] / total).T @ np.arange(4.0), total])


def decompose(signal, reference):
    return derived(np.linalg.pinv(model()) @ np.log(reference / signal))


def four_points(absorption):
    """Least squares of S = c0 + c1 E + c2 T per pixel, about the means; V is row 4."""
    a, b = model()[:, 0], model()[:, 3]
    used = np.array([0, 1, 2, 3, 5, 6, 7])
    e = ENERGIES[used] - ENERGIES[used].mean()
    s = (a + b)[used]
    s = s - s.mean()
    t = absorption[used]
    t = t - t.mean(axis=0)
    tt, et = (t * t).sum(axis=0), e @ t
    ee, st, es = e @ e, s @ t, e @ s
    determinant = ee * tt - et * et
    c2 = (ee * st - es * et) / determinant
    c1 = (es * tt - et * st) / determinant
    c0 = (a + b)[used].mean() - c1 * ENERGIES[used].mean() - c2 * absorption[used].mean(axis=0)
    u = c2 / 2
    line = -c0 / c2 - c1 / c2 * ENERGIES[4]
    fraction = ((line - absorption[4]) * u * u + b[4] * u) / (u * (b[4] - a[4]))
    return np.vstack([fraction, 3 * (1 - fraction), 2 / c2])


def spectrum_lines(path):
    energy, mut = np.loadtxt(path, comments="#", unpack=True)
    wavelength = 12398.424360387684 / energy
    columns = np.column_stack([np.ones_like(energy), wavelength**3, wavelength**4])
    before, behind = energy < 7070, energy > 7220
    return (np.linalg.lstsq(columns[before], mut[before], rcond=None)[0],
            np.linalg.lstsq(columns[behind], mut[behind], rcond=None)[0])


def picture(plane):
    """The nearest pixels of 900 x 700 screen pixels, in a palette of 768 colours."""
    low, high = plane.min(), plane.max()
    ramp = np.clip(np.arange(768)[:, None] - [0, 256, 512], 0, 255).astype(np.uint32)
    palette = ramp @ np.array([1 << 16, 1 << 8, 1], dtype=np.uint32)
    rows = (np.arange(700)[::-1] + 0.5) * plane.shape[0] / 700
    columns = (np.arange(900) + 0.5) * plane.shape[1] / 900
    shown = plane[rows.astype(int)][:, columns.astype(int)]
    return palette[np.minimum((768 / (high - low) * (shown - low)).astype(np.int32), 767)]


def median_ms(work):
    work()
    times = []
    while len(times) < 5 or (len(times) < 25 and sum(times) < 2000.0):
        start = time.perf_counter()
        work()
        times.append(1000.0 * (time.perf_counter() - start))
    return statistics.median(times)


def main():
    random = np.random.default_rng(1)
    with tempfile.TemporaryDirectory() as folder:
        map_file, spectrum_file = folder + "/map.txt", folder + "/spectrum.txt"
        values = np.column_stack([np.arange(PIXELS) % 1000, np.arange(PIXELS) // 1000,
                                  random.normal(0.5, 0.3, PIXELS),
                                  np.exp(random.normal(-2, 4, PIXELS)),
                                  7100 + 20 * random.random(PIXELS)])
        np.savetxt(map_file, values[:, :4], fmt="%d %d %.6f %.6f")
        energy = np.linspace(6900, 7900, 2000)
        np.savetxt(spectrum_file, np.column_stack([energy, 0.2 + (energy > 7120)]), fmt="%10.3f %.8f")
        signal, reference = images(random)
        absorption = np.log(reference / signal)
        pinv = np.linalg.pinv(model())
        plane = values[:, 2].copy().reshape(1000, 1000)
        works = {
            "read-map": lambda: np.loadtxt(map_file),
            "noneq-map": lambda: decompose(signal, reference),
            "noneq-map-again": lambda: derived(pinv @ absorption),
            "fourpoint-map": lambda: four_points(np.log(reference / signal)),
            "fourpoint-map-again": lambda: four_points(absorption),
            "write-map": lambda: np.savetxt(folder + "/out.txt", values, fmt=" %10.6g %10.6g    %10.6g %10.6g %10.6g"),
            "paint-map": lambda: picture(plane),
            "read-spectrum": lambda: spectrum_lines(spectrum_file),
        }
        for name in sys.argv[1:] or works:
            print(name, "%.3f" % median_ms(works[name]), flush=True)


if __name__ == "__main__":
    main()
