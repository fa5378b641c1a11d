#include "workbench/search/search.h"

#include "workbench/layerpanel.h"
#include "workbench/search/searchpanel.h"
#include "workbench/view/boardview.h"
#include "workbench/view/graphicview.h"

#include <QAction>
#include <QDockWidget>
#include <QMainWindow>
#include <QMenu>

Search::Search(QMainWindow &window, QDockWidget &beside, LayerPanel &layers, GraphicView &view)
    : QObject(&window), m_beside(beside), m_layers(layers), m_view(view),
      m_dock(new QDockWidget(tr("Search"))), m_panel(new SearchPanel)
{
    m_dock->setObjectName("SearchDock");
    m_dock->setWidget(m_panel);
    window.tabifyDockWidget(&beside, m_dock);
    m_dock->hide();
    connect(m_panel, &SearchPanel::chosen, &m_view, &GraphicView::mark);
    connect(m_panel, &SearchPanel::stepAsked, &m_view, &GraphicView::stepMark);
    connect(m_panel, &SearchPanel::closed, this, &Search::close);
    connect(m_dock, &QDockWidget::visibilityChanged, this, [this] {
        if (m_dock->isHidden()) // closed, not behind another tab
            m_view.clearFound();
    });
    connect(&m_view, &GraphicView::sourceChanged, this, [this] { m_panel->setSource(m_view.source()); });
    connect(&m_view, &GraphicView::marked, m_panel, &SearchPanel::setPlace);
    connect(&m_view, &GraphicView::layerNeeded, this, &Search::showLayer);
}

void Search::addCommands(QMenu &menu)
{
    const auto add = [&menu](const QString &text, const char *name, const QKeySequence &key,
                             const QString &tip) {
        QAction *action = menu.addAction(text);
        action->setObjectName(name);
        action->setShortcut(key);
        action->setStatusTip(tip);
        return action;
    };
    connect(add(tr("F&ind ..."), "Find", QKeySequence::Find,
                tr("Search the step for components, nets, symbols and attributes")),
            &QAction::triggered, this, &Search::open);
    connect(add(tr("&Next place"), "FindNext", Qt::Key_F3, tr("Go to the next place of what was found")),
            &QAction::triggered, this, [this] { m_view.stepMark(1); });
    connect(add(tr("&Previous place"), "FindPrevious", Qt::SHIFT + Qt::Key_F3,
                tr("Go to the place of what was found before this one")),
            &QAction::triggered, this, [this] { m_view.stepMark(-1); });
    menu.addSeparator();
}

void Search::open()
{
    m_dock->show();
    m_dock->raise();
    m_panel->start();
}

void Search::close()
{
    m_view.clearFound();
    m_dock->hide();
    m_beside.raise();
    m_view.board().setFocus();
}

void Search::showLayer(const QString &layer)
{
    m_layers.chooseLayer(layer);
}
