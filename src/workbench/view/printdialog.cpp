#include "workbench/view/printdialog.h"

#include "workbench/numberbox.h"
#include "workbench/view/boardview.h"
#include "workbench/view/lengthunit.h"
#include "workbench/view/printing.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPrinter>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>
#if QT_CONFIG(printdialog)
#include <QPageSetupDialog>
#include <QPrintDialog>
#endif

namespace {

QString sizeText(const QSizeF &size)
{
    const QLocale locale;
    return QString("%1 \u00d7 %2 mm")
        .arg(locale.toString(size.width(), 'f', 1), locale.toString(size.height(), 'f', 1));
}

} // namespace

PrintDialog::PrintDialog(const BoardView &view, QPrinter &printer, const QString &title, QWidget *parent)
    : QDialog(parent), m_view(view), m_printer(printer),
      m_fits(new QRadioButton(tr("As large as the &page allows"))), m_scales(new QRadioButton(tr("&Scale"))),
      m_factor(new NumberBox(0.001, 1000.0, 3)), m_title(new QLineEdit(title)), m_layout(new QLabel)
{
    setWindowTitle(tr("Print"));
    m_fits->setObjectName("PrintFits");
    m_scales->setObjectName("PrintScales");
    m_factor->setObjectName("PrintFactor");
    m_factor->setValue(1.0);
    m_factor->setSuffix(" : 1");
    m_factor->setToolTip(tr("How large things come out: 1 is their true size, 2 is twice as large"));
    m_title->setObjectName("PrintTitle");
    m_title->setCursorPosition(0);
    m_title->setMinimumWidth(50 * fontMetrics().averageCharWidth());
    m_layout->setObjectName("PrintLayout");
    m_layout->setWordWrap(true);
    m_fits->setChecked(true);

    auto *scale = new QHBoxLayout;
    scale->addWidget(m_scales);
    scale->addWidget(m_factor, 1);
    auto *form = new QFormLayout;
    form->addRow(tr("&Title"), m_title);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    buttons->button(QDialogButtonBox::Ok)->setText(tr("&Print ..."));
#if QT_CONFIG(printdialog)
    QPushButton *page = buttons->addButton(tr("P&age ..."), QDialogButtonBox::ActionRole);
    page->setObjectName("PrintPage");
    // Where the system has no printer the page is one of a PDF file, which that window does not know.
    page->setEnabled(m_printer.outputFormat() == QPrinter::NativeFormat);
    connect(page, &QPushButton::clicked, this, &PrintDialog::choosePage);
#endif
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_fits);
    layout->addLayout(scale);
    layout->addLayout(form);
    layout->addWidget(m_layout);
    layout->addWidget(buttons);

    connect(m_fits, &QRadioButton::toggled, this, &PrintDialog::showLayout);
    connect(m_factor, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this, [this] {
        m_scales->setChecked(true);
        showLayout();
    });
    connect(buttons, &QDialogButtonBox::accepted, this, &PrintDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &PrintDialog::reject);
    showLayout();
}

double PrintDialog::factor() const
{
    return m_fits->isChecked() ? 0.0 : m_factor->value();
}

QString PrintDialog::title() const
{
    return m_title->text();
}

void PrintDialog::choosePage()
{
#if QT_CONFIG(printdialog)
    QPageSetupDialog(&m_printer, this).exec();
    showLayout();
#endif
}

void PrintDialog::showLayout()
{
    const PageLayout layout = pageLayout(m_view, m_printer, factor());
    QString text = tr("%1 of the board are printed as %2, scale %3.")
                       .arg(sizeText(layout.printed()), sizeText(layout.printed() * layout.factor),
                            scaleText(layout.factor));
    if (layout.isCut())
        text += " " + tr("There is no room for all of what is seen.");
    m_layout->setText(text);
}

// The system's own window chooses the printer; when that is cancelled, this one stays. A Qt without that
// window prints on the printer that the user has chosen for all programs.
void PrintDialog::accept()
{
#if QT_CONFIG(printdialog)
    QPrintDialog dialog(&m_printer, this);
    dialog.setOptions(QAbstractPrintDialog::PrintToFile | QAbstractPrintDialog::PrintShowPageSize);
    if (dialog.exec() == QDialog::Accepted)
        QDialog::accept();
#else
    if (m_printer.isValid())
        QDialog::accept();
    else
        m_layout->setText(tr("The system has no printer."));
#endif
}
