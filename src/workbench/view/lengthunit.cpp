#include "workbench/view/lengthunit.h"

#include <QLocale>

#include <cmath>

namespace {

int decimalsOf(LengthUnit unit)
{
    switch (unit) {
    case LengthUnit::Millimetre:
        return 3;
    case LengthUnit::Inch:
        return 5;
    case LengthUnit::Mil:
        break;
    }
    return 2;
}

// Without the sign of a zero.
QString numberText(double nanometres, LengthUnit unit)
{
    QLocale locale;
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    const double power = std::pow(10.0, decimalsOf(unit));
    const double number = std::round(nanometres / nanometresOf(unit) * power) / power;
    return locale.toString(number == 0.0 ? 0.0 : number, 'f', decimalsOf(unit));
}

} // namespace

LengthUnit nextUnit(LengthUnit unit)
{
    return unit == LengthUnit::Millimetre ? LengthUnit::Inch
           : unit == LengthUnit::Inch     ? LengthUnit::Mil
                                          : LengthUnit::Millimetre;
}

QString nameOf(LengthUnit unit)
{
    return unit == LengthUnit::Millimetre ? "mm" : unit == LengthUnit::Inch ? "in" : "mil";
}

double nanometresOf(LengthUnit unit)
{
    return unit == LengthUnit::Millimetre ? 1e6 : unit == LengthUnit::Inch ? 25.4e6 : 25.4e3;
}

QString lengthText(double nanometres, LengthUnit unit)
{
    return numberText(nanometres, unit) + ' ' + nameOf(unit);
}

QString placeText(cam::Point place, LengthUnit unit)
{
    return QString("x %1  y %2 %3").arg(numberText(place.x, unit), numberText(place.y, unit), nameOf(unit));
}

double roundLength(double value)
{
    const double power = std::pow(10.0, std::floor(std::log10(value)));
    for (const double step : {1.0, 2.0, 5.0}) {
        if (step * power >= value * 0.999999)
            return step * power;
    }
    return 10.0 * power;
}

QString scaleText(double factor)
{
    const QLocale locale;
    return factor >= 1.0 ? QString("%1 : 1").arg(locale.toString(factor, 'g', 4))
                         : QString("1 : %1").arg(locale.toString(1.0 / factor, 'g', 4));
}
