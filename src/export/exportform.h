// The widgets of the Export dialog and their layout.
#pragma once

#include <QCoreApplication>
#include <QFrame>

class QBoxLayout;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableWidget;
class QWidget;

class ExportForm
{
    Q_DECLARE_TR_FUNCTIONS(Export)

public:
    // Fills `dialog`, which owns everything from then on. The table is empty and has no columns.
    explicit ExportForm(QWidget *dialog);

    QPushButton *pathButton = nullptr;
    QLineEdit *pathEdit = nullptr;
    QLineEdit *secondDirEdit = nullptr;
    QComboBox *formatBox = nullptr;
    QLineEdit *referenceXEdit = nullptr; // micrometres
    QLineEdit *referenceYEdit = nullptr; // micrometres
    QTableWidget *table = nullptr;
    QPushButton *okButton = nullptr;
    QPushButton *cancelButton = nullptr;

private:
    QBoxLayout *createPathRow();
    QBoxLayout *createNameRow();
    QBoxLayout *createSecondDirGroup();
    QBoxLayout *createFormatGroup();
    QBoxLayout *createReferenceRow();
    QBoxLayout *createOffsetGroup(const QString &axis, QLabel *&label, QLineEdit *&edit, QLabel *&unit);
    QBoxLayout *createButtonRow();
    void setReferenceValidators();
    void fitFonts();
    QFrame *newLine(QFrame::Shape shape) const;

    QWidget *const m_dialog;
    QLabel *m_secondDirLabel = nullptr;
    QLabel *m_formatLabel = nullptr;
    QLabel *m_referenceLabel = nullptr;
    QLabel *m_xLabel = nullptr;
    QLabel *m_xUnitLabel = nullptr;
    QLabel *m_yLabel = nullptr;
    QLabel *m_yUnitLabel = nullptr;
};
