// The steps and layers of the open job, and files that belong to no job: which of them are seen, in which
// color and how dense.
#pragma once

#include "run/orvexapi.h"
#include "workbench/view/viewrow.h"

#include <QStringList>
#include <QWidget>

#include <functional>
#include <vector>

class LayerTable;
class QComboBox;
class QLabel;
class QSlider;
class QStackedWidget;

class LayerPanel : public QWidget
{
    Q_OBJECT

public:
    // Sets of layers that belong together.
    enum class Preset { AllCopper, TopSide, BottomSide, DrillOverCopper };

    explicit LayerPanel(QWidget *parent = nullptr);

    // Shows the matrix of `job`, or why there is nothing to show. Files stay listed.
    void showMatrix(const QString &job, const QStringList &steps,
                    const std::vector<ORVEX::API::layer_info> &layers);
    void showNothing(const QString &reason);
    // Adds a row for a file of which it is not known what it holds.
    void addUnreadFile(const QString &path);
    // Adds the rows of a file, all of them seen; a file that is listed already is replaced.
    void addFile(const QString &path, const QStringList &parts);
    void removeFile(const QString &path);
    QStringList files() const;

    QString currentStep() const;
    // Chooses the step of that name, compared without regard to case. Returns whether the job has it.
    bool setCurrentStep(const QString &step);
    int layerCount() const; // of the job
    QStringList layerNames() const;
    // Chooses no layer, without announcing it.
    void chooseNone();
    // Chooses the first copper layer, or the first of all.
    void chooseFirstCopper();
    // Chooses the layer of that name, without regard to case, if there is one.
    bool chooseLayer(const QString &name);
    // The chosen layer of the job, or null.
    const ORVEX::API::layer_info *currentLayer() const;

    // What is seen, the lowest row first: in the order of the matrix, what is drilled above all other layers,
    // files above these; upside down when `fromBelow`.
    QVector<ViewRow> shownRows(bool fromBelow) const;
    bool isShown(const QString &name) const;
    void setShown(const QString &name, bool shown);
    void showPreset(Preset preset);
    // Only that row; when it is the only one already, those that were seen before.
    void solo(int row);

signals:
    void stepChosen(const QString &step);
    void layerChosen();
    // Other rows are seen, or in other colors.
    void shownChanged();
    void fileRemoved(const QString &path);

protected:
    void changeEvent(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Row
    {
        ORVEX::API::layer_info layer; // of the job
        QString file;                 // of a file's part
        int part = 0;
        QString name;
        QColor color;
        int opacity = 80; // percent
        bool shown = false;
    };

    void addRows(const QString &path, int firstPart, const QStringList &names);
    void addTableRow(const Row &row);
    void fillTable();
    void updateRow(int row);
    void toggle(int row);
    void setOnly(const std::function<bool(const Row &)> &wanted);
    void peekAtCurrent();
    void chooseColor(int row);
    void openMenu(const QPoint &place);
    int currentRow() const;
    void updateSlider();

    QWidget *m_head;
    QLabel *m_job;
    QComboBox *m_steps;
    LayerTable *m_table;
    QLabel *m_empty;
    QStackedWidget *m_stack;
    QWidget *m_foot;
    QSlider *m_opacity;
    std::vector<Row> m_rows; // the job's layers, then files
    std::vector<bool> m_beforeSolo;
    int m_peeked = -1; // the row that is seen only because it is chosen
};
