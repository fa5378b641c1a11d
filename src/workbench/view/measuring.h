// Measuring in the view: two places, snapped to features, and what lies between them.
#pragma once

#include "drawing/snapping.h"
#include "workbench/view/boardview.h"

#include <QCoreApplication>

#include <optional>

// From one place to another, in the numbers that are shown.
struct Measurement
{
    cam::Point from, to;

    double dx() const { return to.x - from.x; }
    double dy() const { return to.y - from.y; }
    double distance() const { return cam::distance(from, to); }
    // Degrees counter-clockwise from the x axis, above -180 and up to 180.
    double angle() const;
    // "dx 1.000 mm  dy ..."
    QString text(LengthUnit unit) const;
};

class Measuring : public BoardView::Overlay
{
    Q_DECLARE_TR_FUNCTIONS(Measuring)

public:
    bool isOn() const { return m_isOn; }
    // Off forgets what was measured.
    void setOn(bool on);
    // What is snapped to: the scenes of layers that are seen, the uppermost first.
    void setScenes(const std::vector<std::shared_ptr<const drawing::Scene>> &scenes) { m_scenes = scenes; }

    // The mouse is at `place`; `reach`: nanometres within which it snaps.
    void moveTo(cam::Point place, double reach);
    // The first press sets the start, the second one the end, the third one another start.
    void press(cam::Point place, double reach);
    // Forgets what was measured; false when there is nothing to forget.
    bool clear();

    std::optional<Measurement> measurement() const;
    void paint(QPainter &painter, const BoardView &view) override;

private:
    drawing::Snap snapped(cam::Point place, double reach, bool &isSnapped) const;

    bool m_isOn = false;
    std::vector<std::shared_ptr<const drawing::Scene>> m_scenes;
    std::optional<cam::Point> m_from, m_to;
    drawing::Snap m_mouse;
    bool m_hasMouse = false, m_isSnapped = false;
};
