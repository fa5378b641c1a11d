#include "workbench/joblistpanel.h"

#include <QAction>
#include <QCoreApplication>
#include <QDate>
#include <QDir>
#include <QEvent>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMenu>
#include <QPointer>
#include <QRunnable>
#include <QStackedWidget>
#include <QStyle>
#include <QThreadPool>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <functional>

namespace {

enum Column { Name, Date, Size, Tool, ColumnCount };
enum Role { Folder = Qt::UserRole, SortKey, Job };

// Sorts dates and sizes by what they are, not by their texts.
class JobItem : public QTreeWidgetItem
{
public:
    using QTreeWidgetItem::QTreeWidgetItem;
    bool operator<(const QTreeWidgetItem &other) const override
    {
        const int column = treeWidget()->sortColumn();
        if (column == Date || column == Size)
            return data(column, SortKey).toLongLong() < other.data(column, SortKey).toLongLong();
        return text(column).compare(other.text(column), Qt::CaseInsensitive) < 0;
    }
};

// Moving the frame leaves the highlight where it is.
class JobTree : public QTreeWidget
{
public:
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex & /*index*/,
                                                         const QEvent * /*event*/) const override
    {
        return QItemSelectionModel::NoUpdate;
    }
};

class SizeTask : public QRunnable
{
public:
    using Report = std::function<void(const QString &folder, qint64 bytes)>;

    SizeTask(const QVector<JobEntry> &jobs, std::shared_ptr<std::atomic<bool>> stop, Report report)
        : m_jobs(jobs), m_stop(std::move(stop)), m_report(std::move(report))
    {
    }
    void run() override
    {
        for (const JobEntry &job : m_jobs) {
            const qint64 bytes = folderSize(job.folder, *m_stop);
            if (*m_stop)
                return;
            m_report(job.folder, bytes);
        }
    }

private:
    const QVector<JobEntry> m_jobs;
    const std::shared_ptr<std::atomic<bool>> m_stop;
    const Report m_report;
};

} // namespace

JobListPanel::JobListPanel(QWidget *parent)
    : QWidget(parent), m_root(new QLabel), m_filter(new QLineEdit), m_list(new JobTree), m_empty(new QLabel),
      m_stack(new QStackedWidget)
{
    m_root->setWordWrap(true);
    m_root->setTextInteractionFlags(Qt::TextSelectableByMouse);
    QPalette quiet = m_root->palette();
    QColor color = quiet.color(QPalette::WindowText);
    color.setAlphaF(0.65);
    quiet.setColor(QPalette::WindowText, color);
    m_root->setPalette(quiet);
    m_filter->setClearButtonEnabled(true);
    m_list->setObjectName("Jobs");
    m_list->setUniformRowHeights(true);
    m_list->setRootIsDecorated(false);
    m_list->setAllColumnsShowFocus(true);
    m_list->setSortingEnabled(true);
    m_list->sortByColumn(Name, Qt::AscendingOrder);
    m_list->setTextElideMode(Qt::ElideMiddle);
    m_list->setContextMenuPolicy(Qt::CustomContextMenu);
    m_list->setColumnCount(ColumnCount);
    m_list->header()->setStretchLastSection(true);
    m_list->header()->setMinimumSectionSize(3 * fontMetrics().height());
    m_list->header()->setDefaultSectionSize(4 * fontMetrics().height()); // the last one may be as narrow
    const int em = fontMetrics().height();
    m_list->setColumnWidth(Name, 7 * em);
    const QString date = QLocale().toString(QDate(2028, 12, 28), QLocale::ShortFormat);
    m_list->setColumnWidth(Date, std::max(5 * em, m_list->fontMetrics().boundingRect(date).width() + em));
    m_list->setColumnWidth(Size, 5 * em);
    m_list->setColumnWidth(Tool, 3 * em); // at least
    m_empty->setAlignment(Qt::AlignCenter);
    m_empty->setWordWrap(true);
    m_empty->setMargin(2);
    m_stack->addWidget(m_list);
    m_stack->addWidget(m_empty);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->addWidget(m_filter);
    layout->addWidget(m_stack, 1);
    layout->addWidget(m_root);

    buildActions();
    connect(m_filter, &QLineEdit::textChanged, this, &JobListPanel::applyFilter);
    connect(m_list, &QTreeWidget::itemActivated, this, [this] { emit jobChosen(nameInFrame()); });
    // A click on the open job reads it again.
    connect(m_list, &QTreeWidget::itemClicked, this, [this](const QTreeWidgetItem *item) {
        if (item->text(Name) == m_openJob)
            emit jobChosen(m_openJob);
    });
    connect(m_list, &QWidget::customContextMenuRequested, this, &JobListPanel::showMenu);
    setFocusProxy(m_list);
    retranslate();
    setJobs(QString(), {});
}

JobListPanel::~JobListPanel()
{
    if (m_stopCounting)
        *m_stopCounting = true;
}

void JobListPanel::buildActions()
{
    const auto add = [this](const char *name, const QKeySequence &key,
                            void (JobListPanel::*asked)(const QString &)) {
        auto *action = new QAction(m_list);
        action->setObjectName(name);
        action->setShortcut(key);
        action->setShortcutContext(Qt::WidgetShortcut); // elsewhere the keys have other meanings
        connect(action, &QAction::triggered, this, [this, asked] {
            if (!nameInFrame().isEmpty())
                emit(this->*asked)(nameInFrame());
        });
        m_list->addAction(action);
        m_actions << action;
    };
    add("OpenJob", QKeySequence(), &JobListPanel::jobChosen);
    add("RenameJob", Qt::Key_F2, &JobListPanel::renameAsked);
    add("ShowJobFolder", QKeySequence(), &JobListPanel::folderAsked);
    add("RemoveJob", QKeySequence::Delete, &JobListPanel::removeAsked);
}

void JobListPanel::retranslate()
{
    m_filter->setPlaceholderText(tr("Filter jobs"));
    m_list->setHeaderLabels({tr("Job"), tr("Date"), tr("Size"), tr("Written by")});
    const QString texts[] = {tr("&Open job"), tr("Re&name job ..."), tr("Show in the file &manager"),
                             tr("&Remove job ...")};
    const QString tips[] = {tr("Open the job in the frame (Return or double click)"),
                            tr("Give the job's folder another name"),
                            tr("Open the job's folder in the system's file manager"),
                            tr("Move the job's folder to the wastebasket")};
    for (int i = 0; i < m_actions.size(); ++i) {
        m_actions[i]->setText(texts[i]);
        m_actions[i]->setStatusTip(tips[i]);
    }
    m_root->setText(m_rootFolder.isEmpty() ? QString()
                                           : tr("in %1").arg(QDir::toNativeSeparators(m_rootFolder)));
    for (int row = 0; row < m_list->topLevelItemCount(); ++row)
        describe(m_list->topLevelItem(row));
    applyFilter();
}

void JobListPanel::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

void JobListPanel::setJobs(const QString &root, const QVector<JobEntry> &jobs)
{
    const QString inFrame = nameInFrame();
    m_list->clear();
    m_jobs = jobs;
    m_rootFolder = root;
    const QIcon icon = style()->standardIcon(QStyle::SP_DirIcon);
    for (int i = 0; i < jobs.size(); ++i) {
        auto *item = new JobItem(m_list);
        item->setIcon(Name, icon);
        item->setText(Name, jobs[i].name);
        item->setData(Name, Folder, jobs[i].folder);
        item->setData(Name, Job, i);
        item->setData(Size, SortKey, -1);
        item->setTextAlignment(Size, Qt::AlignRight | Qt::AlignVCenter);
        if (jobs[i].name == inFrame)
            m_list->setCurrentItem(item, Name, QItemSelectionModel::NoUpdate);
    }
    countSizes(jobs);
    retranslate();
    setCurrentJob(m_openJob);
}

void JobListPanel::describe(QTreeWidgetItem *item) const
{
    const JobEntry &job = m_jobs[item->data(Name, Job).toInt()];
    const QLocale locale;
    const QDateTime date = job.saved.isValid() ? job.saved : job.modified;
    item->setText(Date, locale.toString(date.date(), QLocale::ShortFormat));
    item->setData(Date, SortKey, date.toMSecsSinceEpoch());
    item->setText(Tool, job.tool.isEmpty() ? job.source : job.tool);
    const qint64 bytes = item->data(Size, SortKey).toLongLong();
    item->setText(Size, bytes < 0 ? QString() : locale.formattedDataSize(bytes, 1));

    QStringList lines{QDir::toNativeSeparators(job.folder)};
    if (job.saved.isValid())
        lines << tr("saved %1").arg(locale.toString(job.saved, QLocale::ShortFormat));
    lines << tr("unpacked or changed %1").arg(locale.toString(job.modified, QLocale::ShortFormat));
    if (!job.tool.isEmpty())
        lines << tr("written by %1").arg(job.tool);
    if (!job.source.isEmpty())
        lines << tr("made from %1").arg(job.source);
    for (int column = 0; column < ColumnCount; ++column)
        item->setToolTip(column, lines.join('\n'));
}

// Reading whole folders takes its time.
void JobListPanel::countSizes(const QVector<JobEntry> &jobs)
{
    if (m_stopCounting)
        *m_stopCounting = true;
    m_stopCounting = std::make_shared<std::atomic<bool>>(false);
    if (jobs.isEmpty())
        return;
    const QPointer<JobListPanel> self(this);
    const auto report = [self, stop = m_stopCounting](const QString &folder, qint64 bytes) {
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [self, stop, folder, bytes] {
                if (self && !*stop)
                    self->showSize(folder, bytes);
            },
            Qt::QueuedConnection);
    };
    QThreadPool::globalInstance()->start(new SizeTask(jobs, m_stopCounting, report));
}

void JobListPanel::showSize(const QString &folder, qint64 bytes)
{
    for (int row = 0; row < m_list->topLevelItemCount(); ++row) {
        QTreeWidgetItem *item = m_list->topLevelItem(row);
        if (item->data(Name, Folder).toString() != folder)
            continue;
        item->setData(Size, SortKey, bytes);
        item->setText(Size, QLocale().formattedDataSize(bytes, 1));
        return;
    }
}

QStringList JobListPanel::jobNames() const
{
    QStringList names;
    for (const JobEntry &job : m_jobs)
        names << job.name;
    return names;
}

void JobListPanel::setCurrentJob(const QString &name)
{
    m_openJob = name;
    m_list->clearSelection();
    for (int row = 0; row < m_list->topLevelItemCount(); ++row) {
        QTreeWidgetItem *item = m_list->topLevelItem(row);
        const bool isOpen = item->text(Name) == name;
        item->setIcon(Name, style()->standardIcon(isOpen ? QStyle::SP_DirOpenIcon : QStyle::SP_DirIcon));
        if (!isOpen)
            continue;
        m_list->setCurrentItem(item, Name, QItemSelectionModel::NoUpdate);
        item->setSelected(true);
        m_list->scrollToItem(item);
    }
}

QByteArray JobListPanel::state() const
{
    return m_list->header()->saveState();
}

void JobListPanel::restoreState(const QByteArray &state)
{
    m_list->header()->restoreState(state);
}

QString JobListPanel::nameInFrame() const
{
    const QTreeWidgetItem *item = m_list->currentItem();
    return item && !item->isHidden() ? item->text(Name) : QString();
}

void JobListPanel::showMenu(const QPoint &place)
{
    QTreeWidgetItem *item = m_list->itemAt(place);
    if (!item)
        return;
    m_list->setCurrentItem(item, Name, QItemSelectionModel::NoUpdate);
    auto *menu = new QMenu(m_list);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addActions(m_actions);
    menu->popup(m_list->viewport()->mapToGlobal(place));
}

void JobListPanel::applyFilter()
{
    const QString wanted = m_filter->text().trimmed();
    int visible = 0;
    for (int row = 0; row < m_list->topLevelItemCount(); ++row) {
        QTreeWidgetItem *item = m_list->topLevelItem(row);
        item->setHidden(!item->text(Name).contains(wanted, Qt::CaseInsensitive));
        visible += item->isHidden() ? 0 : 1;
    }
    m_empty->setText(m_jobs.isEmpty()
                         ? tr("There are no jobs yet.\n\nImport reads ODB++ job archives (.tgz).\n"
                              "They can also be dropped on this window.")
                         : tr("No job's name contains \"%1\".").arg(wanted));
    m_stack->setCurrentWidget(visible > 0 ? static_cast<QWidget *>(m_list) : m_empty);
    m_filter->setEnabled(!m_jobs.isEmpty());
}
