// Shows the host's settings for editing.
#pragma once

#include "workbench/hostsettings.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QFormLayout;
class QLineEdit;

class SettingsDialog : public QDialog
{
    Q_OBJECT

public:
    explicit SettingsDialog(const HostSettings &values, QWidget *parent = nullptr);

    // As edited.
    HostSettings values() const;

private:
    QLineEdit *addPath(QFormLayout *form, const QString &label, const QString &name, const QString &path,
                       const QString &whenEmpty, bool isFolder);

    QLineEdit *m_jobFolder;
    QLineEdit *m_outputFolder;
    QLineEdit *m_secondFolder;
    QDoubleSpinBox *m_resize;
    QComboBox *m_resizeUnit;
    QDoubleSpinBox *m_databaseUnit;
    QCheckBox *m_withProfile;
    QLineEdit *m_exportDatabase;
};
