#include "workbench/viewcolor.h"

#include "plugin/interface/layercolor.h"

QColor viewColor(ORVEX::API::layer_info layer)
{
    if (layer.type == "MIXED")
        layer.type = "SIGNAL";
    else if (layer.type == "ROUT")
        layer.type = "DRILL";
    return layerColor(layer);
}
