// Saves what the view shows as a picture: PNG, PDF or SVG, by the file's name.
#pragma once

#include <QString>
#include <QStringList>

class BoardView;

// For a file dialog: "*.png" and so on.
QStringList pictureFilePatterns();

// Writes what is seen, with outline, grid and scale, at `factor` times the resolution of the screen. A PDF is
// a page of A4 in landscape and says the scale; an SVG holds the picture in its true size in millimetres.
// Events are handled meanwhile, but the user's. Returns why it could not be written, or nothing.
QString savePicture(const BoardView &view, const QString &path, int factor = 3);
