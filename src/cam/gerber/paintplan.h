// Which form each feature takes in a Gerber file.
#pragma once

#include "cam/gerber/aperturetable.h"
#include "cam/polygon/drawing.h"

#include <memory>
#include <unordered_map>
#include <vector>

namespace cam {

enum class PaintForm : std::uint8_t {
    Nothing,
    Draw,     // a line or an arc, drawn with a round aperture
    Flash,    // a pad, as an aperture
    Region,   // a surface or a pad, with true arcs
    Features, // a pad of a symbol of the job's own: the symbol's features, one by one
    Polygons  // what has no exact form in the file, as regions without arcs
};

struct FeaturePlan
{
    PaintForm form = PaintForm::Nothing;
    int aperture = 0;                      // its number, of a draw or a flash
    const ContourPool *contours = nullptr; // of a pad's region, in the symbol's coordinates
};

// The features of a step or of a symbol, with the form that each of them takes under one map.
class PaintPlan
{
public:
    // How features come to lie, and with which polarity.
    struct Setting
    {
        Transform map;           // to the output
        double growth = 0.0;     // nanometres; see ExportOptions::resize
        bool isInverted = false; // positive features are painted clear
    };

    // New apertures go into `apertures`. All but `setting` must outlive the plan.
    PaintPlan(DrawnSymbols &drawn, ApertureTable &apertures, const FeatureSet &features,
              const Setting &setting);

    const FeatureSet &features() const { return m_features; }
    const Transform &map() const { return m_setting.map; }
    bool isDark(Polarity polarity) const { return (polarity == Polarity::Positive) != m_setting.isInverted; }

    FeaturePlan plan(const Feature &feature);
    // The features of a pad whose form that is, as they lie on the layer.
    PaintPlan featuresOf(const Pad &pad, Polarity polarity) const;
    // Finds the apertures of all features, in the order of their first use.
    void collectApertures();
    // The features as polygons.
    FeatureDrawing &drawing();

private:
    struct PadPlan
    {
        PaintForm form = PaintForm::Nothing;
        int aperture = 0;
        ContourPool contours;
    };

    double growthOf(Polarity polarity) const
    {
        return polarity == Polarity::Positive ? m_setting.growth : -m_setting.growth;
    }
    const Symbol &symbolOf(const Pad &pad) const { return m_drawn.image().symbols[pad.symbol]; }
    FeaturePlan drawPlan(std::uint32_t symbol, Polarity polarity);
    int drawAperture(std::uint32_t symbol, Polarity polarity);
    PadPlan padPlan(const Pad &pad, Polarity polarity);
    PaintForm formOfOwn(const Symbol &symbol) const;
    bool isOnlyPositive(const FeatureSet &features) const;

    DrawnSymbols &m_drawn;
    ApertureTable &m_apertures;
    const FeatureSet &m_features;
    Setting m_setting;
    bool m_keepsCircles;
    std::vector<int> m_drawApertures[2]; // by polarity, then symbol: see drawAperture()
    std::unordered_map<PadKey, PadPlan, PadKeyHash> m_pads;
    std::unique_ptr<FeatureDrawing> m_drawing; // made when first needed
};

} // namespace cam
