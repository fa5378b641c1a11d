// The order of an export run's steps, where nothing of it stays to be seen at the end.

#include "run/progress.h"
#include "tests/export/opendialog.h"
#include "tests/support/everytext.h"

#include <QDir>
#include <QProgressBar>
#include <QProgressDialog>

using recording_host::ExportCall;
using recording_host::state;

namespace {

// Tells when the run's progress dialog is shown for the first time.
class FirstShow : public QObject
{
public:
    explicit FirstShow(std::function<void(QProgressDialog *)> look) : m_look(std::move(look))
    {
        qApp->installEventFilter(this);
    }
    bool eventFilter(QObject *object, QEvent *event) override
    {
        auto *progress = qobject_cast<QProgressDialog *>(object);
        if (progress && event->type() == QEvent::Show && m_look)
            std::exchange(m_look, nullptr)(progress);
        return false;
    }

private:
    std::function<void(QProgressDialog *)> m_look;
};

} // namespace

class tst_RunOrder : public QObject
{
    Q_OBJECT

private slots:
    void init() { recording_host::reset(); }
    void folderIsThereWhenTheReportIsSent();
    void progressDialogBeginsAsProcessing();
    void everyLayerEndsAtOneHundred();
    void cancelledRunStopsBetweenLabelAndFile();
};

void tst_RunOrder::folderIsThereWhenTheReportIsSent()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    dialog.setChecked({2});
    bool isThere = false;
    connect(dialog.get(), &Export::on_send_exprot_xml_to_fileprocess, [&](const PluginMetaData &data) {
        isThere = QDir(data.params["path"].toString().replace('\\', '/')).exists();
    });
    dialog.button("OKButton")->click();
    QVERIFY(isThere);
}

void tst_RunOrder::progressDialogBeginsAsProcessing()
{
    OpenDialog dialog(OpenDialog::sixLayers()); // nothing checked: no layer's name replaces the label
    QString label;
    int value = 0;
    const FirstShow watch([&](QProgressDialog *progress) {
        label = progress->labelText();
        value = progress->value();
    });
    dialog.button("OKButton")->click();
    QCOMPARE(label, QString("Processing"));
    QCOMPARE(value, -1); // no layer has begun
}

void tst_RunOrder::everyLayerEndsAtOneHundred()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    dialog.setChecked({2, 4});
    // The host reports nothing, or the half.
    QList<int> values;
    const FirstShow watch([&values](QProgressDialog *progress) {
        connect(progress->findChild<QProgressBar *>(), &QProgressBar::valueChanged,
                [&values](int value) { values << value; });
    });
    state().onExport = [](const ExportCall &call) {
        if (call.layer == "top")
            call.progress->set_value(50.0);
        return true;
    };
    dialog.button("OKButton")->click();
    QCOMPARE(values.isEmpty() ? -1 : values.last(), 100);
    // And it was 100 already when the second layer, "top", began.
    values.removeAll(50);
    values.removeAll(0);
    QVERIFY(values.size() >= 1);
    for (int value : values)
        QCOMPARE(value, 100);
}

void tst_RunOrder::cancelledRunStopsBetweenLabelAndFile()
{
    OpenDialog dialog(OpenDialog::sixLayers());
    dialog.setChecked({2, 3, 4}); // bot, gnd, top in the order of their export
    // Cancelled as soon as the first layer is done.
    const FirstShow watch([](QProgressDialog *progress) {
        connect(progress->findChild<QProgressBar *>(), &QProgressBar::valueChanged, progress,
                [progress](int value) {
                    if (value == 100)
                        progress->cancel();
                });
    });
    // Each label is made after the layer's parameters are set and before its file is named.
    EveryText language;
    QStringList labels;
    const auto statics = [] {
        return QString::fromStdString(Progress::m_layer_name) + ", " +
               QString::fromStdString(Progress::m_file_name).section('\\', -1);
    };
    language.onText = [&](const QString &text) {
        if (text == "layer :")
            labels << statics();
    };
    Progress::m_file_name = "\\none";
    dialog.button("OKButton")->click();
    QCOMPARE(labels, QStringList({"bot, none", "gnd, bot.gds"}));
    QCOMPARE(statics(), QString("gnd, bot.gds"));
    QCOMPARE(state().exports.size(), size_t(1));
}

QTEST_MAIN(tst_RunOrder)
#include "tst_runorder.moc"
