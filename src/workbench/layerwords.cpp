#include "workbench/layerwords.h"

#include <QCoreApplication>

#include <algorithm>
#include <iterator>

namespace {

struct Word
{
    const char *word, *text;
};

const Word words[] = {
    {"SIGNAL", QT_TRANSLATE_NOOP("LayerWords", "signal")},
    {"POWER_GROUND", QT_TRANSLATE_NOOP("LayerWords", "power ground")},
    {"DIELECTRIC", QT_TRANSLATE_NOOP("LayerWords", "dielectric")},
    {"MIXED", QT_TRANSLATE_NOOP("LayerWords", "mixed")},
    {"SOLDER_MASK", QT_TRANSLATE_NOOP("LayerWords", "solder mask")},
    {"SOLDER_PASTE", QT_TRANSLATE_NOOP("LayerWords", "solder paste")},
    {"SILK_SCREEN", QT_TRANSLATE_NOOP("LayerWords", "silk screen")},
    {"DRILL", QT_TRANSLATE_NOOP("LayerWords", "drill")},
    {"ROUT", QT_TRANSLATE_NOOP("LayerWords", "rout")},
    {"DOCUMENT", QT_TRANSLATE_NOOP("LayerWords", "document")},
    {"COMPONENT", QT_TRANSLATE_NOOP("LayerWords", "component")},
    {"MASK", QT_TRANSLATE_NOOP("LayerWords", "mask")},
    {"CONDUCTIVE_PASTE", QT_TRANSLATE_NOOP("LayerWords", "conductive paste")},
    {"MISC", QT_TRANSLATE_NOOP("LayerWords", "misc")},
    {"NEGATIVE", QT_TRANSLATE_NOOP("LayerWords", "negative")},
};

} // namespace

QString layerWord(const std::string &word)
{
    const auto known = std::find_if(std::begin(words), std::end(words),
                                    [&](const Word &other) { return other.word == word; });
    if (known != std::end(words))
        return QCoreApplication::translate("LayerWords", known->text);
    return QString::fromStdString(word).toLower().replace('_', ' ');
}
