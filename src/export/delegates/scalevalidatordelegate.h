// Edits a scale factor: 2, or a number from 0.0 to 1.9999 with one to four decimals.
#pragma once

#include <QItemDelegate>

class ScaleValidatorDelegate : public QItemDelegate
{
    Q_OBJECT

public:
    explicit ScaleValidatorDelegate(QObject *parent = nullptr);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;
};
