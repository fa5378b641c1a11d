// The Export dialog's construction, its path, second directory, format and reference fields, and its closing.

#include "export/export.h"

#include "export/combobox.h"
#include "export/fittingfont.h"
#include "platform/paths.h"

#include <QBoxLayout>
#include <QCloseEvent>
#include <QDebug>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPointer>
#include <QProgressDialog>
#include <QPushButton>
#include <QRegExp>
#include <QRegExpValidator>
#include <QStandardItemModel>
#include <QTableWidget>

namespace {

const int fieldHeight = 20; // pixels, the most that a field takes
const int labelWidth = 70;

QFrame *newLine(QWidget *parent, QFrame::Shape shape)
{
    auto *line = new QFrame(parent);
    line->setFrameShape(shape);
    line->setFrameShadow(QFrame::Sunken);
    return line;
}

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

QString withBackslashes(QString path)
{
    return path.replace(QRegExp("/"), "\\");
}

bool isFolder(const QString &path)
{
    return QFileInfo(platform::toLocal(path)).isDir();
}

} // namespace

Export::Export(QWidget *parent) : QWidget(parent)
{
    initWidgets();
    initTable();
    initConnections();
    initReferenceValidators();
}

Export::~Export()
{
    // The run is below this on the stack, perhaps in the middle of setting the progress dialog's value: the
    // run deletes it, when its layer is finished.
    if (m_progressDialog) {
        m_progressDialog->setParent(nullptr, m_progressDialog->windowFlags());
        m_progressDialog->setVisible(!m_progressDialog->wasCanceled());
    }
    delete m_scaleModel;
}

void Export::initWidgets()
{
    auto *top = new QVBoxLayout;
    top->addLayout(createPathRow());
    top->addWidget(newLine(this, QFrame::HLine));
    top->addLayout(createNameRow());
    top->addWidget(newLine(this, QFrame::HLine));
    top->addLayout(createReferenceRow());

    auto *all = new QVBoxLayout;
    all->addLayout(top);
    // The dialog is the table's parent from the start: the column widths are taken from a child's initial
    // width.
    PNListTable = named(new QTableWidget(this), "PNListTable");
    all->addWidget(PNListTable);
    all->addLayout(createButtonRow());
    setLayout(all);
    fitFonts();

    resize(800, 600);
    setWindowModality(Qt::ApplicationModal);
    setWindowTitle(m_stepName + tr("Export"));
    setAttribute(Qt::WA_DeleteOnClose);
}

QBoxLayout *Export::createPathRow()
{
    PathButton = named(new QPushButton(tr("Path"), this), "PathButton");
    PathButton->setMaximumSize(labelWidth, fieldHeight);
    m_pathLine = newLine(this, QFrame::VLine);
    PathLineEdit = named(new QLineEdit(this), "PathLineEdit");
    PathLineEdit->setMaximumHeight(fieldHeight);

    auto *row = new QHBoxLayout;
    row->addWidget(PathButton);
    row->addWidget(m_pathLine);
    row->addWidget(PathLineEdit);
    return row;
}

QBoxLayout *Export::createNameRow()
{
    auto *row = new QHBoxLayout;
    row->addLayout(createSecondDirGroup(), 2);
    row->addLayout(createFormatGroup(), 1);
    return row;
}

QBoxLayout *Export::createSecondDirGroup()
{
    SecondDirLabel = named(new QLabel(tr("Second Dir:"), this), "SecondDirLabel");
    SecondDirLabel->setMaximumSize(labelWidth, fieldHeight);
    m_secondDirLine = newLine(this, QFrame::VLine);
    SecondDirLineEdit = named(new QLineEdit(tr("OX"), this), "SecondDirLineEdit");
    SecondDirLineEdit->setMaximumHeight(fieldHeight);
    // One to ten characters; besides the ASCII ones everything from U+04BB up, so the ideographs too.
    const QRegExp folderName(QString("^[a-zA-Z0-9~`!@#$%&^()_+={},.;'") + QChar(0x04BB) + '-' +
                             QChar(0xFFFD) + QChar(0xFFFD) + "]{1,10}$");
    SecondDirLineEdit->setValidator(new QRegExpValidator(folderName, this));
    m_secondDirEndLine = newLine(this, QFrame::VLine);

    auto *group = new QHBoxLayout;
    group->addWidget(SecondDirLabel);
    group->addWidget(m_secondDirLine);
    group->addWidget(SecondDirLineEdit);
    group->addWidget(m_secondDirEndLine);
    return group;
}

QBoxLayout *Export::createFormatGroup()
{
    FormatLabel = named(new QLabel(tr("Format:"), this), "FormatLabel");
    FormatLabel->setMaximumSize(labelWidth, fieldHeight);
    FormatLabel->setAlignment(Qt::AlignCenter);
    m_formatLine = newLine(this, QFrame::VLine);
    FormatComboBox = named(new ComboBox(this), "FormatComboBox");
    FormatComboBox->setMaximumHeight(fieldHeight);
    FormatComboBox->addItems({".gds", ".gerber"});
    FormatComboBox->setView(new QListView(FormatComboBox));
    FormatComboBox->setStyleSheet("QComboBox{border:2px groove gray; border-radius:4px; padding:2px 4px;}"
                                  "QComboBox QAbstractItemView::item{height:20px}");

    auto *group = new QHBoxLayout;
    group->addWidget(FormatLabel);
    group->addWidget(m_formatLine);
    group->addWidget(FormatComboBox);
    return group;
}

QBoxLayout *Export::createReferenceRow()
{
    ReferenceLabel = named(new QLabel(tr("Reference"), this), "ReferenceLabel");
    ReferenceLabel->setMaximumWidth(labelWidth);
    m_referenceLine = newLine(this, QFrame::VLine);

    auto *row = new QHBoxLayout;
    row->addWidget(ReferenceLabel);
    row->addWidget(m_referenceLine);
    row->addLayout(createOffsetGroup(tr("X"), XLabel, ReferenceXLineEdit, XUnitLabel, m_xEndLine));
    row->addLayout(createOffsetGroup(tr("Y"), YLabel, ReferenceYLineEdit, YUnitLabel, m_yEndLine));
    row->addItem(newSpacer());
    named(XLabel, "XLabel");
    named(ReferenceXLineEdit, "ReferenceXLineEdit");
    named(YLabel, "YLabel");
    named(ReferenceYLineEdit, "ReferenceYLineEdit");
    return row;
}

QBoxLayout *Export::createOffsetGroup(const QString &axis, QLabel *&label, QLineEdit *&edit, QLabel *&unit,
                                      QFrame *&endLine)
{
    label = new QLabel(axis, this);
    label->setMaximumSize(labelWidth, fieldHeight);
    edit = new QLineEdit(tr("0"), this);
    edit->setMaximumWidth(150);
    unit = new QLabel(tr("um"), this);
    unit->setMaximumWidth(labelWidth);
    endLine = newLine(this, QFrame::VLine);

    auto *group = new QHBoxLayout;
    group->addWidget(label);
    group->addWidget(edit);
    group->addWidget(unit);
    group->addWidget(endLine);
    return group;
}

QBoxLayout *Export::createButtonRow()
{
    OKButton = named(new QPushButton(tr("OK"), this), "OKButton");
    CancelButton = named(new QPushButton(tr("cancel"), this), "CancelButton");

    auto *row = new QHBoxLayout;
    row->addItem(newSpacer());
    row->addWidget(OKButton);
    row->addWidget(CancelButton);
    return row;
}

void Export::fitFonts()
{
    // A line edit's frame and margin take two pixels above and below its text.
    const QSize room(labelWidth, fieldHeight - 4);
    QFont fieldFont = font();
    for (const QLabel *label : {SecondDirLabel, FormatLabel, ReferenceLabel})
        fieldFont = fittingFont(fieldFont, label->text(), room);
    for (QLabel *label :
         {SecondDirLabel, FormatLabel, ReferenceLabel, XLabel, XUnitLabel, YLabel, YUnitLabel})
        label->setFont(fieldFont);
    for (QLineEdit *edit : {PathLineEdit, SecondDirLineEdit, ReferenceXLineEdit, ReferenceYLineEdit})
        edit->setFont(fieldFont);
    PathButton->setFont(fieldFont);
    // The style sheet's border and padding leave the format box eight pixels less than its height; two of
    // them may be the room for accents, which the formats do not have.
    FormatComboBox->setFont(fittingFont(fieldFont, ".gerber", QSize(2 * labelWidth, fieldHeight - 6)));
}

void Export::initConnections()
{
    connect(CancelButton, SIGNAL(clicked(bool)), this, SLOT(on_CancelButton_Clicked()), Qt::QueuedConnection);
    connect(OKButton, SIGNAL(clicked(bool)), this, SLOT(on_OKButton_clicked()));
    connect(PathButton, SIGNAL(clicked(bool)), this, SLOT(on_PathButton_clicled()));
    connect(PathLineEdit, SIGNAL(editingFinished()), this, SLOT(on_PathLineEdit_finished()));
    connect(PNListTable, SIGNAL(customContextMenuRequested(QPoint)), this,
            SLOT(on_PNListTable_customContextMenuRequest(QPoint)));
}

void Export::initReferenceValidators()
{
    const QRegExp offset("[1-9][0-9]{0,9}[.][0-9]{1,6}|[1-9][0-9]{0,9}|[0][.][0-9]{1,6}");
    auto *validator = new QRegExpValidator(offset, this);
    ReferenceXLineEdit->setValidator(validator);
    ReferenceYLineEdit->setValidator(validator);
}

void Export::setExportConfig(const ExportConfig &config)
{
    m_outputFormat = config.outputFormat;
    m_outputPath = config.outputPath;
    // The absolute form of an empty path would be the working folder, which nobody chose.
    m_absoluteOutputPath =
        config.outputPath.isEmpty() ? QString() : QDir(platform::toLocal(config.outputPath)).absolutePath();
    m_outputPathSecond = config.outputPathSecond;
    m_resizeUnit = config.resizeUnit;
    m_resizeValue = config.resizeValue;
    m_dbu = config.dbu;
    m_profileDot = config.profileDot;
    m_mirror = config.mirror;

    if (!m_outputPathSecond.isEmpty())
        SecondDirLineEdit->setText(m_outputPathSecond);
    // A configured ".gerber" is not preselected.
    if (m_outputFormat.isEmpty() || m_outputFormat.toLower() == ".gds")
        FormatComboBox->setCurrentIndex(0);
}

void Export::setJobInfo(ExportJobInfo *info)
{
    if (info) {
        m_jobList.swap(info->list);
        m_stepName = info->stepName;
        m_folderPath = info->folderPath;
        m_jobName = info->jobName;
    }
    m_folderPath = withBackslashes(m_folderPath);
    qDebug() << m_folderPath;

    if (m_absoluteOutputPath.isEmpty()) {
        PathLineEdit->setText(m_folderPath);
    } else {
        const QString path = withBackslashes(m_absoluteOutputPath);
        qDebug() << path;
        PathLineEdit->setText(path);
    }
    fillLayerTable();
}

void Export::setNewProfileList(QList<std::string> &list)
{
    m_newProfileList.swap(list);
}

void Export::on_PathButton_clicled()
{
    if (m_isRunning)
        return;
    QFileDialog fileDialog;
    fileDialog.setWindowTitle(tr("Export"));
    fileDialog.setDirectory("/");
    fileDialog.setNameFilter("all(*.*)");
    fileDialog.setFileMode(QFileDialog::Directory);
    fileDialog.setViewMode(QFileDialog::Detail);

    // The host may close the dialog while the folder is being chosen.
    const QPointer<Export> self(this);
    if (fileDialog.exec() != QDialog::Accepted || !self)
        return;
    m_exportPath = fileDialog.selectedFiles().value(0);
    fileDialog.close();
    PathLineEdit->setText(m_exportPath);
    OKButton->setEnabled(true);
}

void Export::on_PathLineEdit_finished()
{
    // The warning takes the focus from the line edit, which ends its editing a second time. So does a run's
    // progress dialog.
    if (m_isWarning || m_isRunning)
        return;
    const QString path = PathLineEdit->text();
    qDebug() << path;
    const bool isValid = isFolder(path);
    const QPointer<Export> self(this);
    if (!isValid && !m_isClosing)
        warnOfMissingPath();
    if (self)
        OKButton->setEnabled(isValid);
}

void Export::warnOfMissingPath()
{
    m_isWarning = true;
    const QPointer<Export> self(this);
    // On the heap: the box is the dialog's child, and the dialog may be closed while the box is open.
    const QPointer<QMessageBox> box = new QMessageBox(
        QMessageBox::Warning, tr("Warning"), tr("The path you selected is not exist"), QMessageBox::Ok, this);
    box->exec();
    delete box;
    if (self)
        m_isWarning = false;
}

void Export::on_CancelButton_Clicked()
{
    close();
}

void Export::closeEvent(QCloseEvent *event)
{
    // Closing deletes the dialog, and a run works on it until its last layer is done.
    if (m_isRunning) {
        event->ignore();
        return;
    }
    m_isClosing = true;
    event->accept();
}
