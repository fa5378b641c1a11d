// What the plug-in's DLL offers to the loader: the plug-in entry points, and the classes that hosts reach by
// name.
#include <QRegularExpression>
#include <QtTest>

#include <windows.h>

#include <algorithm>

class tst_ExportedNames : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void entryPointsAreExported_data();
    void entryPointsAreExported();
    void classMembersAreExported_data();
    void classMembersAreExported();
    void theListIsComplete();
    void theModuleIsA64BitDll();
    void itNeedsOnlyLibrariesThatHostsBring();

private:
    template <typename T>
    const T *at(DWORD address) const
    {
        return reinterpret_cast<const T *>(m_image + address);
    }
    static QString member(const QString &name);
    QStringList importedLibraries() const;

    const uchar *m_image = nullptr; // the DLL as the loader maps it
    const IMAGE_NT_HEADERS64 *m_headers = nullptr;
    QStringList m_names; // exported names as the linker knows them
};

void tst_ExportedNames::initTestCase()
{
    const QString path = QCoreApplication::applicationDirPath() + "/plugins/File_Process.dll";
    const HMODULE module = LoadLibraryExW(QDir::toNativeSeparators(path).toStdWString().c_str(), nullptr,
                                          DONT_RESOLVE_DLL_REFERENCES);
    QVERIFY2(module, qPrintable(path + " cannot be loaded"));
    m_image = reinterpret_cast<const uchar *>(module);
    const auto *dos = at<IMAGE_DOS_HEADER>(0);
    QCOMPARE(dos->e_magic, WORD(IMAGE_DOS_SIGNATURE));
    m_headers = at<IMAGE_NT_HEADERS64>(DWORD(dos->e_lfanew));
    QCOMPARE(m_headers->Signature, DWORD(IMAGE_NT_SIGNATURE));

    const DWORD directory =
        m_headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT].VirtualAddress;
    QVERIFY2(directory, "the DLL exports nothing");
    const auto *table = at<IMAGE_EXPORT_DIRECTORY>(directory);
    const auto *names = at<DWORD>(table->AddressOfNames);
    for (DWORD i = 0; i < table->NumberOfNames; ++i)
        m_names << QString::fromLatin1(at<char>(names[i]));
}

void tst_ExportedNames::entryPointsAreExported_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("instance") << "qt_plugin_instance";
    QTest::newRow("metadata") << "qt_plugin_query_metadata";
}

void tst_ExportedNames::entryPointsAreExported()
{
    QFETCH(QString, name);
    QVERIFY2(m_names.contains(name), qPrintable(m_names.join('\n')));
}

// `mangled` is the name as GCC writes it, `decorated` the start of the one that Visual C++ writes.
void tst_ExportedNames::classMembersAreExported_data()
{
    QTest::addColumn<QString>("mangled");
    QTest::addColumn<QString>("decorated");
    QTest::newRow("constructor") << "_ZN8ProgressC1Ev"
                                 << "??0Progress@@QEAA@XZ";
    QTest::newRow("destructor") << "_ZN8ProgressD1Ev"
                                << "??1Progress@@QEAA@XZ";
    QTest::newRow("do_process") << "_ZN8Progress10do_processEv"
                                << "?do_process@Progress@@QEAAXXZ";
    QTest::newRow("get_value") << "_ZN8Progress9get_valueEv"
                               << "?get_value@Progress@@QEAANXZ";
    QTest::newRow("isFinish") << "_ZN8Progress8isFinishEv"
                              << "?isFinish@Progress@@QEAA_NXZ";
    QTest::newRow("m_job_name") << "_ZN8Progress10m_job_nameB5cxx11E"
                                << "?m_job_name@Progress@@2";
    QTest::newRow("m_step") << "_ZN8Progress6m_stepB5cxx11E"
                            << "?m_step@Progress@@2";
    QTest::newRow("m_layer_name") << "_ZN8Progress12m_layer_nameB5cxx11E"
                                  << "?m_layer_name@Progress@@2";
    QTest::newRow("m_file_name") << "_ZN8Progress11m_file_nameB5cxx11E"
                                 << "?m_file_name@Progress@@2";
    QTest::newRow("m_Suffix") << "_ZN8Progress8m_SuffixE"
                              << "?m_Suffix@Progress@@2";
    QTest::newRow("dbuValue") << "_ZN8Progress8dbuValueE"
                              << "?dbuValue@Progress@@2NA";
    QTest::newRow("resize") << "_ZN8Progress6resizeE"
                            << "?resize@Progress@@2NA";
    QTest::newRow("XScale") << "_ZN8Progress6XScaleE"
                            << "?XScale@Progress@@2NA";
    QTest::newRow("YScale") << "_ZN8Progress6YScaleE"
                            << "?YScale@Progress@@2NA";
    QTest::newRow("angle") << "_ZN8Progress5angleE"
                           << "?angle@Progress@@2NA";
    QTest::newRow("isProfiletop") << "_ZN8Progress12isProfiletopE"
                                  << "?isProfiletop@Progress@@2_NA";
    QTest::newRow("isReserse") << "_ZN8Progress9isReserseE"
                               << "?isReserse@Progress@@2_NA";
    QTest::newRow("isMirror") << "_ZN8Progress8isMirrorE"
                              << "?isMirror@Progress@@2_NA";
    QTest::newRow("isRotate") << "_ZN8Progress8isRotateE"
                              << "?isRotate@Progress@@2_NA";
    QTest::newRow("isScale") << "_ZN8Progress7isScaleE"
                             << "?isScale@Progress@@2_NA";
    QTest::newRow("setParentWidget") << "_ZN11FileProcess15setParentWidgetEP7QWidget"
                                     << "?setParentWidget@FileProcess@@QEAAXPEAVQWidget@@@Z";
}

void tst_ExportedNames::classMembersAreExported()
{
    QFETCH(QString, mangled);
    QFETCH(QString, decorated);
    const bool there = std::any_of(m_names.begin(), m_names.end(), [&](const QString &name) {
        return name == mangled || name.startsWith(decorated);
    });
    QVERIFY2(there, qPrintable(mangled + " is missing among\n" + m_names.join('\n')));
}

// The member that `name` is of, "Class::member", whatever compiler wrote it; other names come back unchanged.
QString tst_ExportedNames::member(const QString &name)
{
    const QString typeInformation = "%1::(type information)";
    // GCC: "_ZN", the parts with their lengths, what is left are parameters; "_ZThn16_N" enters from another
    // base.
    static const QRegularExpression gccType("^_ZT[ISV]([0-9]+)");
    static const QRegularExpression gcc("^_Z(?:Thn[0-9]+_)?NK?([0-9]+)");
    // Visual C++: "?member@Class@@", with a digit for the special ones.
    static const QRegularExpression visualCpp("^\\?(\\?[014]|\\?_[0-9A-Z]+|\\w+)@?(\\w+)@@");
    QRegularExpressionMatch match = gccType.match(name);
    if (match.hasMatch())
        return typeInformation.arg(name.mid(match.capturedEnd(1), match.captured(1).toInt()));
    match = gcc.match(name);
    if (match.hasMatch()) {
        const QString of = name.mid(match.capturedEnd(1), match.captured(1).toInt());
        const QString rest = name.mid(match.capturedEnd(1) + of.size());
        const QRegularExpressionMatch length = QRegularExpression("^[0-9]+").match(rest);
        if (length.hasMatch())
            return of + "::" + rest.mid(length.capturedEnd(), length.captured().toInt());
        return of + "::" + (rest.startsWith('C') ? QString() : QString("~")) + of;
    }
    match = visualCpp.match(name);
    if (match.hasMatch()) {
        const QString of = match.captured(2);
        const QString what = match.captured(1);
        if (what == "?0" || what == "?1")
            return of + "::" + (what == "?0" ? QString() : QString("~")) + of;
        return what.startsWith("?_") ? typeInformation.arg(of) : of + "::" + what;
    }
    return name;
}

// A name that is exported by accident is one that hosts come to rely on.
void tst_ExportedNames::theListIsComplete()
{
    QStringList expected{"qt_plugin_instance", "qt_plugin_query_metadata"};
    for (const char *name :
         {"Progress", "~Progress",    "do_process",   "get_value", "isFinish", "process",  "m_job_name",
          "m_step",   "m_layer_name", "m_file_name",  "m_Suffix",  "dbuValue", "resize",   "XScale",
          "YScale",   "angle",        "isProfiletop", "isReserse", "isMirror", "isRotate", "isScale"})
        expected << QString("Progress::%1").arg(name);
    for (const char *name : {"FileProcess",
                             "~FileProcess",
                             "(type information)",
                             "staticMetaObject",
                             "metaObject",
                             "qt_metacast",
                             "qt_metacall",
                             "qt_static_metacall",
                             "CreateFileProTools",
                             "InitImportTool",
                             "InitExportTool",
                             "GetFileProActions",
                             "recMsgFromManager",
                             "sendMsgToManager",
                             "setParentWidget",
                             "ImportSignal",
                             "ExportSignal",
                             "on_ImportACT_clicked",
                             "on_ExportACT_clicked",
                             "on_send_exprot_xml",
                             "InitExportInterface",
                             "exportNewProfile",
                             "sendPath2Mangager",
                             "readCfgFile",
                             "CheckDir",
                             "copyDirectory",
                             "mysystem"})
        expected << QString("FileProcess::%1").arg(name);

    QStringList exported;
    for (const QString &name : m_names)
        exported << member(name);
    exported.removeDuplicates();
    exported.sort();
    expected.sort();
    QCOMPARE(exported, expected);
}

void tst_ExportedNames::theModuleIsA64BitDll()
{
    QCOMPARE(m_headers->FileHeader.Machine, WORD(IMAGE_FILE_MACHINE_AMD64));
    QVERIFY(m_headers->FileHeader.Characteristics & IMAGE_FILE_DLL);
}

QStringList tst_ExportedNames::importedLibraries() const
{
    QStringList libraries;
    const DWORD directory =
        m_headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    for (const auto *entry = at<IMAGE_IMPORT_DESCRIPTOR>(directory); entry->Name; ++entry)
        libraries << QString::fromLatin1(at<char>(entry->Name)).toLower();
    return libraries;
}

// 7z.dll is loaded when it is needed, so that a host without it still starts.
void tst_ExportedNames::itNeedsOnlyLibrariesThatHostsBring()
{
    const QStringList libraries = importedLibraries();
    for (const char *library : {"orvex_api.dll", "pluginmanger.dll", "shell32.dll"})
        QVERIFY2(libraries.contains(library), qPrintable(libraries.join(' ')));
    QVERIFY(!libraries.contains("7z.dll"));
    QVERIFY2(libraries.filter("recording").isEmpty(), qPrintable(libraries.join(' ')));
}

QTEST_GUILESS_MAIN(tst_ExportedNames)
#include "tst_exportednames.moc"
