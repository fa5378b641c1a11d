#include "workbench/shortcutsdialog.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QRegularExpression>
#include <QStyle>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

// Without its mark for the Alt key, which in Chinese stands in brackets behind the text: "(&F)".
QString plain(QString text)
{
    static const QRegularExpression mark("\\(&.\\)"), dots(" ?\\.\\.\\.$");
    return text.remove(mark).remove('&').remove(dots);
}

// A menu's commands, and those of the menus in it.
void addMenu(QTreeWidgetItem *group, const QMenu *menu)
{
    for (const QAction *action : menu->actions()) {
        if (action->menu())
            addMenu(group, action->menu());
        else if (!action->shortcut().isEmpty())
            new QTreeWidgetItem(group,
                                {plain(action->text()), action->shortcut().toString(QKeySequence::NativeText),
                                 action->statusTip()});
    }
}

} // namespace

ShortcutsDialog::ShortcutsDialog(const QMainWindow &window, QWidget *parent) : QDialog(parent)
{
    setWindowTitle(tr("Keyboard"));
    auto *list = new QTreeWidget;
    list->setHeaderLabels({tr("Command"), tr("Key"), tr("What it does")});
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    const auto addGroup = [list](const QString &title) {
        auto *group = new QTreeWidgetItem(list, {title});
        QFont bold = list->font();
        bold.setBold(true);
        group->setFont(0, bold);
        return group;
    };
    for (const QAction *action : window.menuBar()->actions()) {
        if (action->menu())
            addMenu(addGroup(plain(action->text())), action->menu());
    }
    QTreeWidgetItem *panes = addGroup(tr("Panes"));
    const QString rows[][2] = {
        {tr("Next field or pane"), "Tab"},
        {tr("Menus"), "Alt"},
        {tr("Open the job in the frame"), QKeySequence(Qt::Key_Return).toString(QKeySequence::NativeText)},
        {tr("Menu of the job or layer in the frame"),
         QKeySequence(Qt::Key_Menu).toString(QKeySequence::NativeText)}};
    for (const auto &row : rows)
        new QTreeWidgetItem(panes, {row[0], row[1]});
    for (int row = list->topLevelItemCount() - 1; row >= 0; --row) {
        if (list->topLevelItem(row)->childCount() == 0)
            delete list->takeTopLevelItem(row);
    }
    list->expandAll();
    for (int column = 0; column < list->columnCount(); ++column)
        list->resizeColumnToContents(column);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(list);
    layout->addWidget(buttons);
    // As wide as its lines, where the screen is; WindowPlacer sees to that.
    int width = 2 * list->frameWidth() + style()->pixelMetric(QStyle::PM_ScrollBarExtent) +
                layout->contentsMargins().left() + layout->contentsMargins().right();
    for (int column = 0; column < list->columnCount(); ++column)
        width += list->columnWidth(column);
    resize(width + 8, 480);
}
