#include "workbench/languagemenu.h"

#include "workbench/languages.h"
#include "workbench/windowmemory.h"

#include <QActionGroup>
#include <QEvent>

LanguageMenu::LanguageMenu(Languages &languages, WindowMemory &memory, QWidget *parent)
    : QMenu(parent), m_languages(languages), m_memory(memory), m_system(addAction(QString())),
      m_group(new QActionGroup(this))
{
    setObjectName("LanguageMenu");
    m_system->setData(QString());
    addSeparator();
    for (const Languages::Language &language : Languages::all())
        addAction(language.title)
            ->setData(language.name); // whoever is lost in another language finds their own
    for (QAction *action : actions()) {
        if (action->isSeparator())
            continue;
        action->setCheckable(true);
        action->setChecked(action->data().toString() == memory.language());
        m_group->addAction(action);
    }
    connect(m_group, &QActionGroup::triggered, this, [this](const QAction *action) {
        m_memory.setLanguage(action->data().toString());
        m_languages.choose(action->data().toString());
    });
    retranslate();
}

void LanguageMenu::retranslate()
{
    // Both words: the menu must be found by whoever cannot read the program's language.
    const QString word = tr("&Language");
    setTitle(QString(word).remove('&') == "Language" ? word : word + " (Language)");
    m_system->setText(tr("As the system"));
}

void LanguageMenu::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QMenu::changeEvent(event);
}
