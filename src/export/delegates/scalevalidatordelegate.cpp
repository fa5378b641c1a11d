#include "export/delegates/scalevalidatordelegate.h"

#include "export/delegates/celleditors.h"

#include <QRegExpValidator>

ScaleValidatorDelegate::ScaleValidatorDelegate(QObject *parent) : QItemDelegate(parent) {}

QWidget *ScaleValidatorDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem & /*option*/,
                                              const QModelIndex & /*index*/) const
{
    auto *editor = new QLineEdit(parent);
    const QRegExp scale("[0-1][.][0-9]{1,4}|[2]|[0][.][0-9]{1,4}");
    editor->setValidator(new QRegExpValidator(scale, editor));
    return editor;
}

void ScaleValidatorDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    cell_editors::showLineText(editor, index);
}

void ScaleValidatorDelegate::setModelData(QWidget *editor, QAbstractItemModel *model,
                                          const QModelIndex &index) const
{
    cell_editors::storeLineText(editor, model, index);
}

void ScaleValidatorDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                                                  const QModelIndex & /*index*/) const
{
    editor->setGeometry(option.rect);
}
