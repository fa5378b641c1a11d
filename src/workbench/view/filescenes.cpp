#include "workbench/view/filescenes.h"

#include "cam/base/error.h"
#include "cam/excellon/excellonreader.h"
#include "cam/gdsii/gdsreader.h"
#include "cam/gerber/gerberreader.h"
#include "drawing/drillscene.h"
#include "drawing/filescene.h"

#include <QFile>
#include <QFileInfo>

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

const double readingShare = 0.75; // of a file's reading, the rest prepares its drawing

} // namespace

LayerFile::LayerFile(const QString &path, const std::function<void(double)> &report)
    : m_name(QFileInfo(path).fileName()), m_parts{m_name}
{
    const auto reportReading = [&report](double share) { report(readingShare * share); };
    const auto reportRest = [&report](double share) { report(readingShare + (1.0 - readingShare) * share); };
    switch (kindOf(path)) {
    case Kind::Gds:
        m_gds = std::make_shared<const cam::GdsImage>(cam::readGdsFile(localPath(path), report));
        m_layers = drawing::layersOf(*m_gds);
        m_parts.clear();
        for (const cam::GdsLayer on : m_layers)
            m_parts << QString("%1 %2/%3").arg(m_name).arg(on.layer).arg(on.datatype);
        break;
    case Kind::Gerber:
        m_scene = std::make_shared<drawing::GerberScene>(
            std::make_shared<const cam::GerberImage>(cam::readGerberFile(localPath(path), reportReading)),
            [&reportRest] { reportRest(0.0); });
        break;
    case Kind::Excellon: {
        const cam::DrillImage image = cam::readExcellonFile(localPath(path), reportReading);
        m_assumptions = image.assumptions;
        m_scene = std::make_shared<drawing::DrillScene>(image, reportRest);
        break;
    }
    }
}

QStringList LayerFile::remarks() const
{
    QStringList remarks;
    if (m_assumptions.digits) {
        const QString how =
            m_assumptions.isInch
                ? tr("%1: the number format is not stated; taken as %2 digits before and %3 behind the "
                     "decimal point of inches")
                : tr("%1: the number format is not stated; taken as %2 digits before and %3 behind the "
                     "decimal point of millimetres");
        remarks << how.arg(m_name).arg(m_assumptions.whole).arg(m_assumptions.decimals);
    }
    if (m_assumptions.leadingZeros)
        remarks << tr("%1: it is not stated which zeros are left out; taken as the leading ones (TZ)")
                       .arg(m_name);
    return remarks;
}

std::shared_ptr<const drawing::Scene> LayerFile::scene(int part, const std::function<void()> &check) const
{
    return m_gds ? std::make_shared<drawing::GdsScene>(m_gds, m_layers[std::size_t(part)], check) : m_scene;
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
