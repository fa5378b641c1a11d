// Files that belong to no job (GDSII, Gerber, Excellon): what they hold, row by row, and how it is drawn.
#pragma once

#include "drawing/scene.h"

#include <QString>
#include <QStringList>

#include <memory>

// What there is to say of a file before it is drawn.
struct FileContents
{
    QStringList parts;   // its rows: of a GDSII file its layers with their datatypes, of any other file one
    QStringList remarks; // what the file leaves open, and how it was taken; each names the file
};

// Throws cam::Error for what cannot be read, naming the file.
FileContents contentsOf(const QString &path);

// Row `part` of the file. May be called in any thread.
std::shared_ptr<const drawing::Scene> readFileScene(const QString &path, int part);

// Whether the workbench shows the file, by its name or as a drill file by its first lines.
bool isLayerFile(const QString &path);
// For a file dialog: "*.gds" and so on.
QStringList layerFilePatterns();
