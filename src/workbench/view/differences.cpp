#include "workbench/view/differences.h"

#include "cam/model/flatten.h"
#include "drawing/areascene.h"

#include <QPainter>

#include <algorithm>
#include <system_error>

namespace {

bool isSame(const QString &a, const std::string &b)
{
    return a.compare(QString::fromStdString(b), Qt::CaseInsensitive) == 0;
}

// Exports name the job's folder in lower case, whatever its own is.
bool isSameFolder(const QString &a, const std::filesystem::path &b)
{
    std::error_code unknown;
    return std::filesystem::equivalent(std::filesystem::u8path(a.toStdString()), b, unknown);
}

bool areEqual(const cam::Transform &a, const cam::Transform &b)
{
    return a.xx == b.xx && a.xy == b.xy && a.yx == b.yx && a.yy == b.yy && a.offset == b.offset;
}

} // namespace

QColor Differences::color(bool isMissing)
{
    return isMissing ? QColor(255, 56, 56) : QColor(40, 235, 110);
}

void Differences::setProofs(const QVector<LayerProof> &proofs)
{
    m_shown.clear(); // they point at the proofs
    m_proofs = proofs;
}

void Differences::setLayers(const QString &job, const QString &step, const std::vector<Layer> &layers)
{
    std::vector<Shown> shown;
    for (const LayerProof &proof : m_proofs) {
        if (proof.found.isProven() || !isSame(step, proof.request.step) ||
            !isSameFolder(job, proof.request.job))
            continue;
        for (const Layer &layer : layers) {
            if (!isSame(layer.name, proof.request.layer))
                continue;
            Shown made;
            made.proof = &proof;
            made.place = drawing::inverse(proof.placement).then(layer.scene->placement());
            // The same scenes as before keep what has been drawn of them.
            const auto before = std::find_if(m_shown.begin(), m_shown.end(), [&made](const Shown &known) {
                return known.proof == made.proof && areEqual(known.place, made.place);
            });
            if (before != m_shown.end()) {
                made = *before;
            } else {
                made.missing = std::make_shared<drawing::AreaScene>(proof.found.missing, made.place);
                made.extra = std::make_shared<drawing::AreaScene>(proof.found.extra, made.place);
            }
            shown.push_back(std::move(made));
        }
    }
    m_shown = std::move(shown);
}

std::vector<drawing::ColoredScene> Differences::scenes() const
{
    std::vector<drawing::ColoredScene> scenes;
    for (const Shown &shown : m_shown) {
        scenes.push_back({shown.missing, color(true), 1.0});
        scenes.push_back({shown.extra, color(false), 1.0});
    }
    return scenes;
}

void Differences::choose(const QString &layer, int place)
{
    m_chosenLayer = layer;
    m_chosenPlace = place;
}

std::optional<cam::Box> Differences::chosenBox() const
{
    constexpr double timesWidth = 10.0, least = 1e5; // to each side, the last in nanometres
    for (const Shown &shown : m_shown) {
        const auto &places = shown.proof->found.places;
        if (shown.proof->layer != m_chosenLayer || m_chosenPlace < 0 ||
            std::size_t(m_chosenPlace) >= places.size())
            continue;
        const cam::DifferencePlace &place = places[std::size_t(m_chosenPlace)];
        const cam::Point at = shown.place(place.at);
        const double reach = std::max(timesWidth * place.width * cam::largestStretch(shown.place), least);
        cam::Box box;
        box.add(at - cam::Point{reach, reach});
        box.add(at + cam::Point{reach, reach});
        return box;
    }
    return std::nullopt;
}

void Differences::paint(QPainter &painter, const BoardView &view)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    const auto stroke = [&painter](const QColor &color, double width, const auto &draw) {
        painter.setPen(QPen(QColor(0, 0, 0, 170), width + 2.0)); // readable on every color of a layer
        draw();
        painter.setPen(QPen(color, width));
        draw();
    };
    for (const Shown &shown : m_shown) {
        const auto &places = shown.proof->found.places;
        for (int i = 0; i < int(places.size()); ++i) {
            const cam::DifferencePlace &place = places[std::size_t(i)];
            const bool isChosen = shown.proof->layer == m_chosenLayer && i == m_chosenPlace;
            const QPointF at = view.toScreen(shown.place(place.at));
            const double widest = place.width * cam::largestStretch(shown.place) / 2.0 /
                                  (view.pixel() * view.devicePixelRatioF());
            const double radius = std::max(7.0, widest + 4.0);
            if (!QRectF(view.rect()).adjusted(-radius, -radius, radius, radius).contains(at))
                continue;
            stroke(color(place.isMissing), isChosen ? 3.0 : 1.5, [&] {
                painter.drawEllipse(at, radius, radius);
                // Minus or plus beside the circle: not everybody tells the colors apart.
                const QPointF sign = at + QPointF(radius + 7.0, 0.0);
                painter.drawLine(sign - QPointF(4, 0), sign + QPointF(4, 0));
                if (!place.isMissing)
                    painter.drawLine(sign - QPointF(0, 4), sign + QPointF(0, 4));
            });
        }
    }
}
