// A combo box for a table cell.
//
// Each layer has three of them, and a popup list with its window, scroll bars and style takes eight times
// what the rest of the box does. So the list is made when it is first opened.
#pragma once

#include "export/combobox.h"

#include <QListView>

class CellComboBox : public ComboBox
{
public:
    using ComboBox::ComboBox;

    void showPopup() override
    {
        if (!m_hasView) {
            m_hasView = true;
            setView(new QListView(this));
        }
        ComboBox::showPopup();
    }

protected:
    void changeEvent(QEvent *event) override
    {
        // The base would make a list in order to style it. The size hint that it would forget is not asked
        // for: the cell gives the size.
        if (event->type() == QEvent::StyleChange && !m_hasView)
            QWidget::changeEvent(event);
        else
            ComboBox::changeEvent(event);
    }

private:
    bool m_hasView = false;
};
