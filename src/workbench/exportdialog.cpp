#include "workbench/exportdialog.h"

#include "plugin/interface/exportformat.h"

#include <QApplication>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>

namespace {

enum Column { Check = 0, Layer = 1, Rotate = 2, Mirror = 3, XScale = 4, YScale = 5, Negate = 6, Time = 7 };

void pressKey(QWidget *widget, Qt::Key key)
{
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(widget, &press);
    QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier);
    QApplication::sendEvent(widget, &release);
}

} // namespace

ExportDialog ExportDialog::find()
{
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->inherits("Export"))
            return ExportDialog(window);
    }
    return ExportDialog(nullptr);
}

ExportDialog::ExportDialog(QWidget *window) : m_window(window)
{
    if (!window)
        return;
    // By name: the words on them are in the user's language.
    m_pathButton = window->findChild<QPushButton *>("PathButton");
    m_ok = window->findChild<QPushButton *>("OKButton");
    m_cancel = window->findChild<QPushButton *>("CancelButton");
    m_path = window->findChild<QLineEdit *>("PathLineEdit");
    m_secondFolder = window->findChild<QLineEdit *>("SecondDirLineEdit");
    for (QComboBox *box : window->findChildren<QComboBox *>()) {
        if (box->findText(export_format::gds) >= 0)
            m_format = box;
    }
    m_table = window->findChild<QTableWidget *>();
}

QString ExportDialog::problem() const
{
    if (!m_window)
        return "no Export dialog opened";
    QStringList missing;
    const auto expect = [&missing](const QWidget *widget, const char *name) {
        if (!widget)
            missing << name;
    };
    expect(m_ok, "the button \"OK\"");
    expect(m_cancel, "the button \"cancel\"");
    expect(m_path, "the field of the path");
    expect(m_secondFolder, "the field of the second folder");
    expect(m_format, "the format box with \".gds\"");
    expect(m_table, "the layer table");
    return missing.isEmpty() ? QString() : "the Export dialog lacks " + missing.join(", ");
}

QString ExportDialog::path() const
{
    return m_path->text();
}

void ExportDialog::enterPath(const QString &path)
{
    m_path->setFocus();
    m_path->selectAll();
    m_path->insert(path);
    pressKey(m_path, Qt::Key_Return);
}

QString ExportDialog::secondFolder() const
{
    return m_secondFolder->text();
}

void ExportDialog::enterSecondFolder(const QString &name)
{
    m_secondFolder->setFocus();
    m_secondFolder->selectAll();
    m_secondFolder->insert(name);
}

bool ExportDialog::chooseFormat(const QString &format)
{
    const int wanted = m_format->findText(format, Qt::MatchExactly);
    if (wanted < 0)
        return false;
    m_format->setFocus();
    // By the arrow keys, which also do what choosing from the list does.
    for (int steps = m_format->count(); steps > 0 && m_format->currentIndex() != wanted; --steps)
        pressKey(m_format, m_format->currentIndex() < wanted ? Qt::Key_Down : Qt::Key_Up);
    return m_format->currentIndex() == wanted;
}

void ExportDialog::openTableMenu()
{
    QWidget *viewport = m_table->viewport();
    const QPoint place = viewport->rect().center();
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, viewport->mapToGlobal(place));
    QApplication::sendEvent(viewport, &event);
}

int ExportDialog::rowCount() const
{
    return m_table->rowCount();
}

bool ExportDialog::isChecked(int row) const
{
    const QTableWidgetItem *item = m_table->item(row, Check);
    return item && item->data(Qt::DisplayRole).toBool();
}

QString ExportDialog::layer(int row) const
{
    const QTableWidgetItem *item = m_table->item(row, Layer);
    return item ? item->text() : QString();
}

LayerChange ExportDialog::change(int row) const
{
    const auto text = [this, row](int column) {
        const auto *box = qobject_cast<const QComboBox *>(m_table->cellWidget(row, column));
        const QTableWidgetItem *item = m_table->item(row, column);
        return box ? box->currentText() : item ? item->text() : QString();
    };
    const auto scale = [&text](int column) {
        const double value = text(column).toDouble();
        return value != 0.0 ? value : 1.0;
    };
    const auto isYes = [this, row](int column) {
        const auto *box = qobject_cast<const QComboBox *>(m_table->cellWidget(row, column));
        return box && box->currentIndex() == 1; // of No and Yes, in the user's language
    };
    LayerChange change;
    change.angle = text(Rotate).toDouble();
    change.mirror = isYes(Mirror);
    change.xScale = scale(XScale);
    change.yScale = scale(YScale);
    change.negate = isYes(Negate);
    return change;
}

bool ExportDialog::setRow(int row, const LayerChange &change)
{
    m_table->item(row, Check)->setData(Qt::EditRole, true);
    const auto choose = [this, row](int column, int index) {
        if (auto *box = qobject_cast<QComboBox *>(m_table->cellWidget(row, column)))
            box->setCurrentIndex(index);
    };
    const auto *rotate = qobject_cast<const QComboBox *>(m_table->cellWidget(row, Rotate));
    choose(Rotate, rotate ? rotate->findText(QString::number(change.angle)) : 0);
    choose(Mirror, change.mirror ? 1 : 0); // of No and Yes
    choose(Negate, change.negate ? 1 : 0);
    m_table->item(row, XScale)->setText(QString::number(change.xScale, 'g', 10));
    m_table->item(row, YScale)->setText(QString::number(change.yScale, 'g', 10));
    const LayerChange chosen = this->change(row);
    return chosen.angle == change.angle && chosen.mirror == change.mirror && chosen.xScale == change.xScale &&
           chosen.yScale == change.yScale && chosen.negate == change.negate;
}

QString ExportDialog::time(int row) const
{
    const QWidget *cell = m_table->cellWidget(row, Time);
    const QLabel *label = cell ? cell->findChild<QLabel *>() : nullptr;
    return label ? label->text() : QString();
}

bool ExportDialog::canPressOk() const
{
    return m_ok->isEnabled();
}

bool ExportDialog::pressOk()
{
    if (!canPressOk())
        return false;
    m_ok->click();
    return true;
}

void ExportDialog::pressCancel()
{
    if (m_cancel)
        m_cancel->click();
}
