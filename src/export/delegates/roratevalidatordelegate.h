// Edits a rotation typed as whole degrees, 0 to 360.
#pragma once

#include <QItemDelegate>

class RorateValidatorDelegate : public QItemDelegate
{
    Q_OBJECT

public:
    explicit RorateValidatorDelegate(QObject *parent = nullptr);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;
};
