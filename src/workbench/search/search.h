// The command Find: the pane that searches the open step, what it marks in the view, and the keys.
#pragma once

#include <QObject>

class GraphicView;
class LayerPanel;
class SearchPanel;

class QDockWidget;
class QMainWindow;
class QMenu;

class Search : public QObject
{
    Q_OBJECT

public:
    // Adds the pane to `window`, behind `beside`. All of them outlive the object.
    Search(QMainWindow &window, QDockWidget &beside, LayerPanel &layers, GraphicView &view);
    void addCommands(QMenu &menu);

private:
    void open();
    void close();
    void showLayer(const QString &layer);

    QDockWidget &m_beside;
    LayerPanel &m_layers;
    GraphicView &m_view;
    QDockWidget *m_dock;
    SearchPanel *m_panel;
};
