#include "export/delegates/comboboxdelegate.h"

#include "export/delegates/celleditors.h"

ComboBoxDelegate::ComboBoxDelegate(QObject *parent) : QItemDelegate(parent) {}

QWidget *ComboBoxDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem & /*option*/,
                                        const QModelIndex & /*index*/) const
{
    return cell_editors::createChoice(parent, {tr("Yes"), tr("No")});
}

void ComboBoxDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    cell_editors::showChoice(editor, index);
}

void ComboBoxDelegate::setModelData(QWidget *editor, QAbstractItemModel *model,
                                    const QModelIndex &index) const
{
    cell_editors::storeChoice(editor, model, index);
}

void ComboBoxDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                                            const QModelIndex & /*index*/) const
{
    editor->setGeometry(option.rect);
}
