// The results of the last export, a line a layer.
#pragma once

#include "workbench/exportverifier.h"

#include <QPointF>
#include <QWidget>

class QLabel;
class QTreeWidget;
class QTreeWidgetItem;

class ResultsPane : public QWidget
{
    Q_OBJECT

public:
    explicit ResultsPane(QWidget *parent = nullptr);

    void showResults(const ExportResults &results);
    // Beside the results: which files are what their layers say, and where they are not.
    void showProofs(const ExportVerifier &verifier);

signals:
    // A place where a file differs from its layer, in millimetres of the file, has been double-clicked;
    // `width` is that of the difference.
    void placeChosen(const QString &layer, const QPointF &place, double width);

private:
    void activate(const QTreeWidgetItem *item);

    QLabel *m_summary;
    QLabel *m_proof;
    QTreeWidget *m_list;
};
