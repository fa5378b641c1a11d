// The plug-in manager: which modules it loads, and where messages go.
#include "plugin/interface/pluginmanager.h"
#include "pluginmanger/pluginhost.h"
#include "tests/support/logcapture.h"
#include "tests/support/temporaryworkingfolder.h"

#include <QtTest>

namespace {

QString modulePath(const QString &name)
{
    for (const QFileInfo &file : QDir(TEST_MODULES).entryInfoList(QDir::Files)) {
        if (file.completeBaseName() == name || file.completeBaseName() == "lib" + name)
            return file.absoluteFilePath();
    }
    return {};
}

PluginMetaData message(const QString &to, qint32 type = 1)
{
    PluginMetaData data;
    data.toPlugin = to;
    data.msgType = type;
    return data;
}

bool logHas(const LogCapture &log, const std::string &text)
{
    for (const LogLine &line : log.lines()) {
        if (line.message.find(text) != std::string::npos)
            return true;
    }
    return false;
}

} // namespace

class tst_PluginHost : public QObject
{
    Q_OBJECT

private:
    PluginHost &host = PluginHost::instance();

    void loadEcho()
    {
        QString error;
        QVERIFY2(host.load(modulePath("Echo"), &error), qPrintable(error));
    }

private slots:
    void cleanup()
    {
        host.destroyPlugins();
        for (const char *name : {"A", "B", "Graphic_View.dll", "ListBar_PNList", "Obituary"})
            host.removeReceiver(name);
    }

    void receiverGetsTheMessageDuringTheCall()
    {
        int payload = 5;
        PluginMetaData seen;
        host.addReceiver("A", [&seen](const PluginMetaData &data) { seen = data; });
        PluginMetaData data = message("A", 10000402);
        data.fromPlugin = "somebody";
        data.params["path"] = "x";
        data.payload = &payload;

        QTpluginsManger4CAM::instance()->recMegToPlugin(this, data);

        QCOMPARE(seen.msgType, 10000402);
        QCOMPARE(seen.fromPlugin, QString("somebody"));
        QCOMPARE(seen.params.value("path").toString(), QString("x"));
        QCOMPARE(seen.payload, static_cast<void *>(&payload));
    }

    void theManagerIsOneObject()
    {
        QVERIFY(QTpluginsManger4CAM::instance());
        QCOMPARE(QTpluginsManger4CAM::instance(), QTpluginsManger4CAM::instance());
    }

    void namesMatchWithoutCaseAndDllEnding_data()
    {
        QTest::addColumn<QString>("registered");
        QTest::addColumn<QString>("addressed");
        QTest::addColumn<bool>("arrives");
        QTest::newRow("the same") << "Graphic_View.dll"
                                  << "Graphic_View.dll" << true;
        QTest::newRow("ending only in the message") << "ListBar_PNList"
                                                    << "ListBar_PNList.dll" << true;
        QTest::newRow("ending only in the name") << "Graphic_View.dll"
                                                 << "Graphic_View" << true;
        QTest::newRow("another case") << "Graphic_View.dll"
                                      << "GRAPHIC_VIEW.DLL" << true;
        QTest::newRow("another name") << "Graphic_View.dll"
                                      << "Graphic_JobList.dll" << false;
        QTest::newRow("a longer name") << "Graphic_View.dll"
                                       << "Graphic_View.dll.dll" << false;
        QTest::newRow("no name") << "Graphic_View.dll"
                                 << "" << false;
    }
    void namesMatchWithoutCaseAndDllEnding()
    {
        QFETCH(QString, registered);
        QFETCH(QString, addressed);
        int count = 0;
        host.addReceiver(registered, [&count](const PluginMetaData &) { ++count; });
        const bool delivered = host.deliver(message(addressed));
        host.removeReceiver(registered);
        QTEST(delivered, "arrives");
        QCOMPARE(count, int(delivered));
    }

    void messageWithoutReceiverIsLostWithALogLine()
    {
        LogCapture log;
        QVERIFY(!host.deliver(message("Nobody.dll", 10000777)));
        QVERIFY(logHas(log, "the message 10000777 to \"Nobody.dll\" is lost"));
    }

    void laterReceiverOfANameReplacesTheEarlier()
    {
        QStringList calls;
        host.addReceiver("A", [&calls](const PluginMetaData &) { calls << "first"; });
        host.addReceiver("a.dll", [&calls](const PluginMetaData &) { calls << "second"; });
        host.deliver(message("A"));
        QCOMPARE(calls, QStringList{"second"});
    }

    void receiverMayRemoveItselfDuringADelivery()
    {
        int count = 0;
        host.addReceiver("A", [this, &count](const PluginMetaData &) {
            host.removeReceiver("A");
            ++count;
        });
        QVERIFY(host.deliver(message("A")));
        QVERIFY(!host.deliver(message("A")));
        QCOMPARE(count, 1);
    }

    void pluginSignalIsRoutedBeforeTheEmissionEnds()
    {
        loadEcho();
        QStringList order;
        host.addReceiver("B", [&order](const PluginMetaData &data) { order << "B from " + data.fromPlugin; });
        PluginMetaData data = message("Echo.dll");
        data.params["answerTo"] = "B";
        QVERIFY(host.deliver(data));
        order << "done";
        QCOMPARE(order, (QStringList{"B from Echo", "done"}));
    }

    void folderLoadsItsPluginsAndNamesTheRest()
    {
        TemporaryWorkingFolder folder;
        for (const char *name : {"Echo", "Stranger", "Mute"}) {
            const QString module = modulePath(name);
            QVERIFY(QFile::copy(module, folder.filePath(QFileInfo(module).fileName())));
        }
        const QString ending = QFileInfo(modulePath("Echo")).suffix();
        QVERIFY(folder.write("broken." + ending, "no module at all"));
        QVERIFY(folder.write("readme.txt", "not even an attempt"));

        LogCapture log;
        QCOMPARE(host.loadFolder(folder.path()), 1);
        QCOMPARE(host.plugins().size(), 1);
        QCOMPARE(host.plugins().first().name, QString("Echo"));
        QVERIFY(logHas(log, "broken." + ending.toStdString() + " is not loaded"));
        QVERIFY(
            logHas(log, "its interface is \"Somebody.Else\", expected \"PluginManager.FileProInterface\""));
        QVERIFY(logHas(log, "a Mute, has no signal sendMsgToManager(PluginMetaData)"));
        QVERIFY(!logHas(log, "readme.txt"));
    }

    void missingFolderLoadsNothingAndIsLogged()
    {
        LogCapture log;
        QCOMPARE(host.loadFolder("no/such/folder"), 0);
        QVERIFY(logHas(log, "there is no plug-in folder no/such/folder"));
    }

    void moduleLoadedTwiceIsOnePlugin()
    {
        loadEcho();
        loadEcho();
        QCOMPARE(host.plugins().size(), 1);
    }

    void exportedFunctionIsFoundUnderTheFirstKnownName()
    {
        loadEcho();
        const LoadedPlugin &echo = host.plugins().first();
        const auto version =
            reinterpret_cast<int (*)()>(host.resolve(echo, {"?echoVersion@@YAHXZ", "echoVersion"}));
        QVERIFY(version);
        QCOMPARE(version(), 7);
        QVERIFY(!host.resolve(echo, {"nothing", "of", "this"}));
    }

    void destroyedPluginsAreGoneAndTheirLastMessageIsRouted()
    {
        loadEcho();
        int farewells = 0;
        host.addReceiver("Obituary", [&farewells](const PluginMetaData &) { ++farewells; });
        host.destroyPlugins();
        QCOMPARE(farewells, 1);
        QVERIFY(host.plugins().isEmpty());
        QVERIFY(!host.deliver(message("Echo")));
    }

    void destroyedPluginCanBeLoadedAgain()
    {
        loadEcho();
        host.destroyPlugins();
        loadEcho();
        int answers = 0;
        host.addReceiver("B", [&answers](const PluginMetaData &) { ++answers; });
        PluginMetaData data = message("Echo");
        data.params["answerTo"] = "B";
        host.deliver(data);
        QCOMPARE(answers, 1);
    }
};

QTEST_GUILESS_MAIN(tst_PluginHost)
#include "tst_pluginhost.moc"
