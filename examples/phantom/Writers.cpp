#include "Writers.h"

#include "Samples.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <fstream>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace orvel::phantom {

namespace fs = std::filesystem;

namespace {

// std::to_chars, not a stream: the same bytes whatever the locale.
std::string text(double value, std::chars_format format, int precision)
{
    char buffer[64];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value, format, precision);
    return {buffer, end.ptr};
}

std::string shortText(double value)
{
    char buffer[64];
    return {buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr};
}

std::string fixedText(double value, int decimals)
{
    return text(value, std::chars_format::fixed, decimals);
}

/// `digits` significant digits, trailing zeros kept.
std::string digitsText(double value, int digits)
{
    const int magnitude = static_cast<int>(std::floor(std::log10(std::abs(value))));
    return fixedText(value, std::max(0, digits - 1 - magnitude));
}

void save(const fs::path &path, const std::string &content)
{
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << content;
    file.close();
    if (!file) {
        throw std::runtime_error("cannot write " + path.string());
    }
}

std::string withCrLf(const std::string &lines)
{
    std::string out;
    for (const char c : lines) {
        if (c == '\n') {
            out += '\r';
        }
        out += c;
    }
    return out;
}

// ---- spectra ----------------------------------------------------------------------------------

using Curve = std::function<double(double energyEv)>;

std::string twoColumns(const std::string &title, const Curve &mu)
{
    std::string out = "# " + title + "\n# energy[eV]  mut\n";
    for (const double energy : spectrumEnergiesEv()) {
        out += shortText(energy) + "  " + fixedText(mu(energy), 12) + "\n";
    }
    return out;
}

struct Scan {
    std::string title;
    double spacingA;   // lattice spacing d
    std::string modes; // one a detector column: 1 = I0, 2 = transmitted, 3 = fluorescence
};

/// Monochromator angle [degree] of an energy. This file family counts degrees with a ten-digit pi.
double angleOf(double energyEv, double spacingA)
{
    constexpr double kTenDigitPi = 3.1415926535;
    return std::asin(wavelengthA(energyEv) / (2.0 * spacingA)) * 180.0 / kTenDigitPi;
}

std::string beamlineScan(const Scan &scan, const Curve &mu)
{
    const std::vector<double> energies = spectrumEnergiesEv();
    std::string out =
        "9809     phantom beamline\n" + scan.title + "\n" +
        "Ring : 2500.0 MeV 450.0 mA - 449.1 mA\n" +
        "Mono : double crystal D= " + shortText(scan.spacingA) +
        " A    Initial angle= " + fixedText(angleOf(energies.front(), scan.spacingA), 5) +
        " deg\n" + "Param :     1  Points : " + std::to_string(energies.size()) + "\n\n" +
        "  Angle(c)  Angle(o)     time/s";
    std::string modeLine;
    std::string offsetLine;
    for (std::size_t k = 0; k < scan.modes.size(); ++k) {
        out += "   " + std::to_string(k + 1);
        modeLine += std::string("   ") + scan.modes[k];
        offsetLine += "   0.000";
    }
    out += "\n      Mode         0          0" + modeLine + "\n    Offset         0          0" +
           offsetLine + "\n";
    for (const double energy : energies) {
        const double angle = angleOf(energy, scan.spacingA);
        const double i0 = std::round(1.6e6 - 90.0 * (energy - 8000.0)); // whole counts, so exact
        double element = 0.0; // detectors of a fluorescence array share the counts unevenly
        out += fixedText(angle, 5) + " " + fixedText(angle, 12) + " 1.00";
        for (const char mode : scan.modes) {
            if (mode == '1') {
                out += " " + fixedText(i0, 0);
            } else if (mode == '2') {
                out += " " + digitsText(i0 * std::exp(-mu(energy)), 13);
            } else {
                element += 1.0;
                out += " " + digitsText(i0 * mu(energy) * (element < 2.0 ? 0.375 : 0.625), 13);
            }
        }
        out += "\n";
    }
    return out;
}

using Truth = std::function<Mixture(int column, int row)>;

// ---- maps -------------------------------------------------------------------------------------

/// Beam profile in whole counts, so exact in a text file.
double referenceCounts(int column, int row)
{
    return std::round(9.0e4 * std::exp(-std::pow((row - 60.0) / 110.0, 2)) *
                      (1.0 + 0.03 * std::sin(0.9 * column)));
}

std::string mapHeader(Sample sample, const MapFile &map)
{
    const StagePosition first = stagePosition(sample, 0, 0);
    const StagePosition last = stagePosition(sample, kPixels - 1, kPixels - 1);
    const std::string size = std::to_string(kPixels);
    const std::string steps = std::to_string(kPixels - 1);
    const std::string energy = "# ENERGY : " + shortText(map.energyEv) + " eV\n";
    // The last word is Japanese for "sample", in UTF-8: headers go on into result files.
    const std::string title = std::string("# ") + folderOf(sample) + " \xe8\xa9\xa6\xe6\x96\x99\n";
    switch (map.layout) {
    case MapLayout::Axis:
        return "# 1306 scan\n" + title + energy + "# AXIS 0 X um " + shortText(first.xUm) + " " +
               shortText(last.xUm) + " " + steps + "\n# AXIS 1 Y um " + shortText(first.yUm) + " " +
               shortText(last.yUm) + " " + steps + "\n# x y I I0\n";
    case MapLayout::Columns: // numbers count from the third column; the blank before ':' is needed
        return "# 2003901 scan\n" + title + energy +
               "# TIME : 0\n# I0 : 1\n# I : 2\n# x y time I0 I\n";
    case MapLayout::Counts:
    case MapLayout::Transmission:
        return "# phantom map\n" + title + "# X-NUM " + size + "\n# Y-NUM " + size + "\n" + energy +
               (map.layout == MapLayout::Counts ? "# x y I I0\n" : "# x y I/I0\n");
    case MapLayout::Processed:
        break;
    }
    return {};
}

std::string textMap(Sample sample, const MapFile &map, const Truth &truth)
{
    std::string out = mapHeader(sample, map);
    for (int row = 0; row < kPixels; ++row) {
        for (int column = 0; column < kPixels; ++column) {
            const double transmission = std::exp(-truth(column, row).absorption(map.energyEv));
            const double i0 = referenceCounts(column, row);
            const StagePosition at = stagePosition(sample, column, row);
            const std::string reference = fixedText(i0, 0);
            const std::string signal = digitsText(i0 * transmission, 10);
            out.append(shortText(at.xUm)).append(" ").append(shortText(at.yUm)).append(" ");
            switch (map.layout) {
            case MapLayout::Columns:
                out.append("0.2 ").append(reference).append(" ").append(signal);
                break;
            case MapLayout::Transmission:
                out.append(digitsText(transmission, 10));
                break;
            default:
                out.append(signal).append(" ").append(reference);
            }
            out += '\n';
        }
    }
    return out;
}

/// Text header padded with zero bytes to a multiple of 256, then the doubles, then one flag a
/// pixel.
std::string processedMap(Sample sample, const MapFile &map, const Truth &truth)
{
    static_assert(std::endian::native == std::endian::little,
                  "the file holds little-endian doubles");
    std::vector<double> values;
    for (int row = 0; row < kPixels; ++row) {
        for (int column = 0; column < kPixels; ++column) {
            values.push_back(truth(column, row).absorption(map.energyEv));
        }
    }
    const auto [least, greatest] = std::minmax_element(values.begin(), values.end());
    const std::string size = std::to_string(kPixels);
    const std::string items =
        "WIDTH: " + size + "\nHEIGHT: " + size + "\nDATA_ID: " + folderOf(sample) + " " +
        shortText(map.energyEv) + " eV\n" +
        "DATA_STRUCTURE: Header of Size ( HeaderSize: ), Row Double Data Block of pixels ( WIDTH: "
        "* HEIGHT ), Row Bool Valid Flag Block of pixels ( WIDTH: * HEIGHT ) \n" +
        "SIZE_OF_DOUBLE: 8\nSIZE_OF_BOOL: 1\nMIN_VAL: " +
        text(*least, std::chars_format::general, 6) +
        "\nMAX_VAL: " + text(*greatest, std::chars_format::general, 6) + "\nEND_OF_HEADER:\n";
    constexpr std::size_t kFirstLine = 64; // without its line feed
    const std::size_t headerSize = ((kFirstLine + 1 + items.size()) / 256 + 1) * 256;

    std::string out = "2dData-V0.0 HeaderSize: " + std::to_string(headerSize);
    out.resize(kFirstLine, ' ');
    out += "\n" + items;
    out.resize(headerSize, '\0');
    out.append(reinterpret_cast<const char *>(values.data()), values.size() * sizeof(double));
    out.append(values.size(), '\1');
    return out;
}

void writeStack(const fs::path &folder, Sample sample, const Truth &truth)
{
    for (const MapFile &map : stackOf(sample)) {
        save(folder / map.name, map.layout == MapLayout::Processed
                                    ? processedMap(sample, map, truth)
                                    : textMap(sample, map, truth));
    }
}

void makeFolders(const std::vector<fs::path> &folders)
{
    for (const fs::path &needed : folders) {
        std::error_code error;
        fs::create_directories(needed, error);
        if (error) {
            throw std::runtime_error("cannot create " + needed.string() + ": " + error.message());
        }
    }
}

void writeReferences(const fs::path &refs)
{
    const auto compound = [](std::size_t i) { return [i](double e) { return absorption(i, e); }; };
    // The title holds the word "sample" in Shift-JIS, as old control programs write it.
    save(refs / "metal.dat",
         withCrLf(beamlineScan({"metal foil \x8e\x8e\x97\xbf", 3.1355, "12"}, compound(Metal))));
    save(refs / "monoxide.dat", twoColumns("monoxide, pressed pellet", compound(Monoxide)));
    save(refs / "oxyhydroxide.dat",
         beamlineScan({"oxyhydroxide pellet", 1.6374723, "21"}, compound(Oxyhydroxide)));
}

Curve curveOf(const Mixture &mixture)
{
    return [mixture](double energyEv) { return mixture.absorption(energyEv); };
}

} // namespace

void writeExample(const fs::path &folder)
{
    const fs::path results =
        fs::absolute(folder / "x").lexically_normal().parent_path().parent_path() / "results";
    const fs::path particles = folder / folderOf(Sample::Particles);
    const fs::path film = folder / folderOf(Sample::Film);
    makeFolders({folder / "refs", particles, film, results});
    writeReferences(folder / "refs");
    save(particles / "target.dat",
         twoColumns("particles, whole field of view", curveOf(targetTruth(Sample::Particles))));
    save(film / "target.dat",
         beamlineScan({"film, fluorescence", 3.1356, "313"}, curveOf(targetTruth(Sample::Film))));
    const auto truthOf = [](Sample sample) {
        return [sample](int column, int row) { return pixelTruth(sample, column, row); };
    };
    writeStack(particles, Sample::Particles, truthOf(Sample::Particles));
    writeStack(film, Sample::Film, truthOf(Sample::Film));
}

void writeBeamtime(const fs::path &folder)
{
    makeFolders({folder / "refs"});
    writeReferences(folder / "refs");
    for (const BeamtimeCell &cell : kBeamtimeCells) {
        const fs::path sample = folder / "samples" / cell.name;
        makeFolders({sample});
        save(sample / "target.dat",
             twoColumns(cell.name, curveOf(oxidised(targetTruth(Sample::Particles), cell.share))));
        writeStack(sample, Sample::Particles, [&cell](int column, int row) {
            return oxidised(pixelTruth(Sample::Particles, column, row), cell.share);
        });
    }
}

} // namespace orvel::phantom
