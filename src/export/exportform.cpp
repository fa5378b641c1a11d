#include "export/exportform.h"

#include "export/combobox.h"
#include "export/fittingfont.h"
#include "plugin/interface/exportformat.h"

#include <QBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QRegExp>
#include <QRegExpValidator>
#include <QTableWidget>

namespace {

const int fieldHeight = 20;  // pixels, the most that a field takes
const int labelWidth = 70;   // pixels
const int offsetWidth = 150; // pixels

template <typename Widget>
Widget *named(Widget *widget, const char *name)
{
    widget->setObjectName(QLatin1String(name));
    return widget;
}

QSpacerItem *newSpacer()
{
    return new QSpacerItem(200, 20, QSizePolicy::Expanding, QSizePolicy::Minimum);
}

} // namespace

ExportForm::ExportForm(QWidget *dialog) : m_dialog(dialog)
{
    auto *top = new QVBoxLayout;
    top->addLayout(createPathRow());
    top->addWidget(newLine(QFrame::HLine));
    top->addLayout(createNameRow());
    top->addWidget(newLine(QFrame::HLine));
    top->addLayout(createReferenceRow());

    auto *all = new QVBoxLayout;
    all->addLayout(top);
    // The dialog is the table's parent from the start: the column widths are taken from a child's initial
    // width.
    table = named(new QTableWidget(m_dialog), "PNListTable");
    all->addWidget(table);
    all->addLayout(createButtonRow());
    m_dialog->setLayout(all);
    setReferenceValidators();
    fitFonts();
}

QFrame *ExportForm::newLine(QFrame::Shape shape) const
{
    auto *line = new QFrame(m_dialog);
    line->setFrameShape(shape);
    line->setFrameShadow(QFrame::Sunken);
    return line;
}

QBoxLayout *ExportForm::createPathRow()
{
    auto *row = new QHBoxLayout;
    pathButton = named(new QPushButton(tr("Path"), m_dialog), "PathButton");
    pathButton->setMaximumSize(labelWidth, fieldHeight);
    row->addWidget(pathButton);
    row->addWidget(newLine(QFrame::VLine));
    pathEdit = named(new QLineEdit(m_dialog), "PathLineEdit");
    pathEdit->setMaximumHeight(fieldHeight);
    row->addWidget(pathEdit);
    return row;
}

QBoxLayout *ExportForm::createNameRow()
{
    auto *row = new QHBoxLayout;
    row->addLayout(createSecondDirGroup(), 2);
    row->addLayout(createFormatGroup(), 1);
    return row;
}

QBoxLayout *ExportForm::createSecondDirGroup()
{
    auto *group = new QHBoxLayout;
    m_secondDirLabel = named(new QLabel(tr("Second Dir:"), m_dialog), "SecondDirLabel");
    m_secondDirLabel->setMaximumSize(labelWidth, fieldHeight);
    group->addWidget(m_secondDirLabel);
    group->addWidget(newLine(QFrame::VLine));
    secondDirEdit = named(new QLineEdit(tr("OX"), m_dialog), "SecondDirLineEdit");
    secondDirEdit->setMaximumHeight(fieldHeight);
    // One to ten characters; besides the ASCII ones everything from U+04BB up, so the ideographs too.
    const QRegExp folderName(QString("^[a-zA-Z0-9~`!@#$%&^()_+={},.;'") + QChar(0x04BB) + '-' +
                             QChar(0xFFFD) + QChar(0xFFFD) + "]{1,10}$");
    secondDirEdit->setValidator(new QRegExpValidator(folderName, m_dialog));
    group->addWidget(secondDirEdit);
    group->addWidget(newLine(QFrame::VLine));
    return group;
}

QBoxLayout *ExportForm::createFormatGroup()
{
    auto *group = new QHBoxLayout;
    m_formatLabel = named(new QLabel(tr("Format:"), m_dialog), "FormatLabel");
    m_formatLabel->setMaximumSize(labelWidth, fieldHeight);
    m_formatLabel->setAlignment(Qt::AlignCenter);
    group->addWidget(m_formatLabel);
    group->addWidget(newLine(QFrame::VLine));
    formatBox = named(new ComboBox(m_dialog), "FormatComboBox");
    formatBox->setMaximumHeight(fieldHeight);
    formatBox->addItems({export_format::gds, export_format::gerber});
    formatBox->setView(new QListView(formatBox));
    formatBox->setStyleSheet("QComboBox{border:2px groove gray; border-radius:4px; padding:2px 4px;}"
                             "QComboBox QAbstractItemView::item{height:20px}");
    group->addWidget(formatBox);
    return group;
}

QBoxLayout *ExportForm::createReferenceRow()
{
    auto *row = new QHBoxLayout;
    m_referenceLabel = named(new QLabel(tr("Reference"), m_dialog), "ReferenceLabel");
    m_referenceLabel->setMaximumWidth(labelWidth);
    row->addWidget(m_referenceLabel);
    row->addWidget(newLine(QFrame::VLine));
    row->addLayout(createOffsetGroup(tr("X"), m_xLabel, referenceXEdit, m_xUnitLabel));
    row->addLayout(createOffsetGroup(tr("Y"), m_yLabel, referenceYEdit, m_yUnitLabel));
    row->addItem(newSpacer());
    named(m_xLabel, "XLabel");
    named(referenceXEdit, "ReferenceXLineEdit");
    named(m_yLabel, "YLabel");
    named(referenceYEdit, "ReferenceYLineEdit");
    return row;
}

QBoxLayout *ExportForm::createOffsetGroup(const QString &axis, QLabel *&label, QLineEdit *&edit,
                                          QLabel *&unit)
{
    label = new QLabel(axis, m_dialog);
    label->setMaximumSize(labelWidth, fieldHeight);
    edit = new QLineEdit(tr("0"), m_dialog);
    edit->setMaximumWidth(offsetWidth);
    unit = new QLabel(tr("um"), m_dialog);
    unit->setMaximumWidth(labelWidth);

    auto *group = new QHBoxLayout;
    group->addWidget(label);
    group->addWidget(edit);
    group->addWidget(unit);
    group->addWidget(newLine(QFrame::VLine));
    return group;
}

QBoxLayout *ExportForm::createButtonRow()
{
    okButton = named(new QPushButton(tr("OK"), m_dialog), "OKButton");
    cancelButton = named(new QPushButton(tr("cancel"), m_dialog), "CancelButton");

    auto *row = new QHBoxLayout;
    row->addItem(newSpacer());
    row->addWidget(okButton);
    row->addWidget(cancelButton);
    return row;
}

// The initial "0" stays, though nobody could type it.
void ExportForm::setReferenceValidators()
{
    const QRegExp offset("[1-9][0-9]{0,9}[.][0-9]{1,6}|[1-9][0-9]{0,9}|[0][.][0-9]{1,6}");
    auto *validator = new QRegExpValidator(offset, m_dialog);
    referenceXEdit->setValidator(validator);
    referenceYEdit->setValidator(validator);
}

void ExportForm::fitFonts()
{
    // A line edit's frame and margin take two pixels above and below its text.
    const QSize room(labelWidth, fieldHeight - 4);
    QFont fieldFont = m_dialog->font();
    for (const QLabel *label : {m_secondDirLabel, m_formatLabel, m_referenceLabel})
        fieldFont = fittingFont(fieldFont, label->text(), room);
    for (QLabel *label :
         {m_secondDirLabel, m_formatLabel, m_referenceLabel, m_xLabel, m_xUnitLabel, m_yLabel, m_yUnitLabel})
        label->setFont(fieldFont);
    for (QLineEdit *edit : {pathEdit, secondDirEdit, referenceXEdit, referenceYEdit})
        edit->setFont(fieldFont);
    pathButton->setFont(fieldFont);
    // The style sheet's border and padding leave the format box eight pixels less than its height; two of
    // them may be the room for accents, which the formats do not have.
    formatBox->setFont(fittingFont(fieldFont, export_format::gerber, QSize(2 * labelWidth, fieldHeight - 6)));
}
