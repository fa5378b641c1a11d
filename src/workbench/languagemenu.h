// The menu in which the user chooses the program's language.
#pragma once

#include <QMenu>

class Languages;
class QActionGroup;
class WindowMemory;

class LanguageMenu : public QMenu
{
    Q_OBJECT

public:
    // The choice holds at once and is kept in `memory`; both outlive this menu.
    LanguageMenu(Languages &languages, WindowMemory &memory, QWidget *parent = nullptr);

protected:
    void changeEvent(QEvent *event) override;

private:
    void retranslate();

    Languages &m_languages;
    WindowMemory &m_memory;
    QAction *m_system;
    QActionGroup *m_group;
};
