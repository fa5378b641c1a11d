// The built plug-in module as a host meets it: its metadata, its object, its exported names.
#include "plugin/interface/fileprointerface.h"
#include "pluginmanger/pluginhost.h"
#include "run/orvexapi.h"

#include <QAction>
#include <QJsonObject>
#include <QMetaMethod>
#include <QPluginLoader>
#include <QtTest>

#include <memory>

namespace {

QString modulePath()
{
    const QDir plugins(QCoreApplication::applicationDirPath() + "/plugins");
    for (const QFileInfo &file : plugins.entryInfoList({"*File_Process*"}, QDir::Files)) {
        if (QLibrary::isLibrary(file.fileName()))
            return file.absoluteFilePath();
    }
    return {};
}

} // namespace

class tst_Module : public QObject
{
    Q_OBJECT

private:
    QPluginLoader loader;
    QObject *object = nullptr;

private slots:
    void initTestCase()
    {
        loader.setFileName(modulePath());
        QVERIFY2(QFileInfo::exists(loader.fileName()),
                 "the module is not beside the test, in the folder plugins");
    }

    void metadataIsReadWithoutLoadingTheModule()
    {
        const QJsonObject data = loader.metaData();
        QCOMPARE(data.value("IID").toString(), QString("PluginManager.FileProInterface"));
        QCOMPARE(data.value("className").toString(), QString("FileProcess"));
        QCOMPARE(data.value("debug").toBool(true), false);
        // From 5.13 on, Qt leaves an empty object out of the block.
        QCOMPARE(data.value("MetaData").toObject(), QJsonObject());
        QVERIFY(data.value("MetaData").isObject() || data.value("MetaData").isUndefined());
        // Qt's version as one number: major, minor, patch. From 5.13 on, Qt leaves the patch at 0.
        const int patch = data.value("version").toInt() & 0xff;
        QCOMPARE(data.value("version").toInt() >> 8, QT_VERSION >> 8);
        QVERIFY(patch == 0 || patch == (QT_VERSION & 0xff));
        QVERIFY(!loader.isLoaded());
    }

    void fileHoldsTheVersion()
    {
        QFile file(modulePath());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(file.readAll().contains(QByteArray("2.28.054").append('\0')));
    }

    void moduleGivesOneObject()
    {
        object = loader.instance();
        QVERIFY2(object, qPrintable(loader.errorString()));
        QCOMPARE(loader.instance(), object);
        QCOMPARE(object->metaObject()->className(), "FileProcess");
    }

    void objectAnswersForItsInterface()
    {
        QVERIFY(object);
        auto *interface = qobject_cast<FileProInterface *>(object);
        QVERIFY(interface);
        QCOMPARE(object->qt_metacast("FileProcess"), static_cast<void *>(object));
        QCOMPARE(object->qt_metacast("FileProInterface"), static_cast<void *>(interface));
        QCOMPARE(object->qt_metacast("PluginManager.FileProInterface"), static_cast<void *>(interface));
        QCOMPARE(object->qt_metacast("QObject"), static_cast<void *>(object));
        QVERIFY(!object->qt_metacast("PluginInterface"));
        QVERIFY(static_cast<void *>(interface) != static_cast<void *>(object)); // QObject is the first base
    }

    void methodsHaveTheirPlaces_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<int>("kind");
        QTest::addColumn<QByteArray>("signature");
        QTest::addColumn<QList<QByteArray>>("parameters");
        const QList<QByteArray> none;
        const QList<QByteArray> data{"data"};
        const int signal = QMetaMethod::Signal;
        const int slot = QMetaMethod::Slot;
        QTest::newRow("0") << 0 << signal << QByteArray("sendMsgToManager(PluginMetaData)") << data;
        QTest::newRow("1") << 1 << signal << QByteArray("ImportSignal()") << none;
        QTest::newRow("2") << 2 << signal << QByteArray("ExportSignal()") << none;
        QTest::newRow("3") << 3 << slot << QByteArray("on_ExportACT_clicked()") << none;
        QTest::newRow("4") << 4 << slot << QByteArray("on_ImportACT_clicked()") << none;
        QTest::newRow("5") << 5 << slot << QByteArray("on_send_exprot_xml(PluginMetaData&)") << data;
    }
    void methodsHaveTheirPlaces()
    {
        QVERIFY(object);
        QFETCH(int, index);
        QFETCH(int, kind);
        const QMetaObject *meta = object->metaObject();
        const QMetaMethod method = meta->method(meta->methodOffset() + index);
        QTEST(method.methodSignature(), "signature");
        QCOMPARE(int(method.methodType()), kind);
        QTEST(method.parameterNames(), "parameters");
    }

    void thereAreNoOtherMethods()
    {
        QVERIFY(object);
        QCOMPARE(object->metaObject()->methodCount() - object->metaObject()->methodOffset(), 6);
    }

    void recordIsRegisteredUnderBothNames()
    {
        QVERIFY(object);
        QVERIFY(QMetaType::type("PluginMetaData") != QMetaType::UnknownType);
        QCOMPARE(QMetaType::type("PluginMetaData&"), QMetaType::type("PluginMetaData"));
    }

    void moduleExportsItsNames_data()
    {
        QTest::addColumn<QStringList>("names"); // as the compilers name it: GCC and Clang, MSVC
        const auto row = [](const char *title, const QStringList &names) { QTest::newRow(title) << names; };
        row("instance", {"qt_plugin_instance"});
        row("metadata", {"qt_plugin_query_metadata"});
        row("setParentWidget", {"_ZN11FileProcess15setParentWidgetEP7QWidget",
                                "?setParentWidget@FileProcess@@QEAAXPEAVQWidget@@@Z"});
        row("Progress()", {"_ZN8ProgressC1Ev", "??0Progress@@QEAA@XZ"});
        row("~Progress()", {"_ZN8ProgressD1Ev", "??1Progress@@QEAA@XZ", "??1Progress@@UEAA@XZ"});
        row("do_process", {"_ZN8Progress10do_processEv", "?do_process@Progress@@QEAAXXZ"});
        row("get_value", {"_ZN8Progress9get_valueEv", "?get_value@Progress@@QEAANXZ"});
        row("isFinish", {"_ZN8Progress8isFinishEv", "?isFinish@Progress@@QEAA_NXZ"});
        const QString text = "@Progress@@2V?$basic_string@DU?$char_traits@D@std@@V?$allocator@D@2@@std@@A";
        row("m_job_name", {"_ZN8Progress10m_job_nameB5cxx11E", "?m_job_name" + text});
        row("m_step", {"_ZN8Progress6m_stepB5cxx11E", "?m_step" + text});
        row("m_layer_name", {"_ZN8Progress12m_layer_nameB5cxx11E", "?m_layer_name" + text});
        row("m_file_name", {"_ZN8Progress11m_file_nameB5cxx11E", "?m_file_name" + text});
        row("m_Suffix", {"_ZN8Progress8m_SuffixE", "?m_Suffix@Progress@@2W4export_type@API@ORVEX@@A"});
        for (const QString name : {"dbuValue", "resize", "XScale", "YScale", "angle"})
            row(qPrintable(name),
                {QString("_ZN8Progress%1%2E").arg(name.size()).arg(name), "?" + name + "@Progress@@2NA"});
        for (const QString name : {"isProfiletop", "isReserse", "isMirror", "isRotate", "isScale"})
            row(qPrintable(name),
                {QString("_ZN8Progress%1%2E").arg(name.size()).arg(name), "?" + name + "@Progress@@2_NA"});
    }
    void moduleExportsItsNames()
    {
        QFETCH(QStringList, names);
        bool found = false;
        for (const QString &name : names)
            found = found || QLibrary::resolve(modulePath(), name.toLatin1().constData());
        QVERIFY2(found, qPrintable("none of " + names.join(", ")));
    }

    void actionsAreReadyForAToolbar()
    {
        QVERIFY(object);
        auto *plugin = qobject_cast<FileProInterface *>(object);
        const std::unique_ptr<QAction> importAction(plugin->InitImportTool(nullptr));
        const std::unique_ptr<QAction> exportAction(plugin->InitExportTool());
        QCOMPARE(importAction->text(), QString("import"));
        QCOMPARE(exportAction->text(), QString("export"));
        for (const QAction *action : {importAction.get(), exportAction.get()}) {
            QVERIFY(!action->parent());
            const QImage picture = action->icon().pixmap(32).toImage();
            QCOMPARE(picture.size(), QSize(32, 32));
            int opaque = 0;
            for (int y = 0; y < picture.height(); ++y) {
                for (int x = 0; x < picture.width(); ++x)
                    opaque += qAlpha(picture.pixel(x, y)) > 128 ? 1 : 0;
            }
            QVERIFY2(opaque > 60, qPrintable(action->text() + " has an empty icon"));
        }
    }

    void exportClickReachesTheManagerFourTimesInOrder()
    {
        QVERIFY(object);
        PluginHost &host = PluginHost::instance();
        QVERIFY(host.load(modulePath())); // the same object, now connected to the manager
        QCOMPARE(host.plugins().first().object, object);
        QStringList requests;
        for (const char *name : {"Graphic_View", "Graphic_JobList"})
            host.addReceiver(name, [&requests](const PluginMetaData &data) {
                requests << QString("%1 %2").arg(data.toPlugin).arg(data.msgType);
            });
        const std::unique_ptr<QAction> action(host.plugins().first().plugin->InitExportTool());
        action->trigger();
        host.removeReceiver("Graphic_View");
        host.removeReceiver("Graphic_JobList");
        QCOMPARE(requests, (QStringList{"Graphic_View.dll 10000402", "Graphic_View.dll 10000402",
                                        "Graphic_JobList.dll 10000402", "Graphic_View.dll 10000402"}));
    }

    void unloadingWithAnOpenExportDialogLeavesNothingBehind()
    {
        QVERIFY(object);
        PluginMetaData context; // a null context opens a dialog without layers
        context.toPlugin = "File_Process.dll";
        context.msgType = 10000503;
        QVERIFY(PluginHost::instance().deliver(context));
        int open = 0;
        for (QWidget *window : QApplication::topLevelWidgets()) {
            if (window->inherits("Export") && window->isVisible()) {
                ++open;
                window->close();
            }
        }
        QCOMPARE(open, 1);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        PluginHost::instance().destroyPlugins();
        object = nullptr;
        QVERIFY(!PluginHost::instance().deliver(context));
    }
};

QTEST_MAIN(tst_Module)
#include "tst_module.moc"
