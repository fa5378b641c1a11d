// A plug-in's Export dialog as a person sees it: its fields are found by their names and worked through
// the widgets.
#pragma once

#include <QPointer>
#include <QString>
#include <QStringList>
#include <QVector>
#include <QWidget>

class QComboBox;
class QLineEdit;
class QPushButton;
class QTableWidget;

// What an export does to a layer beside the resize, which is the settings'.
struct LayerChange
{
    double angle = 0.0; // degrees, counter-clockwise
    bool mirror = false;
    double xScale = 1.0, yScale = 1.0;
    bool negate = false;
};

class ExportDialog
{
public:
    // The visible Export dialog, or an object without one.
    static ExportDialog find();

    // Empty when the dialog is there with all its fields; otherwise what is missing.
    QString problem() const;
    QWidget *window() const { return m_window; }

    QString path() const;
    void enterPath(const QString &path);
    QString secondFolder() const;
    void enterSecondFolder(const QString &name);
    bool chooseFormat(const QString &format);

    // Opens the table's context menu; the menu runs until somebody chooses from it.
    void openTableMenu();
    int rowCount() const;
    bool isChecked(int row) const;
    QString layer(int row) const;
    // What the row's fields ask of the layer; a field that makes no sense asks for nothing.
    LayerChange change(int row) const;
    // Checks the row and chooses `change` in its fields. Returns whether they all have it then.
    bool setRow(int row, const LayerChange &change);
    // The Time cell's text, such as "12s"; empty when there is none.
    QString time(int row) const;

    // Whether OK takes a press: not while the dialog exports.
    bool canPressOk() const;
    // Presses OK and returns when the export has ended. False when the button is disabled.
    bool pressOk();
    void pressCancel();

private:
    explicit ExportDialog(QWidget *window);

    QPointer<QWidget> m_window;
    QPointer<QPushButton> m_pathButton;
    QPointer<QPushButton> m_ok;
    QPointer<QPushButton> m_cancel;
    QPointer<QLineEdit> m_path;
    QPointer<QLineEdit> m_secondFolder;
    QPointer<QComboBox> m_format;
    QPointer<QTableWidget> m_table;
};
