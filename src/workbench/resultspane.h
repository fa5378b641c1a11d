// The results of the last export, a line a layer.
#pragma once

#include "workbench/exportverifier.h"

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
    // A place where a file differs from its layer has been clicked, or Return pressed on it: the number
    // `place` of those that the comparison has found. A layer stands for its widest one.
    void placeChosen(const QString &layer, int place);

private:
    void choosePlace(const QTreeWidgetItem *item);
    void activate(const QTreeWidgetItem *item);

    QLabel *m_summary;
    QLabel *m_proof;
    QTreeWidget *m_list;
};
