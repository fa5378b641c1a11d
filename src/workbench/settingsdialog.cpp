#include "workbench/settingsdialog.h"

#include "workbench/foldercheck.h"
#include "workbench/numberbox.h"
#include "workbench/statuscolor.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace {

NumberBox *numberBox(const QString &name, double value, double least, double most, int decimals)
{
    auto *box = new NumberBox(least, most, decimals);
    box->setObjectName(name);
    box->setValue(value);
    return box;
}

// As wide as there is room, and as high as that needs.
void wrapLines(QLabel &label)
{
    label.setWordWrap(true);
    QSizePolicy wide(QSizePolicy::Expanding, QSizePolicy::Minimum);
    wide.setHeightForWidth(true);
    label.setSizePolicy(wide);
}

} // namespace

SettingsDialog::SettingsDialog(const HostSettings &values, QWidget *parent)
    : QDialog(parent), m_secondFolder(new QLineEdit(values.secondFolder)),
      m_resize(numberBox("Resize", values.resize, -10000.0, 10000.0, 3)), m_resizeUnit(new QComboBox),
      m_resizeMeaning(new QLabel),
      m_databaseUnit(numberBox("DatabaseUnit", values.databaseUnit, 0.000001, 1.0, 6)),
      m_withProfile(new QCheckBox(tr("Exports include the board's &profile")))
{
    setWindowTitle(tr("Settings"));
    auto *form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    m_jobFolder = addPath(form, tr("&Jobs"), "JobFolder", values.jobFolder, QString(), true);
    m_jobFolder->setToolTip(tr("The folder that imported jobs are unpacked to"));
    m_outputFolder =
        addPath(form, tr("&Exports"), "OutputFolder", values.outputFolder, tr("the job's own folder"), true);
    m_outputFolder->setToolTip(tr("The folder that the Export dialog proposes"));
    m_secondFolder->setObjectName("SecondFolder");
    m_secondFolder->setPlaceholderText("OX");
    form->addRow(tr("&Folder within it"), m_secondFolder);

    auto *resize = new QHBoxLayout;
    m_resizeUnit->addItem(QString::fromUtf8("\u00b5m"), "um"); // as the settings file has it
    m_resizeUnit->addItem("mm", "mm");
    m_resizeUnit->setCurrentIndex(std::max(0, m_resizeUnit->findData(values.resizeUnit)));
    m_resize->setToolTip(tr("By how much every feature grows, half of it on each side"));
    resize->addWidget(m_resize, 1);
    resize->addWidget(m_resizeUnit);
    form->addRow(tr("&Resize by"), resize);
    qobject_cast<QLabel *>(form->labelForField(resize))->setBuddy(m_resize);
    m_resizeMeaning->setObjectName("ResizeMeaning");
    wrapLines(*m_resizeMeaning);
    form->addRow(QString(), m_resizeMeaning);
    connect(m_resize, QOverload<double>::of(&NumberBox::valueChanged), this, &SettingsDialog::explainResize);
    connect(m_resizeUnit, &QComboBox::currentTextChanged, this, &SettingsDialog::explainResize);
    explainResize();
    m_databaseUnit->setSuffix(QString::fromUtf8(" \u00b5m"));
    form->addRow(tr("&Database unit"), m_databaseUnit);
    m_withProfile->setChecked(values.withProfile);
    form->addRow(QString(), m_withProfile);
    m_exportDatabase = addPath(form, tr("Re&cord exports in"), "ExportDatabase", values.exportDatabase,
                               tr("exports are not recorded"), false);

    m_buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(m_buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addStretch();
    layout->addWidget(m_buttons);
    resize->setSpacing(6);
    setMinimumWidth(560);
    QDialog::resize(minimumWidth(), 0);
    for (QLineEdit *edit : {m_jobFolder, m_outputFolder, m_exportDatabase})
        connect(edit, &QLineEdit::textChanged, this, &SettingsDialog::checkFolders);
    checkFolders();
}

void SettingsDialog::checkFolders()
{
    const HostSettings edited = values();
    const FolderCheck checks[] = {FolderCheck::ofJobs(edited.jobFolder),
                                  FolderCheck::ofExports(edited.outputFolder, edited.jobFolder),
                                  FolderCheck::ofRecord(edited.exportDatabase)};
    bool isUsable = true;
    for (int i = 0; i < 3; ++i) {
        QLabel *label = m_checks[i];
        label->setText(checks[i].text);
        label->setVisible(!checks[i].text.isEmpty());
        label->setPalette(palette());
        if (checks[i].weight >= FolderCheck::Weight::Warning) {
            QPalette colored = palette();
            colored.setColor(QPalette::WindowText, checks[i].weight == FolderCheck::Weight::Error
                                                       ? statuscolor::failure(colored)
                                                       : statuscolor::warning(colored));
            label->setPalette(colored);
        }
        isUsable = isUsable && checks[i].weight != FolderCheck::Weight::Error;
    }
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(isUsable);
    layout()->activate();
    if (layout()->totalHeightForWidth(width()) > height())
        resize(width(), layout()->totalHeightForWidth(width()));
}

void SettingsDialog::explainResize()
{
    m_resizeMeaning->setText(
        hostsettings::resizeText(m_resize->value(), m_resizeUnit->currentData().toString()));
}

HostSettings SettingsDialog::values() const
{
    HostSettings values;
    values.jobFolder = QDir::fromNativeSeparators(m_jobFolder->text());
    values.outputFolder = QDir::fromNativeSeparators(m_outputFolder->text());
    values.secondFolder = m_secondFolder->text();
    values.resize = m_resize->value();
    values.resizeUnit = m_resizeUnit->currentData().toString();
    values.databaseUnit = m_databaseUnit->value();
    values.withProfile = m_withProfile->isChecked();
    values.exportDatabase = QDir::fromNativeSeparators(m_exportDatabase->text());
    return values;
}

QLineEdit *SettingsDialog::addPath(QFormLayout *form, const QString &label, const QString &name,
                                   const QString &path, const QString &whenEmpty, bool isFolder)
{
    auto *edit = new QLineEdit(QDir::toNativeSeparators(path));
    edit->setObjectName(name);
    edit->setPlaceholderText(whenEmpty);
    auto *browse = new QToolButton;
    browse->setText("...");
    browse->setToolTip(isFolder ? tr("Choose a folder") : tr("Choose a file"));
    connect(browse, &QToolButton::clicked, this, [this, edit, label, isFolder] {
        const QString title = QString(label).remove('&');
        const QString chosen = isFolder
                                   ? QFileDialog::getExistingDirectory(this, title, edit->text())
                                   : QFileDialog::getSaveFileName(this, title, edit->text(), QString(),
                                                                  nullptr, QFileDialog::DontConfirmOverwrite);
        if (!chosen.isEmpty())
            edit->setText(QDir::toNativeSeparators(chosen));
    });
    auto *row = new QHBoxLayout;
    row->addWidget(edit, 1);
    row->addWidget(browse);
    form->addRow(label, row);
    qobject_cast<QLabel *>(form->labelForField(row))->setBuddy(edit);
    auto *check = new QLabel;
    check->setObjectName(name + "Check");
    wrapLines(*check);
    form->addRow(QString(), check);
    m_checks << check;
    return edit;
}
