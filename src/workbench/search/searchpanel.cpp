#include "workbench/search/searchpanel.h"

#include "cam/base/error.h"
#include "drawing/scene.h"
#include "platform/thread.h"

#include <QCoreApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <glog/logging.h>

#include <algorithm>
#include <chrono>

Q_DECLARE_METATYPE(std::shared_ptr<const SearchTarget>)

namespace {

const int lookInterval = 40;      // ms
const int typingPause = 120;      // ms after the last key, before the list changes
constexpr std::size_t most = 300; // results of a kind
const int targetRole = Qt::UserRole;

} // namespace

SearchPanel::SearchPanel(QWidget *parent)
    : QWidget(parent), m_line(new QLineEdit), m_results(new QTreeWidget), m_status(new QLabel)
{
    m_line->setPlaceholderText(tr("Component, part, package, net, symbol, attribute"));
    m_line->setToolTip(tr("* and ? stand for any letters and for any letter"));
    m_line->setClearButtonEnabled(true);
    m_line->installEventFilter(this);
    m_results->setHeaderLabels({tr("Found"), tr("Where")});
    m_results->setUniformRowHeights(true);
    m_results->setAlternatingRowColors(true);
    m_results->setFrameShape(QFrame::NoFrame);
    m_results->setTextElideMode(Qt::ElideRight);
    m_results->header()->setStretchLastSection(true);
    m_status->setWordWrap(true);
    m_status->setMargin(4);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 0);
    layout->addWidget(m_line);
    layout->addWidget(m_results, 1);
    layout->addWidget(m_status);

    m_findTimer.setSingleShot(true);
    m_findTimer.setInterval(typingPause);
    connect(&m_findTimer, &QTimer::timeout, this, &SearchPanel::find);
    connect(&m_lookTimer, &QTimer::timeout, this, &SearchPanel::look);
    connect(m_line, &QLineEdit::textEdited, this, [this] { m_findTimer.start(); });
    connect(m_results, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem *item) { choose(item, 1); });
    m_results->installEventFilter(this);
    updateStatus();
}

SearchPanel::~SearchPanel()
{
    cancel();
}

void SearchPanel::setSource(const std::shared_ptr<StepSource> &source)
{
    cancel();
    m_source = source;
    m_index.reset();
    m_error.clear();
    find();
    if (isVisible())
        read();
}

void SearchPanel::start()
{
    m_line->setFocus(Qt::ShortcutFocusReason);
    m_line->selectAll();
    read();
}

void SearchPanel::setPlace(const QString &text)
{
    m_place = text;
    updateStatus();
}

// ---- reading the step

void SearchPanel::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    m_results->header()->resizeSection(0, std::max(100, m_results->width() / 2));
    read();
}

void SearchPanel::read()
{
    const bool isUnderWay = !m_tasks.empty() && !m_tasks.back().cancel;
    if (!m_source || m_index || isUnderWay)
        return;
    m_error.clear();
    m_tasks.emplace_back();
    Task *const task = &m_tasks.back();
    task->result = std::async(std::launch::async, [task, source = m_source] {
        const platform::BackgroundWork background;
        try {
            return SearchIndex::read(*source, [task](double share) {
                if (task->cancel)
                    throw drawing::Cancelled();
                task->share = share;
            });
        } catch (const std::exception &failure) {
            task->error = QString::fromStdString(failure.what());
        } catch (const drawing::Cancelled &) { // nobody asks for the result
        }
        return std::shared_ptr<const SearchIndex>();
    });
    m_lookTimer.start(lookInterval);
    updateStatus();
}

void SearchPanel::cancel()
{
    for (Task &task : m_tasks)
        task.cancel = true;
}

void SearchPanel::look()
{
    for (auto at = m_tasks.begin(); at != m_tasks.end();) {
        if (at->result.wait_for(std::chrono::seconds(0)) != std::future_status::ready) {
            ++at;
            continue;
        }
        const std::shared_ptr<const SearchIndex> index = at->result.get();
        if (!at->cancel) {
            m_index = index;
            m_error = at->error;
            if (!m_error.isEmpty())
                LOG(ERROR) << "the step cannot be searched: " << m_error.toStdString();
        }
        at = m_tasks.erase(at);
        find();
    }
    if (m_tasks.empty())
        m_lookTimer.stop();
    updateStatus();
}

// ---- results

void SearchPanel::find()
{
    m_findTimer.stop();
    m_chosen = nullptr;
    m_place.clear();
    m_results->clear();
    if (!m_index) {
        updateStatus();
        return;
    }
    const QString titles[SearchEntry::kindCount] = {tr("Components"), tr("Nets"), tr("Symbols"),
                                                    tr("Attributes")};
    const auto found = m_index->find(m_line->text(), most);
    const QLocale locale;
    for (std::size_t kind = 0; kind < found.size(); ++kind) {
        if (found[kind].count == 0)
            continue;
        const bool isMore = kind == SearchEntry::Attribute && m_index->hasMoreAttributes();
        auto *group = new QTreeWidgetItem(
            m_results, {titles[kind], locale.toString(qulonglong(found[kind].count)) + (isMore ? "+" : "")});
        group->setFlags(Qt::ItemIsEnabled);
        QFont bold = m_results->font();
        bold.setBold(true);
        group->setFont(0, bold);
        for (const SearchEntry *entry : found[kind].entries) {
            auto *item = new QTreeWidgetItem(group, {entry->name, entry->detail});
            item->setToolTip(0, entry->name);
            item->setToolTip(1, entry->detail);
            item->setData(0, targetRole, QVariant::fromValue(entry->target));
        }
        if (found[kind].count > found[kind].entries.size()) {
            auto *more = new QTreeWidgetItem(
                group,
                {tr("%1 more: type more of the name")
                     .arg(locale.toString(qulonglong(found[kind].count - found[kind].entries.size())))});
            more->setFlags(Qt::ItemIsEnabled);
            more->setFirstColumnSpanned(true);
        }
    }
    m_results->expandAll();
    if (QTreeWidgetItem *first = firstResult())
        m_results->setCurrentItem(first);
    updateStatus();
}

QTreeWidgetItem *SearchPanel::firstResult() const
{
    QTreeWidgetItem *group = m_results->topLevelItem(0);
    return group ? group->child(0) : nullptr;
}

// What is chosen again goes to its next place.
void SearchPanel::choose(QTreeWidgetItem *item, int direction)
{
    const auto target =
        item ? item->data(0, targetRole).value<std::shared_ptr<const SearchTarget>>() : nullptr;
    if (!target)
        return;
    if (item == m_chosen) {
        emit stepAsked(direction);
        return;
    }
    m_chosen = item;
    emit chosen(target);
}

void SearchPanel::updateStatus()
{
    QString text = m_place;
    if (!m_tasks.empty() && !m_tasks.back().cancel)
        text = tr("Reading the step ... %1 %").arg(int(100.0 * m_tasks.back().share));
    else if (!m_source)
        text = tr("No job is open.");
    else if (!m_error.isEmpty())
        text = m_error;
    else if (m_index && m_results->topLevelItemCount() == 0)
        text = tr("Nothing of that name is in the step.");
    else if (text.isEmpty())
        text = tr("Return shows it, Return again its next place. Esc closes.");
    m_status->setText(text);
}

// ---- keys

bool SearchPanel::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    auto *key = static_cast<QKeyEvent *>(event);
    switch (key->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (m_findTimer.isActive())
            find();
        choose(m_results->currentItem(), key->modifiers() & Qt::ShiftModifier ? -1 : 1);
        return true;
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        if (watched != m_line)
            break;
        QCoreApplication::sendEvent(m_results, event);
        return true;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

void SearchPanel::keyPressEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Escape)
        return QWidget::keyPressEvent(event);
    cancel();
    emit closed();
}

void SearchPanel::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        find();
    QWidget::changeEvent(event);
}
