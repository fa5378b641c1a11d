// The colour that stands for a layer in the lists and in the view, by its class.
#pragma once

#include "run/orvexapi.h"

#include <QColor>

QColor layerColour(const ORVEX::API::layer_info &layer);
