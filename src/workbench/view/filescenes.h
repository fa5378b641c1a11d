// Files that belong to no job: what they hold, row by row, and how it is drawn.
#pragma once

#include "drawing/scene.h"

#include <QString>
#include <QStringList>

#include <memory>

// The rows of the file `path`: of a GDSII file its layers with their datatypes, of a Gerber file one. Throws
// cam::Error for what cannot be read, naming the file.
QStringList fileParts(const QString &path);

// Row `part` of the file. May be called in any thread.
std::shared_ptr<const drawing::Scene> readFileScene(const QString &path, int part);

// Whether the workbench shows files of that name.
bool isLayerFile(const QString &path);
// For a file dialog: "*.gds" and so on.
QStringList layerFilePatterns();
