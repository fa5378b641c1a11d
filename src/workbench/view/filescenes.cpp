#include "workbench/view/filescenes.h"

#include "cam/base/error.h"
#include "cam/excellon/excellonreader.h"
#include "cam/gdsii/gdsreader.h"
#include "cam/gerber/gerberreader.h"
#include "drawing/drillscene.h"
#include "drawing/filescene.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#include <map>
#include <mutex>

namespace {

std::filesystem::path localPath(const QString &path)
{
    return std::filesystem::u8path(path.toStdString());
}

enum class Kind { Gds, Gerber, Excellon };

const qint64 headSize = 4096; // bytes by which a file is known
const QStringList drillSuffixes{"drl", "xln", "exc", "nc"};

// What it is, is told by its first bytes, not by its name.
Kind kindOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw cam::Error(path.toStdString() + ": cannot be read: " + file.errorString().toStdString());
    const QByteArray head = file.read(headSize);
    if (head.size() > 3 && head[0] == 0 && head[2] == 0 && head[3] == 2) // a HEADER record
        return Kind::Gds;
    if (cam::isExcellon({head.constData(), std::size_t(head.size())}))
        return Kind::Excellon;
    // Anything else is refused by the reader that its name calls for; Gerber files have many names.
    const QString suffix = QFileInfo(path).suffix().toLower();
    const bool isGerber = head.contains("%FS") || head.contains("G04");
    return suffix == "gds"                               ? Kind::Gds
           : drillSuffixes.contains(suffix) && !isGerber ? Kind::Excellon
                                                         : Kind::Gerber;
}

// All rows of a GDSII file are drawn from one image of it.
std::shared_ptr<const cam::GdsImage> gdsImage(const QString &path)
{
    struct Known
    {
        std::weak_ptr<const cam::GdsImage> image;
        QDateTime changed;
    };
    static std::mutex mutex;
    static std::map<QString, Known> files;
    const std::lock_guard<std::mutex> lock(mutex);
    Known &known = files[path];
    const QDateTime changed = QFileInfo(path).lastModified();
    std::shared_ptr<const cam::GdsImage> image = known.image.lock();
    if (image && known.changed == changed)
        return image;
    image = std::make_shared<const cam::GdsImage>(cam::readGdsFile(localPath(path)));
    known = {image, changed};
    return image;
}

} // namespace

FileContents contentsOf(const QString &path)
{
    const QString name = QFileInfo(path).fileName();
    FileContents contents;
    switch (kindOf(path)) {
    case Kind::Gds:
        for (const cam::GdsLayer on : drawing::layersOf(*gdsImage(path)))
            contents.parts << QString("%1 %2/%3").arg(name).arg(on.layer).arg(on.datatype);
        break;
    case Kind::Gerber:
        cam::readGerberFile(localPath(path));
        contents.parts << name;
        break;
    case Kind::Excellon:
        for (const std::string &assumption : cam::readExcellonFile(localPath(path)).assumptions)
            contents.remarks << name + ": " + QString::fromStdString(assumption);
        contents.parts << name;
        break;
    }
    return contents;
}

std::shared_ptr<const drawing::Scene> readFileScene(const QString &path, int part)
{
    const Kind kind = kindOf(path);
    if (kind == Kind::Gds) {
        const std::shared_ptr<const cam::GdsImage> image = gdsImage(path);
        const std::vector<cam::GdsLayer> layers = drawing::layersOf(*image);
        if (part < 0 || part >= int(layers.size()))
            throw cam::Error(path.toStdString() + ": has changed, open it again");
        return std::make_shared<drawing::GdsScene>(image, layers[std::size_t(part)]);
    }
    if (kind == Kind::Excellon)
        return std::make_shared<drawing::DrillScene>(cam::readExcellonFile(localPath(path)));
    return std::make_shared<drawing::GerberScene>(
        std::make_shared<const cam::GerberImage>(cam::readGerberFile(localPath(path))));
}

bool isLayerFile(const QString &path)
{
    const QString suffix = "*." + QFileInfo(path).suffix().toLower();
    if (layerFilePatterns().contains(suffix))
        return true;
    QFile file(path); // drill files have any name
    const QByteArray head = file.open(QIODevice::ReadOnly) ? file.read(headSize) : QByteArray();
    return cam::isExcellon({head.constData(), std::size_t(head.size())});
}

QStringList layerFilePatterns()
{
    QStringList patterns{"*.gds", "*.gerber", "*.gbr", "*.ger"};
    for (const QString &suffix : drillSuffixes)
        patterns << "*." + suffix;
    return patterns;
}
