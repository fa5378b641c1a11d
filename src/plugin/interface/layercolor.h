// The colour that stands for a layer by its class, in the Export dialog as in the host's lists and view.
#pragma once

#include "run/orvexapi.h"

#include <QColor>

// Type, context and polarity count as they are written.
inline QColor layerColor(const ORVEX::API::layer_info &layer)
{
    const QColor otherLayer(72, 209, 204);
    if (layer.context != "BOARD")
        return otherLayer;
    if (layer.type == "SIGNAL" || layer.type == "POWER_GROUND")
        return layer.polarity == "POSITIVE" ? QColor(255, 215, 0) : QColor(218, 165, 32);
    if (layer.type == "SOLDER_MASK")
        return QColor(0, 128, 128);
    if (layer.type == "SILK_SCREEN")
        return QColor(245, 255, 250);
    if (layer.type == "SOLDER_PASTE")
        return QColor(255, 235, 205);
    if (layer.type == "DRILL")
        return QColor(169, 169, 169);
    return otherLayer;
}
