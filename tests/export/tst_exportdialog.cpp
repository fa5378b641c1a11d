// The Export dialog's window and fields: construction, defaults, validators, path handling, and closing.

#include "tests/export/opendialog.h"
#include "tests/export/wheel.h"
#include "tests/support/modalresponder.h"

#include <QBoxLayout>
#include <QDir>
#include <QFileDialog>
#include <QFrame>
#include <QLabel>
#include <QListView>
#include <QMetaMethod>

namespace {

ExportConfig configWith(const QString &outputPath, const QString &secondDir = QString(),
                        const QString &format = QString())
{
    ExportConfig config;
    config.outputPath = outputPath;
    config.outputPathSecond = secondDir;
    config.outputFormat = format;
    return config;
}

// Replaces what is in `edit` by typing `keys` one by one.
void type(QLineEdit *edit, const QString &keys)
{
    edit->clear();
    QTest::keyClicks(edit, keys);
}

} // namespace

class tst_ExportDialog : public QObject
{
    Q_OBJECT

private slots:
    // The platform's own file dialog has no widgets that a test could fill in.
    void initTestCase() { QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }
    void init() { recording_host::reset(); }
    void windowIsATopLevelDialogOfItsSize();
    void titleIsTheWordExport();
    void methodsAreTheSignalAndTheSlotsInOrder();
    void textsAreTheOnesShown();
    void fieldsKeepTheirLargestSizes_data();
    void fieldsKeepTheirLargestSizes();
    void rowsShareTheirWidth();
    void separatorsAreSunkenLines();
    void textsFitIntoTheirFields_data();
    void textsFitIntoTheirFields();
    void formatBoxShowsItsTextWhole();
    void formatBoxOffersTheTwoFormats();
    void settingsChooseTheFormat_data();
    void settingsChooseTheFormat();
    void secondDirIsReplacedByTheSettings();
    void secondDirStaysWithoutSettings();
    void secondDirAdmitsTyping_data();
    void secondDirAdmitsTyping();
    void referenceStartsAtZero();
    void referenceAdmitsTyping_data();
    void referenceAdmitsTyping();
    void referenceValidatorRejectsWholeTexts_data();
    void referenceValidatorRejectsWholeTexts();
    void folderOfTheJobIsShownWithBackslashes();
    void configuredFolderIsShownAbsoluteWithBackslashes();
    void relativeConfiguredFolderBecomesAbsolute();
    void emptyConfiguredFolderShowsTheJobsFolder();
    void missingJobLeavesTheTextsEmpty();
    void listsAreExchangedWithTheJob();
    void profileListsAreExchanged();
    void matrixIsAskedForTheJob();
    void wrongPathWarnsOnceAndDisablesOk();
    void wrongPathLeftByClickingElsewhereWarnsOnce();
    void aFileIsNoFolder();
    void rightPathEnablesOk();
    void chosenFolderIsShownAndEnablesOk();
    void folderDialogIsSetUpForFolders();
    void cancelledFolderDialogChangesNothing();
    void cancelClosesAndDeletesTheDialog();
    void cancelIsQueued();
    void closingWithAWrongPathOpensNoBox();
    void closingWhileTheWarningIsOpenIsSafe();
    void closingWhileAFolderIsChosenIsSafe();
    void wheelOverTheFormatBoxChangesNothing();
};

void tst_ExportDialog::windowIsATopLevelDialogOfItsSize()
{
    OpenDialog dialog;
    QVERIFY(dialog->isWindow());
    QVERIFY(!dialog->parent());
    QCOMPARE(dialog->size(), QSize(800, 600));
    QCOMPARE(dialog->windowModality(), Qt::ApplicationModal);
    QVERIFY(dialog->testAttribute(Qt::WA_DeleteOnClose));
    QVERIFY(dialog.button("OKButton")->isEnabled());
    QVERIFY(dialog.button("CancelButton")->isEnabled());
}

void tst_ExportDialog::titleIsTheWordExport()
{
    OpenDialog dialog;
    QCOMPARE(dialog->windowTitle(), QString("Export"));
}

void tst_ExportDialog::methodsAreTheSignalAndTheSlotsInOrder()
{
    const QMetaObject &meta = Export::staticMetaObject;
    QStringList signatures;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        signatures << QString::fromLatin1(meta.method(i).methodSignature());
    const QStringList expected{"on_send_exprot_xml_to_fileprocess(PluginMetaData)",
                               "on_CancelButton_Clicked()",
                               "on_OKButton_clicked()",
                               "on_PathButton_clicled()",
                               "on_PNListTable_customContextMenuRequest(QPoint)",
                               "on_PathLineEdit_finished()",
                               "on_SelectAll_clicked()",
                               "on_ClearAll_clicked()",
                               "on_BoardLayer_clicked()",
                               "on_SetParamater_clicked()"};
    QCOMPARE(signatures, expected);
    QCOMPARE(meta.method(meta.methodOffset()).methodType(), QMetaMethod::Signal);
    QCOMPARE(meta.method(meta.methodOffset()).parameterNames(), QList<QByteArray>{"data"});
    QCOMPARE(meta.method(meta.methodOffset() + 1).methodType(), QMetaMethod::Slot);
}

void tst_ExportDialog::textsAreTheOnesShown()
{
    OpenDialog dialog;
    QCOMPARE(dialog.button("PathButton")->text(), QString("Path"));
    QCOMPARE(dialog.button("OKButton")->text(), QString("OK"));
    QCOMPARE(dialog.button("CancelButton")->text(), QString("cancel"));
    QCOMPARE(dialog.edit("SecondDirLineEdit")->text(), QString("OX"));
    QStringList labels;
    for (const QLabel *label : dialog->findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly))
        labels << label->text();
    QCOMPARE(labels, QStringList({"Second Dir:", "Format:", "Reference", "X", "um", "Y", "um"}));
}

void tst_ExportDialog::fieldsKeepTheirLargestSizes_data()
{
    const int any = QWIDGETSIZE_MAX;
    QTest::addColumn<QSize>("largest");
    QTest::newRow("PathButton") << QSize(70, 20);
    QTest::newRow("PathLineEdit") << QSize(any, 20);
    QTest::newRow("SecondDirLabel") << QSize(70, 20);
    QTest::newRow("SecondDirLineEdit") << QSize(any, 20);
    QTest::newRow("FormatLabel") << QSize(70, 20);
    QTest::newRow("FormatComboBox") << QSize(any, 20);
    QTest::newRow("ReferenceLabel") << QSize(70, any);
    QTest::newRow("XLabel") << QSize(70, 20);
    QTest::newRow("ReferenceXLineEdit") << QSize(150, any);
    QTest::newRow("YLabel") << QSize(70, 20);
    QTest::newRow("ReferenceYLineEdit") << QSize(150, any);
}

void tst_ExportDialog::fieldsKeepTheirLargestSizes()
{
    QFETCH(QSize, largest);
    OpenDialog dialog;
    const auto *field = dialog.child<QWidget>(QTest::currentDataTag());
    QCOMPARE(field->maximumSize(), largest);
    QVERIFY(field->width() <= largest.width());
    QVERIFY(field->height() <= largest.height());
}

void tst_ExportDialog::rowsShareTheirWidth()
{
    OpenDialog dialog;
    const auto *all = qobject_cast<QVBoxLayout *>(dialog->layout());
    QVERIFY(all);
    QCOMPARE(all->count(), 3);
    QCOMPARE(all->itemAt(1)->widget(), static_cast<QWidget *>(dialog.table()));
    const auto *top = qobject_cast<QVBoxLayout *>(all->itemAt(0)->layout());
    QVERIFY(top);
    QCOMPARE(top->count(), 5);
    const auto *names = qobject_cast<QHBoxLayout *>(top->itemAt(2)->layout());
    QVERIFY(names);
    QCOMPARE(names->stretch(0), 2);
    QCOMPARE(names->stretch(1), 1);
    for (const QLayout *row : {top->itemAt(4)->layout(), all->itemAt(2)->layout()}) {
        QSpacerItem *spacer = nullptr;
        for (int i = 0; i < row->count(); ++i) {
            if (row->itemAt(i)->spacerItem())
                spacer = row->itemAt(i)->spacerItem();
        }
        QVERIFY(spacer);
        QCOMPARE(spacer->sizeHint(), QSize(200, 20));
        QCOMPARE(spacer->expandingDirections(), Qt::Orientations(Qt::Horizontal));
    }
}

void tst_ExportDialog::separatorsAreSunkenLines()
{
    OpenDialog dialog;
    int vertical = 0;
    int horizontal = 0;
    for (const QFrame *frame : dialog->findChildren<QFrame *>(QString(), Qt::FindDirectChildrenOnly)) {
        if (frame->frameShape() != QFrame::VLine && frame->frameShape() != QFrame::HLine)
            continue;
        QCOMPARE(frame->frameShadow(), QFrame::Sunken);
        ++(frame->frameShape() == QFrame::VLine ? vertical : horizontal);
    }
    QCOMPARE(vertical, 7);
    QCOMPARE(horizontal, 2);
}

void tst_ExportDialog::textsFitIntoTheirFields_data()
{
    QTest::addColumn<int>("points");
    QTest::newRow("small font") << 8;
    QTest::newRow("usual font") << 9;
    QTest::newRow("large font") << 14;
}

void tst_ExportDialog::textsFitIntoTheirFields()
{
    QFETCH(int, points);
    const QFont before = QApplication::font();
    QFont font = before;
    font.setPointSize(points);
    QApplication::setFont(font);
    {
        OpenDialog dialog;
        for (const QLabel *label : dialog->findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly)) {
            const QSize text = label->fontMetrics().size(Qt::TextSingleLine, label->text());
            QVERIFY2(text.width() <= label->width(), qPrintable(label->text()));
            QVERIFY2(text.height() <= label->height(), qPrintable(label->text()));
        }
        for (const char *name : {"PathLineEdit", "SecondDirLineEdit"})
            QVERIFY(dialog.edit(name)->fontMetrics().height() <= dialog.edit(name)->height() - 4);
        const QPushButton *path = dialog.button("PathButton");
        QVERIFY(path->fontMetrics().size(Qt::TextSingleLine, path->text()).width() <= path->width() - 4);
    }
    QApplication::setFont(before);
}

void tst_ExportDialog::formatBoxShowsItsTextWhole()
{
    OpenDialog dialog;
    QComboBox *box = dialog.format();
    box->setCurrentIndex(1);
    // As many dark pixels in the 20 pixels' height as where there is room above and below.
    const auto ink = [box] {
        const QImage picture = box->grab(QRect(6, 0, 80, box->height())).toImage();
        int dark = 0;
        for (int y = 3; y < picture.height() - 3; ++y) {
            for (int x = 0; x < picture.width(); ++x)
                dark += qGray(picture.pixel(x, y)) < 128;
        }
        return dark;
    };
    QCOMPARE(box->height(), 20);
    const int shown = ink();
    QVERIFY(shown > 40);
    box->setMaximumHeight(40);
    box->resize(box->width(), 40);
    QCOMPARE(shown, ink());
}

void tst_ExportDialog::formatBoxOffersTheTwoFormats()
{
    OpenDialog dialog;
    const QComboBox *box = dialog.format();
    QCOMPARE(box->count(), 2);
    QCOMPARE(box->itemText(0), QString(".gds"));
    QCOMPARE(box->itemText(1), QString(".gerber"));
    QCOMPARE(box->currentIndex(), 0);
    QCOMPARE(QByteArray(box->view()->metaObject()->className()), QByteArray("QListView"));
    QCOMPARE(box->styleSheet(), QString("QComboBox{border:2px groove gray; border-radius:4px; padding:2px "
                                        "4px;}QComboBox QAbstractItemView::item{height:20px}"));
    QCOMPARE(dialog.child<QLabel>("FormatLabel")->alignment(), Qt::Alignment(Qt::AlignCenter));
}

void tst_ExportDialog::settingsChooseTheFormat_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("after");
    QTest::newRow(".gds") << ".gds" << 1 << 0;
    QTest::newRow(".GDS") << ".GDS" << 1 << 0;
    QTest::newRow("empty") << "" << 1 << 0;
    QTest::newRow(".gerber") << ".gerber" << 0 << 0;
    QTest::newRow(".gerber stays") << ".gerber" << 1 << 1;
    QTest::newRow("gds without a dot") << "gds" << 1 << 1;
}

void tst_ExportDialog::settingsChooseTheFormat()
{
    QFETCH(QString, format);
    QFETCH(int, before);
    QFETCH(int, after);
    OpenDialog dialog;
    dialog.format()->setCurrentIndex(before);
    dialog->setExportConfig(configWith("", "", format));
    QCOMPARE(dialog.format()->currentIndex(), after);
}

void tst_ExportDialog::secondDirIsReplacedByTheSettings()
{
    OpenDialog dialog({}, configWith("", "second"));
    QCOMPARE(dialog.edit("SecondDirLineEdit")->text(), QString("second"));
}

void tst_ExportDialog::secondDirStaysWithoutSettings()
{
    OpenDialog dialog({}, configWith("", ""));
    QCOMPARE(dialog.edit("SecondDirLineEdit")->text(), QString("OX"));
}

void tst_ExportDialog::secondDirAdmitsTyping_data()
{
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("admitted");
    QTest::newRow("ten characters") << "abcdefghij"
                                    << "abcdefghij";
    QTest::newRow("the eleventh") << "abcdefghijk"
                                  << "abcdefghij";
    QTest::newRow("ideograph, letter, underscore, digit")
        << QString(QChar(0x5C42)) + "a_1" << QString(QChar(0x5C42)) + "a_1";
    QTest::newRow("blank") << "a b"
                           << "ab";
    QTest::newRow("slash") << "a/b"
                           << "ab";
    QTest::newRow("backslash") << "a\\b"
                               << "ab";
    QTest::newRow("hyphen") << "a-b"
                            << "ab";
    QTest::newRow("brackets, colon, quotes") << "[a]:\"*?<>|b"
                                             << "ab";
    QTest::newRow("signs 1") << "~`!@#$%&^("
                             << "~`!@#$%&^(";
    QTest::newRow("signs 2") << ")_+={},.;'"
                             << ")_+={},.;'";
    QTest::newRow("first of the range") << QString(QChar(0x04BB)) << QString(QChar(0x04BB));
    QTest::newRow("before the range") << QString(QChar(0x04BA)) << "";
    QTest::newRow("last of the range") << QString(QChar(0xFFFD)) << QString(QChar(0xFFFD));
    QTest::newRow("after the range") << QString(QChar(0xFFFE)) << "";
    QTest::newRow("umlaut") << QString(QChar(0x00E4)) << "";
}

void tst_ExportDialog::secondDirAdmitsTyping()
{
    QFETCH(QString, keys);
    QFETCH(QString, admitted);
    OpenDialog dialog;
    QLineEdit *edit = dialog.edit("SecondDirLineEdit");
    edit->clear();
    for (const QChar key : keys)
        QTest::sendKeyEvent(QTest::Click, edit, Qt::Key_unknown, QString(key), Qt::NoModifier);
    QCOMPARE(edit->text(), admitted);
}

void tst_ExportDialog::referenceStartsAtZero()
{
    OpenDialog dialog;
    QCOMPARE(dialog.edit("ReferenceXLineEdit")->text(), QString("0"));
    QCOMPARE(dialog.edit("ReferenceYLineEdit")->text(), QString("0"));
    QVERIFY(!dialog.edit("ReferenceXLineEdit")->hasAcceptableInput());
    QVERIFY(dialog.edit("ReferenceXLineEdit")->validator());
    QCOMPARE(dialog.edit("ReferenceXLineEdit")->validator(), dialog.edit("ReferenceYLineEdit")->validator());
    QCOMPARE(dialog.edit("ReferenceXLineEdit")->validator()->parent(), static_cast<QObject *>(dialog.get()));
}

void tst_ExportDialog::referenceAdmitsTyping_data()
{
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("admitted");
    QTest::addColumn<bool>("complete");
    QTest::newRow("12.5") << "12.5"
                          << "12.5" << true;
    QTest::newRow("six decimals") << "0.000001"
                                  << "0.000001" << true;
    QTest::newRow("seven decimals") << "0.0000001"
                                    << "0.000000" << true;
    QTest::newRow("ten digits") << "1234567890"
                                << "1234567890" << true;
    QTest::newRow("eleven digits") << "12345678901"
                                   << "1234567890" << true;
    QTest::newRow("leading zero") << "012"
                                  << "0" << false;
    QTest::newRow("zero") << "0"
                          << "0" << false;
    QTest::newRow("minus") << "-1"
                           << "1" << true;
    QTest::newRow("plus") << "+1"
                          << "1" << true;
    QTest::newRow("comma") << "1,5"
                           << "15" << true;
    QTest::newRow("exponent") << "1e5"
                              << "15" << true;
    QTest::newRow("open point") << "12."
                                << "12." << false;
}

void tst_ExportDialog::referenceAdmitsTyping()
{
    QFETCH(QString, keys);
    QFETCH(QString, admitted);
    QFETCH(bool, complete);
    OpenDialog dialog;
    for (const char *name : {"ReferenceXLineEdit", "ReferenceYLineEdit"}) {
        QLineEdit *edit = dialog.edit(name);
        type(edit, keys);
        QCOMPARE(edit->text(), admitted);
        QCOMPARE(edit->hasAcceptableInput(), complete);
    }
}

void tst_ExportDialog::referenceValidatorRejectsWholeTexts_data()
{
    QTest::addColumn<int>("state");
    QTest::newRow("012") << int(QValidator::Invalid);
    QTest::newRow("1.1234567") << int(QValidator::Invalid);
    QTest::newRow("-1") << int(QValidator::Invalid);
    QTest::newRow("+1") << int(QValidator::Invalid);
    QTest::newRow("") << int(QValidator::Intermediate);
    QTest::newRow("12.5") << int(QValidator::Acceptable);
}

void tst_ExportDialog::referenceValidatorRejectsWholeTexts()
{
    QFETCH(int, state);
    OpenDialog dialog;
    QString text = QTest::currentDataTag();
    int position = 0;
    QCOMPARE(int(dialog.edit("ReferenceXLineEdit")->validator()->validate(text, position)), state);
}

void tst_ExportDialog::folderOfTheJobIsShownWithBackslashes()
{
    OpenDialog dialog;
    QVERIFY(dialog.folder().contains('/'));
    QCOMPARE(dialog.edit("PathLineEdit")->text(), dialog.folder().replace('/', '\\'));
}

void tst_ExportDialog::configuredFolderIsShownAbsoluteWithBackslashes()
{
    QTemporaryDir folder;
    const QString longWay = folder.path() + "/sub/../out";
    OpenDialog dialog({}, configWith(longWay));
    QCOMPARE(dialog.edit("PathLineEdit")->text(), QDir(longWay).absolutePath().replace('/', '\\'));
    QVERIFY(!dialog.edit("PathLineEdit")->text().contains('/'));
}

void tst_ExportDialog::relativeConfiguredFolderBecomesAbsolute()
{
    OpenDialog dialog({}, configWith("out\\here"));
    QCOMPARE(dialog.edit("PathLineEdit")->text(),
             QString(QDir::currentPath() + "/out/here").replace('/', '\\'));
}

void tst_ExportDialog::emptyConfiguredFolderShowsTheJobsFolder()
{
    OpenDialog dialog({}, configWith(""));
    QCOMPARE(dialog.edit("PathLineEdit")->text(), dialog.folder().replace('/', '\\'));
}

void tst_ExportDialog::missingJobLeavesTheTextsEmpty()
{
    Export dialog(nullptr);
    dialog.setExportConfig(ExportConfig());
    dialog.setJobInfo(nullptr);
    QCOMPARE(dialog.findChild<QLineEdit *>("PathLineEdit")->text(), QString());
    QCOMPARE(recording_host::state().matrixJobs, std::vector<std::string>{""});
}

void tst_ExportDialog::listsAreExchangedWithTheJob()
{
    Export dialog(nullptr);
    ExportJobInfo first;
    first.list = {"a", "b"};
    dialog.setJobInfo(&first);
    QVERIFY(first.list.empty());
    ExportJobInfo second;
    second.list = {"c"};
    dialog.setJobInfo(&second);
    QCOMPARE(second.list, std::vector<std::string>({"a", "b"}));
}

void tst_ExportDialog::profileListsAreExchanged()
{
    Export dialog(nullptr);
    QList<std::string> first{"a"};
    dialog.setNewProfileList(first);
    QVERIFY(first.isEmpty());
    QList<std::string> second{"b"};
    dialog.setNewProfileList(second);
    QCOMPARE(second, QList<std::string>{"a"});
}

void tst_ExportDialog::matrixIsAskedForTheJob()
{
    OpenDialog dialog;
    QCOMPARE(recording_host::state().matrixJobs, std::vector<std::string>{"Job1"});
}

void tst_ExportDialog::wrongPathWarnsOnceAndDisablesOk()
{
    OpenDialog dialog;
    ModalResponder responder;
    responder.expectMessageBox(QMessageBox::Ok);
    QLineEdit *path = dialog.edit("PathLineEdit");
    path->setFocus();
    type(path, "no such folder");
    QTest::keyClick(path, Qt::Key_Return);
    QTest::qWait(50);

    QCOMPARE(responder.boxes.size(), size_t(1));
    QCOMPARE(responder.pending(), 0);
    QCOMPARE(responder.boxes[0].title, QString("Warning"));
    QCOMPARE(responder.boxes[0].text, QString("The path you selected is not exist"));
    QCOMPARE(responder.boxes[0].buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    QVERIFY(!QApplication::activeModalWidget() || QApplication::activeModalWidget() == dialog.get());
    QVERIFY(!dialog.button("OKButton")->isEnabled());
    QVERIFY(dialog.button("CancelButton")->isEnabled());
}

void tst_ExportDialog::wrongPathLeftByClickingElsewhereWarnsOnce()
{
    OpenDialog dialog;
    ModalResponder responder;
    responder.expectMessageBox(QMessageBox::Ok);
    QLineEdit *path = dialog.edit("PathLineEdit");
    path->setFocus();
    type(path, "no such folder");
    QTest::keyClick(path, Qt::Key_Tab);
    QTest::qWait(50);
    QCOMPARE(responder.boxes.size(), size_t(1));
    QCOMPARE(responder.pending(), 0);
    QVERIFY(!dialog.button("OKButton")->isEnabled());
}

void tst_ExportDialog::aFileIsNoFolder()
{
    OpenDialog dialog;
    QFile file(dialog.folder() + "/file");
    QVERIFY(file.open(QIODevice::WriteOnly));
    ModalResponder responder;
    responder.expectMessageBox(QMessageBox::Ok);
    QLineEdit *path = dialog.edit("PathLineEdit");
    path->setFocus();
    path->setText(file.fileName());
    QTest::keyClick(path, Qt::Key_Return);
    QCOMPARE(responder.boxes.size(), size_t(1));
    QVERIFY(!dialog.button("OKButton")->isEnabled());
}

void tst_ExportDialog::rightPathEnablesOk()
{
    OpenDialog dialog;
    dialog.button("OKButton")->setEnabled(false);
    QLineEdit *path = dialog.edit("PathLineEdit");
    path->setFocus();
    path->setText(dialog.folder().replace('/', '\\'));
    QTest::keyClick(path, Qt::Key_Return);
    QVERIFY(dialog.button("OKButton")->isEnabled());
}

void tst_ExportDialog::chosenFolderIsShownAndEnablesOk()
{
    OpenDialog dialog;
    dialog.button("OKButton")->setEnabled(false);
    ModalResponder responder;
    const QString folder = dialog.folder();
    responder.expect([folder](QWidget *window) {
        auto *chooser = qobject_cast<QFileDialog *>(window);
        QVERIFY(chooser);
        chooser->setDirectory(folder);
        chooser->findChild<QLineEdit *>("fileNameEdit")->setText(folder);
        QMetaObject::invokeMethod(chooser, "accept");
    });
    QTest::mouseClick(dialog.button("PathButton"), Qt::LeftButton);
    QCOMPARE(responder.pending(), 0);
    QCOMPARE(dialog.edit("PathLineEdit")->text(), folder);
    QVERIFY(dialog.button("OKButton")->isEnabled());
}

void tst_ExportDialog::folderDialogIsSetUpForFolders()
{
    OpenDialog dialog;
    ModalResponder responder;
    responder.expect([](QWidget *window) {
        auto *chooser = qobject_cast<QFileDialog *>(window);
        QVERIFY(chooser);
        QTimer::singleShot(0, chooser, &QDialog::reject); // whatever the comparisons say
        QVERIFY(!chooser->parent());
        QCOMPARE(chooser->windowTitle(), QString("Export"));
        QCOMPARE(chooser->fileMode(), QFileDialog::Directory);
        QCOMPARE(chooser->viewMode(), QFileDialog::Detail);
        QCOMPARE(chooser->nameFilters(), QStringList("all(*.*)"));
        // Windows has a root a drive, and the dialog shows the list of drives when it cannot watch that one.
        if (QDir::rootPath() == "/")
            QCOMPARE(chooser->directory(), QDir("/"));
    });
    QTest::mouseClick(dialog.button("PathButton"), Qt::LeftButton);
    QCOMPARE(responder.pending(), 0);
}

void tst_ExportDialog::cancelledFolderDialogChangesNothing()
{
    OpenDialog dialog;
    dialog.button("OKButton")->setEnabled(false);
    const QString before = dialog.edit("PathLineEdit")->text();
    ModalResponder responder;
    responder.expect([](QWidget *window) { qobject_cast<QFileDialog *>(window)->reject(); });
    QTest::mouseClick(dialog.button("PathButton"), Qt::LeftButton);
    QCOMPARE(responder.pending(), 0);
    QCOMPARE(dialog.edit("PathLineEdit")->text(), before);
    QVERIFY(!dialog.button("OKButton")->isEnabled());
}

void tst_ExportDialog::cancelClosesAndDeletesTheDialog()
{
    OpenDialog dialog;
    const QPointer<Export> alive(dialog.get());
    QTest::mouseClick(dialog.button("CancelButton"), Qt::LeftButton);
    QTRY_VERIFY(!alive);
}

void tst_ExportDialog::cancelIsQueued()
{
    OpenDialog dialog;
    dialog.button("CancelButton")->click();
    QVERIFY(dialog->isVisible());
    const QPointer<Export> alive(dialog.get());
    QTRY_VERIFY(!alive);
}

void tst_ExportDialog::closingWithAWrongPathOpensNoBox()
{
    OpenDialog dialog;
    const QPointer<Export> alive(dialog.get());
    QLineEdit *path = dialog.edit("PathLineEdit");
    path->setFocus();
    path->setText("no such folder");
    dialog->close();
    QTRY_VERIFY(!alive);
    QVERIFY(!QApplication::activeModalWidget());
}

void tst_ExportDialog::closingWhileTheWarningIsOpenIsSafe()
{
    OpenDialog dialog;
    const QPointer<Export> alive(dialog.get());
    ModalResponder responder;
    responder.expect([alive](QWidget *) { alive->close(); });
    QLineEdit *path = dialog.edit("PathLineEdit");
    path->setFocus();
    path->setText("no such folder");
    QTest::keyClick(path, Qt::Key_Return);
    QTRY_VERIFY(!alive);
    QVERIFY(!QApplication::activeModalWidget());
}

void tst_ExportDialog::closingWhileAFolderIsChosenIsSafe()
{
    OpenDialog dialog;
    const QPointer<Export> alive(dialog.get());
    ModalResponder responder;
    responder.expect([alive](QWidget *window) {
        delete alive.data();
        qobject_cast<QDialog *>(window)->accept();
    });
    dialog->on_PathButton_clicled();
    QVERIFY(!alive);
    QCOMPARE(responder.pending(), 0);
}

void tst_ExportDialog::wheelOverTheFormatBoxChangesNothing()
{
    OpenDialog dialog;
    QComboBox *box = dialog.format();
    box->setFocus();
    turnWheel(box, -1);
    turnWheel(box, 1);
    QCOMPARE(box->currentIndex(), 0);
}

QTEST_MAIN(tst_ExportDialog)
#include "tst_exportdialog.moc"
