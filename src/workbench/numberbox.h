// A field for a number with a unit. A comma and a point are the same decimal mark, in every locale.
#pragma once

#include <QDoubleSpinBox>

class NumberBox : public QDoubleSpinBox
{
    Q_OBJECT

public:
    // Shows up to `decimals` digits behind the decimal mark of the system's locale.
    NumberBox(double least, double most, int decimals, QWidget *parent = nullptr);

    QValidator::State validate(QString &text, int &position) const override;
    double valueFromText(const QString &text) const override;
    QString textFromValue(double value) const override;

private:
    // `text` without unit and blanks, with a point as decimal mark.
    QString numberIn(const QString &text) const;
};
