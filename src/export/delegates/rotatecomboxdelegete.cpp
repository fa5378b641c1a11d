#include "export/delegates/rotatecomboxdelegete.h"

#include "export/delegates/celleditors.h"

RotateComboxDelegete::RotateComboxDelegete(QObject *parent) : QItemDelegate(parent) {}

QWidget *RotateComboxDelegete::createEditor(QWidget *parent, const QStyleOptionViewItem & /*option*/,
                                            const QModelIndex & /*index*/) const
{
    return cell_editors::createChoice(parent, {tr("0"), tr("90"), tr("180"), tr("270")});
}

void RotateComboxDelegete::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    cell_editors::showChoice(editor, index);
}

void RotateComboxDelegete::setModelData(QWidget *editor, QAbstractItemModel *model,
                                        const QModelIndex &index) const
{
    cell_editors::storeChoice(editor, model, index);
}

void RotateComboxDelegete::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                                                const QModelIndex & /*index*/) const
{
    editor->setGeometry(option.rect);
}
