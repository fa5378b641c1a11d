// What the plug-in's DLL offers to the loader: the plug-in entry points, and the classes that hosts reach by
// name.
#include <QSet>
#include <QtTest>

#include <windows.h>

class tst_ExportedNames : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void entryPointsAreExported_data();
    void entryPointsAreExported();
    void classMembersAreExported_data();
    void classMembersAreExported();
    void nothingElseIsExported();
    void theModuleIsA64BitDll();
    void itNeedsOnlyLibrariesThatHostsBring();

private:
    template <typename T>
    const T *at(DWORD address) const
    {
        return reinterpret_cast<const T *>(m_image + address);
    }
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

// A name that is exported by accident is one that hosts come to rely on.
void tst_ExportedNames::nothingElseIsExported()
{
    QStringList others;
    for (const QString &name : m_names) {
        if (!name.startsWith("qt_plugin_") && !name.contains("Progress") && !name.contains("FileProcess"))
            others << name;
    }
    QVERIFY2(others.isEmpty(), qPrintable(others.join('\n')));
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
