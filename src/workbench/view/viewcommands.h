// The commands of the View menu, and what ties the list of layers to the view: which rows are seen, and how
// an export would change them.
#pragma once

#include "workbench/view/viewrow.h"

#include <QObject>
#include <QStringList>

#include <memory>

class GraphicView;
class LayerPanel;
struct ExportResults;
class QAction;
class QMenu;
class QPrinter;

class ViewCommands : public QObject
{
    Q_OBJECT

public:
    // Adds commands to both menus. Panel, view and menus must outlive the object.
    ViewCommands(LayerPanel &layers, GraphicView &view, QMenu &fileMenu, QMenu &viewMenu, QObject *parent);
    ~ViewCommands() override;

    // Layers are those of this job, in the step that the panel says.
    void openJob(const QString &folder);
    // There is no job any more; `reason` is shown unless a file is.
    void closeJob(const QString &reason);
    // The step is another one.
    void openStep();
    // Nanometres that exports add to features, by the settings.
    void setResize(double resize);
    // Shows what is to be seen, where something else was shown or its reading was ended.
    void showRows();
    // Looks at the open Export dialog again.
    void look();
    // Shows a place where a file differs from its layer, as the view has been told of it.
    void goToDifference(const QString &layer, int place);
    // Lists files, which are read, and then what they hold.
    void openFiles(const QStringList &paths);

signals:
    // A file has been read.
    void fileOpened(const QString &path);
    // `reason` names the file.
    void fileFailed(const QString &path, const QString &reason);
    // Files are to be compared with layers of the open step; `unknown` are those that no layer is named like.
    void comparisonAsked(const ExportResults &files, const QStringList &unknown);

private:
    void addViewMenu(QMenu &menu);
    QVector<ViewRow> rows() const;
    void chooseFiles();
    void compareFiles();
    cam::ExportOptions optionsOf(const QString &layer) const;
    void choosePicture();
    void print();

    LayerPanel &m_layers;
    GraphicView &m_view;
    QAction *m_asExported = nullptr; // layers are seen as exports change them
    QAction *m_fromBelow = nullptr;
    QAction *m_differences = nullptr;
    QString m_job;
    double m_resize = 0.0;
    std::unique_ptr<QPrinter> m_printer; // keeps the page that was chosen; none before the first printing
    QStringList m_shownChanges;          // of the rows that are seen
};
