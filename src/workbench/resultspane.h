// The results of the last export, a line a layer.
#pragma once

#include "workbench/exportwatch.h"

#include <QWidget>

class QLabel;
class QTreeWidget;

class ResultsPane : public QWidget
{
    Q_OBJECT

public:
    explicit ResultsPane(QWidget *parent = nullptr);

    void showResults(const ExportResults &results);

private:
    QLabel *m_summary;
    QTreeWidget *m_list;
};
