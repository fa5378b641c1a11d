// Proves that a written file shows what its layer shows, or says where it does not; and compares files, or
// layers, with each other.
//
//     const Comparison result = verifyFile(image, options, "top.gbr");
//     if (result.isProven()) ... // else result.reason says why, result.places where
//
// Proven: the difference between file and source is nowhere as wide as half a micrometre. Half of what is
// wrong in resize, a pad a micrometre aside, a hole that is missing are found; the chords that stand for
// curves, at most 0.1 micrometre beside them, are not. docs/verification.md says how it is computed and what
// its limits are.
//
// Safe to be called by several threads at once, each for an image of its own or for one that nobody changes.
#pragma once

#include "cam/model/exportoptions.h"
#include "cam/polygon/gridpolygon.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace cam {

struct VerifyControl
{
    // Takes the share of the work that is done, 0 to 1, often; it may throw to cancel.
    std::function<void(double)> report = [](double) {};
    // Whether the polygons of the difference are wanted.
    bool wantsPolygons = false;
    std::size_t mostPlaces = 20;
};

struct DifferencePlace
{
    Point at;               // nanometres, output coordinates: the middle of the largest disc that fits in
    double width = 0.0;     // nanometres: of that disc
    double area = 0.0;      // square millimetres
    bool isMissing = false; // of the second picture; else it has more than the first
};

// What the second picture (the written file, the newer revision) lacks of the first (the source, the older
// one), and what it has more. What is thinner than half a micrometre counts neither as area nor as a place.
struct Comparison
{
    double missingArea = 0.0, extraArea = 0.0; // square millimetres
    double deviation = 0.0;              // nanometres: the width of the difference at its widest place; of
                                         // what is proven a bound of it
    std::vector<DifferencePlace> places; // the widest first
    std::size_t placesInAll = 0;
    // Islands counter-clockwise, each followed by its holes; when VerifyControl::wantsPolygons says so.
    std::vector<GridRing> missing, extra;
    // Why there was nothing to compare: a reader's reason. Empty otherwise.
    std::string reason;

    bool isProven() const { return reason.empty() && placesInAll == 0; }
};

// Compares `file`, GDSII or Gerber by its first bytes, with what `options` make of `image`. Options' file and
// report are not used. A file that cannot be read, or holds what the readers do not understand, is not
// proven, for that reason; so is a GDSII file with shapes on another layer than the job's row. Passes on what
// `control.report` throws.
Comparison verifyFile(const LayerImage &image, const ExportOptions &options,
                      const std::filesystem::path &file, const VerifyControl &control = {});

// Compares two files, of either format. Throws Error for what cannot be read.
Comparison compareFiles(const std::filesystem::path &first, const std::filesystem::path &second,
                        const VerifyControl &control = {});

// Compares two layers, each under its options. Throws Error.
Comparison compareLayers(const LayerImage &first, const ExportOptions &firstOptions, const LayerImage &second,
                         const ExportOptions &secondOptions, const VerifyControl &control = {});

} // namespace cam
