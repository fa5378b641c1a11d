// The steps and layers of the open job.
#pragma once

#include "run/orvexapi.h"

#include <QStringList>
#include <QWidget>

#include <vector>

class QComboBox;
class QLabel;
class QStackedWidget;
class QTableWidget;

class LayerPanel : public QWidget
{
    Q_OBJECT

public:
    explicit LayerPanel(QWidget *parent = nullptr);

    // Shows the matrix of `job`, or why there is nothing to show.
    void showMatrix(const QString &job, const QStringList &steps,
                    const std::vector<ORVEX::API::layer_info> &layers);
    void showNothing(const QString &reason);

    QString currentStep() const;
    // Chooses the step of that name, compared without regard to case. Returns whether the job has it.
    bool setCurrentStep(const QString &step);
    int layerCount() const { return int(m_layers.size()); }
    // Chooses no layer, without announcing it.
    void chooseNone();
    // Chooses the first copper layer, or the first of all.
    void chooseFirstCopper();
    // Chooses the layer of that name, if there is one.
    bool chooseLayer(const QString &name);
    // The chosen layer, or null.
    const ORVEX::API::layer_info *currentLayer() const;

signals:
    void stepChosen(const QString &step);
    void layerChosen();

private:
    void addRow(const ORVEX::API::layer_info &layer);

    QWidget *m_head;
    QLabel *m_job;
    QComboBox *m_steps;
    QTableWidget *m_table;
    QLabel *m_empty;
    QStackedWidget *m_stack;
    std::vector<ORVEX::API::layer_info> m_layers;
};
