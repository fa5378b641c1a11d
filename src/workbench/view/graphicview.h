// The graphics view of the workbench: shows the layers that it is told to, one at a time.
#pragma once

#include "run/orvexapi.h"
#include "workbench/view/layerloader.h"

#include <QColor>
#include <QWidget>

class LayerView;

class GraphicView : public QWidget
{
    Q_OBJECT

public:
    explicit GraphicView(QWidget *parent = nullptr);

    // `job`: the job's folder.
    // The layer of the job in the folder `job`, changed by `options` as by an export; `change` says how, for
    // the title.
    void showLayer(const QString &job, const QString &step, const ORVEX::API::layer_info &layer,
                   const cam::ExportOptions &options, const QString &change);
    // Shows a GDSII file that belongs to no job.
    void showFile(const QString &path);
    void showText(const QString &text);
    // Ends the reading of a layer.
    void stopReading() { m_loader.stop(); }
    bool isReading() const { return m_loader.isBusy(); }

public slots:
    void fit();

signals:
    // The place under the mouse; empty when it leaves.
    void pointed(const QString &place);

private:
    void takeDrawing(const LayerDrawing &drawing);

    LayerLoader m_loader;
    LayerView *m_view;
    QString m_job; // of the layer shown or being read, as what follows
    QString m_shownJob;
    QString m_layer;
    QString m_change;
    QColor m_color;
};
