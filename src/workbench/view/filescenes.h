// Files that belong to no job (GDSII, Gerber, Excellon): what they hold, row by row, and how it is drawn.
#pragma once

#include "cam/excellon/drillimage.h"
#include "cam/gdsii/gdsimage.h"
#include "drawing/scene.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

// A file that has been read. It never changes: any thread may draw of it.
class LayerFile
{
    Q_DECLARE_TR_FUNCTIONS(LayerFile)

public:
    // `report` takes the share of the reading that is done, 0 to 1, and may throw to cancel. Throws
    // cam::Error for what cannot be read, naming the file.
    LayerFile(const QString &path, const std::function<void(double)> &report);

    // Its rows: of a GDSII file its layers with their datatypes, of any other file one.
    const QStringList &parts() const { return m_parts; }
    // What the file leaves open, and how it was taken; each names the file.
    QStringList remarks() const;
    // How row `part` is drawn. `check` may throw to cancel.
    std::shared_ptr<const drawing::Scene> scene(int part, const std::function<void()> &check) const;

private:
    QString m_name; // without its folder
    QStringList m_parts;
    std::shared_ptr<const cam::GdsImage> m_gds; // null for any other file
    std::vector<cam::GdsLayer> m_layers;        // its, as `m_parts`
    std::shared_ptr<const drawing::Scene> m_scene;
    cam::DrillAssumptions m_assumptions;
};

// Whether the workbench shows the file, by its name or as a drill file by its first lines.
bool isLayerFile(const QString &path);
// For a file dialog: "*.gds" and so on.
QStringList layerFilePatterns();
