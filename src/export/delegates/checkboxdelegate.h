// Draws the check column's boolean as a check box and toggles it on a mouse press.
#pragma once

#include <QStyledItemDelegate>

class CheckBoxDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit CheckBoxDelegate(QObject *parent = nullptr);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    // Any mouse button, pressed anywhere in the cell, toggles; no event of the column opens an editor.
    bool editorEvent(QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option,
                     const QModelIndex &index) override;

    // Where the box is drawn in a cell: the style's indicator, centred.
    static QRect checkRect(const QRect &cell);
};
