// Edits a rotation that is chosen from the quarter turns, in degrees.
#pragma once

#include <QItemDelegate>

class RotateComboxDelegete : public QItemDelegate
{
    Q_OBJECT

public:
    explicit RotateComboxDelegete(QObject *parent = nullptr);

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;
};
