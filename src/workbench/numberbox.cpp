#include "workbench/numberbox.h"

#include <QRegularExpression>

NumberBox::NumberBox(double least, double most, int decimals, QWidget *parent) : QDoubleSpinBox(parent)
{
    setDecimals(decimals);
    setRange(least, most);
}

QString NumberBox::numberIn(const QString &text) const
{
    QString number = text;
    if (!suffix().isEmpty() && number.endsWith(suffix()))
        number.chop(suffix().size());
    return number.trimmed().replace(',', '.').replace(QChar(0x2212), '-');
}

// No digits are grouped: a mark that is no decimal mark here may be one where the number comes from.
QValidator::State NumberBox::validate(QString &text, int &) const
{
    const QString number = numberIn(text);
    static const QRegularExpression begun("^[-+]?[0-9]*\\.?[0-9]*$");
    if (!begun.match(number).hasMatch())
        return QValidator::Invalid;
    const int mark = number.indexOf('.');
    if (mark >= 0 && number.size() - mark - 1 > decimals())
        return QValidator::Invalid;
    bool isNumber = false;
    const double value = number.toDouble(&isNumber);
    if (!isNumber)
        return QValidator::Intermediate;
    return value >= minimum() && value <= maximum() ? QValidator::Acceptable : QValidator::Intermediate;
}

double NumberBox::valueFromText(const QString &text) const
{
    return numberIn(text).toDouble();
}

QString NumberBox::textFromValue(double value) const
{
    QLocale plain = locale();
    plain.setNumberOptions(QLocale::OmitGroupSeparator);
    QString text = plain.toString(value, 'f', decimals());
    while (text.endsWith(plain.zeroDigit()))
        text.chop(1);
    if (text.endsWith(plain.decimalPoint()))
        text.chop(1);
    return text == QString(plain.negativeSign()) + plain.zeroDigit() ? QString(plain.zeroDigit()) : text;
}
