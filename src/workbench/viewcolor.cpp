#include "workbench/layercolours.h"

QColor layerColour(const ORVEX::API::layer_info &layer)
{
    const QColor other(72, 209, 204);
    if (layer.context != "BOARD")
        return other;
    if (layer.type == "SIGNAL" || layer.type == "POWER_GROUND" || layer.type == "MIXED")
        return layer.polarity == "POSITIVE" ? QColor(255, 215, 0) : QColor(218, 165, 32);
    if (layer.type == "SOLDER_MASK")
        return QColor(0, 150, 136);
    if (layer.type == "SILK_SCREEN")
        return QColor(245, 255, 250);
    if (layer.type == "SOLDER_PASTE")
        return QColor(255, 235, 205);
    if (layer.type == "DRILL" || layer.type == "ROUT")
        return QColor(169, 169, 169);
    return other;
}
