#include "workbench/view/graphicview.h"

#include "workbench/view/layerview.h"
#include "workbench/viewcolor.h"

#include <QFileInfo>
#include <QVBoxLayout>

#include <glog/logging.h>

GraphicView::GraphicView(QWidget *parent) : QWidget(parent), m_view(new LayerView)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_view);
    connect(m_view, &LayerView::pointed, this, &GraphicView::pointed);
    connect(&m_loader, &LayerLoader::progressed, this,
            [this](double percent) { m_view->showProgress(m_layer, percent); });
    connect(&m_loader, &LayerLoader::loaded, this, &GraphicView::takeDrawing);
    connect(&m_loader, &LayerLoader::failed, this, [this](const QString &reason) {
        LOG(ERROR) << "the layer " << m_layer.toStdString() << " cannot be shown: " << reason.toStdString();
        m_shownJob.clear();
        m_view->showText(tr("%1 cannot be shown.\n%2").arg(m_layer, reason));
    });
}

void GraphicView::showLayer(const QString &job, const QString &step, const ORVEX::API::layer_info &layer,
                            const cam::ExportOptions &options, const QString &change)
{
    m_job = job + "/" + step;
    m_layer = QString::fromStdString(layer.name);
    m_color = viewColor(layer);
    m_change = change;
    m_loader.load(job, step, m_layer, options);
}

void GraphicView::showFile(const QString &path)
{
    m_loader.stop();
    m_shownJob.clear();
    const QString name = QFileInfo(path).fileName();
    try {
        m_view->showDrawing(readGds(path), name, viewColor(ORVEX::API::layer_info()), false);
    } catch (const std::exception &error) {
        LOG(ERROR) << error.what();
        m_view->showText(tr("%1 cannot be shown.\n%2").arg(name, QString::fromStdString(error.what())));
    }
}

void GraphicView::showText(const QString &text)
{
    m_loader.stop();
    m_shownJob.clear();
    m_view->showText(text);
}

void GraphicView::fit()
{
    m_view->fit();
}

void GraphicView::takeDrawing(const LayerDrawing &drawing)
{
    m_view->showDrawing(drawing,
                        m_change.isEmpty() ? m_layer : tr("%1, as exported: %2").arg(m_layer, m_change),
                        m_color, m_job == m_shownJob);
    m_shownJob = m_job;
}
