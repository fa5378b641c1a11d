#include "export/delegates/checkboxdelegate.h"

#include "export/layercolumns.h"

#include <QApplication>
#include <QMouseEvent>
#include <QStyleOptionButton>

CheckBoxDelegate::CheckBoxDelegate(QObject *parent) : QStyledItemDelegate(parent) {}

void CheckBoxDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                             const QModelIndex &index) const
{
    if (index.column() != layer_column::Check) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    QStyleOptionButton box;
    const bool checked = index.data(Qt::DisplayRole).toBool();
    box.state = QStyle::State_Enabled | (checked ? QStyle::State_On : QStyle::State_Off);
    box.rect = checkRect(option.rect);
    box.palette = option.palette;
    // Styles draw the edge of a box in a darker shade of the window's colour, which is lost on a dark cell.
    if (option.palette.color(QPalette::Base).lightness() < 128)
        box.palette.setBrush(QPalette::Window, option.palette.text());
    QApplication::style()->drawControl(QStyle::CE_CheckBox, &box, painter);
}

bool CheckBoxDelegate::editorEvent(QEvent *event, QAbstractItemModel *model,
                                   const QStyleOptionViewItem &option, const QModelIndex &index)
{
    if (index.column() != layer_column::Check)
        return QStyledItemDelegate::editorEvent(event, model, option, index);

    switch (event->type()) {
    case QEvent::MouseButtonPress:
        return model->setData(index, !index.data(Qt::DisplayRole).toBool(), Qt::EditRole);
    case QEvent::MouseButtonRelease: {
        const auto *mouse = static_cast<QMouseEvent *>(event);
        return mouse->button() != Qt::LeftButton || checkRect(option.rect).contains(mouse->pos());
    }
    default:
        return true;
    }
}

QRect CheckBoxDelegate::checkRect(const QRect &cell)
{
    const QStyleOptionButton standard;
    const QSize size = QApplication::style()->subElementRect(QStyle::SE_CheckBoxIndicator, &standard).size();
    const QPoint corner(cell.x() + (cell.width() / 2 - size.width() / 2),
                        cell.height() / 2 - size.height() / 2 + cell.y());
    return QRect(corner, size);
}
