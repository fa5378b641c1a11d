// Exported files in the eyes of programs that nobody here wrote: pictures by gerbv and KLayout, and KLayout's
// comparison of two files.
#pragma once

#include "tests/crosscheck/bitmap.h"
#include "tests/crosscheck/referenceraster.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace crosscheck {

// A part of a file to be drawn, and the picture that becomes of it.
struct Picture
{
    QString file;
    Window window;
    QString image;  // its file: PGM of gerbv, PNG of KLayout
    int margin = 0; // pixels drawn around the window, and left out when the picture is read
};

// What a program had to say, if it was more than it says about a good file.
using Complaints = QString;

// gerbv leaves an arc out when the box around its two ends, with the width of the line, lies outside of the
// picture, even if the arc bulges into it. This margin, half a millimetre, brings small arcs back; a larger
// one would show as pixels off an edge.
constexpr int gerbvMargin = 50;

// A picture each with gerbv, antialiased: without that it flattens curves by one and a half pixels. Drawn
// finer, and averaged to the window's pixels by gerbvpicture.cpp.
Complaints drawGerber(const std::vector<Picture> &pictures);
// All pictures, finer than their windows, with one run of KLayout. `listFile`: where the list of pictures for
// its script is put.
Complaints drawGds(const std::vector<Picture> &pictures, const QString &listFile);

// Reads a picture; dark pixels are the ones nearer to black. An empty bitmap
// when it cannot be read or has another size.
Bitmap read(const Picture &picture);

// The two files of one layer.
struct FormatPair
{
    QString gerber, gds;
};

// Reads both files of each pair with KLayout and compares the polygons. Edges may lie 0.7 micrometres apart,
// which leaves room for what both readings make of curves: everything beyond a micrometre is found. Returns
// what is wrong, in the pairs' order; empty where nothing is. `base`: where the script's lists are put.
QStringList compareFormats(const std::vector<FormatPair> &pairs, const QString &base);

} // namespace crosscheck
