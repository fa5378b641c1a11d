#include "export/delegates/roratevalidatordelegate.h"

#include "export/delegates/celleditors.h"

#include <QIntValidator>

RorateValidatorDelegate::RorateValidatorDelegate(QObject *parent) : QItemDelegate(parent) {}

QWidget *RorateValidatorDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem & /*option*/,
                                               const QModelIndex & /*index*/) const
{
    auto *editor = new QLineEdit(parent);
    editor->setValidator(new QIntValidator(0, 360, editor));
    return editor;
}

void RorateValidatorDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    cell_editors::showLineText(editor, index);
}

void RorateValidatorDelegate::setModelData(QWidget *editor, QAbstractItemModel *model,
                                           const QModelIndex &index) const
{
    cell_editors::storeLineText(editor, model, index);
}

void RorateValidatorDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                                                   const QModelIndex & /*index*/) const
{
    editor->setGeometry(option.rect);
}
