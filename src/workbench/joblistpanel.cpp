#include "workbench/joblistpanel.h"

#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QSignalBlocker>
#include <QStackedWidget>
#include <QStyle>
#include <QVBoxLayout>

JobListPanel::JobListPanel(QWidget *parent)
    : QWidget(parent), m_root(new QLabel), m_filter(new QLineEdit), m_list(new QListWidget),
      m_empty(new QLabel), m_stack(new QStackedWidget)
{
    m_root->setWordWrap(true);
    m_root->setTextInteractionFlags(Qt::TextSelectableByMouse);
    QPalette quiet = m_root->palette();
    QColor color = quiet.color(QPalette::WindowText);
    color.setAlphaF(0.65);
    quiet.setColor(QPalette::WindowText, color);
    m_root->setPalette(quiet);
    m_filter->setPlaceholderText(tr("Filter jobs"));
    m_filter->setClearButtonEnabled(true);
    m_list->setUniformItemSizes(true);
    m_empty->setAlignment(Qt::AlignCenter);
    m_empty->setWordWrap(true);
    m_empty->setMargin(16);
    m_stack->addWidget(m_list);
    m_stack->addWidget(m_empty);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->addWidget(m_filter);
    layout->addWidget(m_stack, 1);
    layout->addWidget(m_root);

    connect(m_filter, &QLineEdit::textChanged, this, &JobListPanel::applyFilter);
    // Not the current item: a list that gets the focus makes its first item current by itself.
    for (const auto signal : {&QListWidget::itemClicked, &QListWidget::itemActivated})
        connect(m_list, signal, this, [this](const QListWidgetItem *item) { emit jobChosen(item->text()); });
    setFocusProxy(m_list);
    setJobs(QString(), {});
}

void JobListPanel::setJobs(const QString &root, const QVector<JobEntry> &jobs)
{
    const QSignalBlocker quiet(m_list);
    const QString current = m_list->currentItem() ? m_list->currentItem()->text() : QString();
    m_list->clear();
    const QIcon icon = style()->standardIcon(QStyle::SP_DirIcon);
    for (const JobEntry &job : jobs) {
        auto *item = new QListWidgetItem(icon, job.name, m_list);
        item->setToolTip(tr("%1\nchanged %2")
                             .arg(QDir::toNativeSeparators(job.folder),
                                  job.modified.toString(Qt::ISODate).replace('T', ' ')));
    }
    m_root->setText(root.isEmpty() ? QString() : tr("in %1").arg(QDir::toNativeSeparators(root)));
    m_empty->setText(tr("There are no jobs yet.\n\nImport reads ODB++ job archives (.tgz)."));
    setCurrentJob(current);
    applyFilter();
}

QStringList JobListPanel::jobNames() const
{
    QStringList names;
    for (int row = 0; row < m_list->count(); ++row)
        names << m_list->item(row)->text();
    return names;
}

void JobListPanel::setCurrentJob(const QString &name)
{
    const QSignalBlocker quiet(m_list);
    const QList<QListWidgetItem *> found = m_list->findItems(name, Qt::MatchExactly | Qt::MatchCaseSensitive);
    m_list->setCurrentItem(found.isEmpty() ? nullptr : found.first());
    if (!found.isEmpty())
        m_list->scrollToItem(found.first());
}

void JobListPanel::applyFilter()
{
    int visible = 0;
    for (int row = 0; row < m_list->count(); ++row) {
        QListWidgetItem *item = m_list->item(row);
        item->setHidden(!item->text().contains(m_filter->text().trimmed(), Qt::CaseInsensitive));
        visible += item->isHidden() ? 0 : 1;
    }
    if (m_list->count() > 0 && visible == 0)
        m_empty->setText(tr("No job's name contains \"%1\".").arg(m_filter->text().trimmed()));
    m_stack->setCurrentWidget(visible > 0 ? static_cast<QWidget *>(m_list) : m_empty);
    m_filter->setEnabled(m_list->count() > 0);
}
