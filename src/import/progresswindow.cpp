#include "import/progresswindow.h"

#include <QHBoxLayout>

namespace {

const int barWidth = 500; // pixels

} // namespace

ProgressWindow::ProgressWindow(QWidget *parent)
    : m_window(new QWidget(parent)), m_bar(new QProgressBar(m_window))
{
    m_window->setWindowFlags(Qt::Dialog | Qt::WindowTitleHint | Qt::FramelessWindowHint |
                             Qt::WindowStaysOnTopHint | Qt::CustomizeWindowHint);
    m_window->setWindowModality(Qt::ApplicationModal);

    m_bar->setFixedWidth(barWidth);
    m_bar->setOrientation(Qt::Horizontal);
    m_bar->setRange(0, 0);

    auto *layout = new QHBoxLayout(m_window);
    layout->addWidget(m_bar);
}

void ProgressWindow::show() const
{
    if (m_window)
        m_window->show();
}

void ProgressWindow::close() const
{
    if (m_window)
        m_window->close();
}

void ProgressWindow::setValue(int value) const
{
    if (m_bar)
        m_bar->setValue(value);
}
