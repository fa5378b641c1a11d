// Shows the host's settings for editing.
#pragma once

#include "workbench/hostsettings.h"

#include <QDialog>
#include <QVector>

class QCheckBox;
class QComboBox;
class QDialogButtonBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class NumberBox;

class SettingsDialog : public QDialog
{
    Q_OBJECT

public:
    explicit SettingsDialog(const HostSettings &values, QWidget *parent = nullptr);

    // As edited.
    HostSettings values() const;

private:
    void explainResize();
    void checkFolders();
    QLineEdit *addPath(QFormLayout *form, const QString &label, const QString &name, const QString &path,
                       const QString &whenEmpty, bool isFolder);

    QLineEdit *m_jobFolder;
    QLineEdit *m_outputFolder;
    QLineEdit *m_secondFolder;
    NumberBox *m_resize;
    QComboBox *m_resizeUnit;
    QLabel *m_resizeMeaning;
    NumberBox *m_databaseUnit;
    QCheckBox *m_withProfile;
    QLineEdit *m_exportDatabase;
    QVector<QLabel *> m_checks; // what stands against the paths, in their order
    QDialogButtonBox *m_buttons;
};
