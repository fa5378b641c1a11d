#include "workbench/messagebar.h"

#include <QDesktopServices>
#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>
#include <QUrl>

MessageBar::MessageBar(QWidget *parent)
    : QFrame(parent), m_text(new QLabel), m_details(new QToolButton), m_open(new QToolButton)
{
    setObjectName("MessageBar");
    m_text->setObjectName("MessageText");
    m_text->setWordWrap(true);
    m_text->setTextFormat(Qt::PlainText);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_details->setText(tr("Details"));
    m_open->setText(tr("Open folder"));
    auto *dismissButton = new QToolButton;
    dismissButton->setObjectName("Dismiss");
    dismissButton->setText(tr("Dismiss"));
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 4, 4, 4);
    layout->addWidget(m_text, 1);
    for (QToolButton *button : {m_details, m_open, dismissButton})
        layout->addWidget(button);
    connect(m_details, &QToolButton::clicked, this, &MessageBar::detailsAsked);
    connect(m_open, &QToolButton::clicked, this,
            [this] { QDesktopServices::openUrl(QUrl::fromLocalFile(m_folder)); });
    connect(dismissButton, &QToolButton::clicked, this, &MessageBar::dismiss);
    hide();
}

void MessageBar::show(Kind kind, const QString &text, const QString &folder, bool withDetails)
{
    m_kind = kind == Kind::Failure || !m_failure.isEmpty() ? Kind::Failure : kind;
    m_text->setText(m_failure.isEmpty() ? text : m_failure + "\n" + text);
    if (kind == Kind::Failure)
        m_failure = m_text->text();
    m_folder = folder;
    m_open->setVisible(!folder.isEmpty());
    m_details->setVisible(withDetails);
    const QString color = m_kind == Kind::Failure   ? "#a81e1e"
                          : m_kind == Kind::Warning ? "#8a5a00"
                                                    : "#2c6e49";
    setStyleSheet(QString("#MessageBar { background: %1; } #MessageText { color: white; }").arg(color));
    setVisible(true);
}

QString MessageBar::text() const
{
    return isVisibleTo(parentWidget()) ? m_text->text() : QString();
}

void MessageBar::dismiss()
{
    m_failure.clear();
    hide();
}
