// How the delegates' editors take a cell's edit value and give it back: a line edit by its text, a combo box
// by the entry that has that text.
#pragma once

#include "export/combobox.h"

#include <QAbstractItemModel>
#include <QLineEdit>

namespace cell_editors {

inline void showLineText(QWidget *editor, const QModelIndex &index)
{
    static_cast<QLineEdit *>(editor)->setText(index.data(Qt::EditRole).toString());
}

inline void storeLineText(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index)
{
    model->setData(index, static_cast<QLineEdit *>(editor)->text(), Qt::EditRole);
}

// A combo box with `entries`, the second one chosen.
inline QComboBox *createChoice(QWidget *parent, const QStringList &entries)
{
    auto *box = new ComboBox(parent);
    box->addItems(entries);
    box->setCurrentIndex(1);
    return box;
}

inline void showChoice(QWidget *editor, const QModelIndex &index)
{
    auto *box = static_cast<QComboBox *>(editor);
    const QString text = index.data(Qt::EditRole).toString();
    box->setCurrentIndex(box->findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive));
}

inline void storeChoice(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index)
{
    model->setData(index, static_cast<QComboBox *>(editor)->currentText(), Qt::EditRole);
}

} // namespace cell_editors
