// Where Windows finds 7-Zip's library when it is asked for by its plain name.
#include "archive/archive.h"

#include <QtTest>

#include <windows.h>

class tst_SevenZipLibrary : public QObject
{
    Q_OBJECT

private slots:
    void thePlainNameFindsTheLibraryBesideTheProgram();
    void theWorkingFolderDoesNotMatter();
    void theLibraryIsLetGoOfWithItsLastUser();
    void aMissingLibraryIsNamed();
    void anotherLibraryIsRefusedByName();

private:
    static QString loadedFrom()
    {
        wchar_t path[MAX_PATH] = {};
        GetModuleFileNameW(GetModuleHandleW(L"7z.dll"), path, MAX_PATH);
        return QDir::fromNativeSeparators(QString::fromWCharArray(path));
    }
    static QString messageFor(const std::wstring &name);
};

void tst_SevenZipLibrary::thePlainNameFindsTheLibraryBesideTheProgram()
{
    const archive::Bit7zLibrary library(L"7z.dll");
    QVERIFY(GetModuleHandleW(L"7z.dll"));
    QCOMPARE(loadedFrom().toLower(), (QCoreApplication::applicationDirPath() + "/7z.dll").toLower());
}

void tst_SevenZipLibrary::theWorkingFolderDoesNotMatter()
{
    const QString before = QDir::currentPath();
    QTemporaryDir folder;
    QFile impostor(folder.filePath("7z.dll"));
    QVERIFY(impostor.open(QIODevice::WriteOnly));
    impostor.write("no library");
    impostor.close();
    QDir::setCurrent(folder.path());
    {
        const archive::Bit7zLibrary library(L"7z.dll");
        QCOMPARE(loadedFrom().toLower(), (QCoreApplication::applicationDirPath() + "/7z.dll").toLower());
    }
    QDir::setCurrent(before);
}

void tst_SevenZipLibrary::theLibraryIsLetGoOfWithItsLastUser()
{
    {
        const archive::Bit7zLibrary first(L"7z.dll");
        {
            const archive::Bit7zLibrary second(L"7z.dll");
        }
        QVERIFY(GetModuleHandleW(L"7z.dll"));
    }
    QVERIFY(!GetModuleHandleW(L"7z.dll"));
}

QString tst_SevenZipLibrary::messageFor(const std::wstring &name)
{
    try {
        const archive::Bit7zLibrary library(name);
    } catch (const archive::BitException &exception) {
        return QString::fromUtf8(exception.what());
    }
    return "no exception";
}

void tst_SevenZipLibrary::aMissingLibraryIsNamed()
{
    const QString message = messageFor(L"no-such-7z.dll");
    QVERIFY2(message.contains("\"no-such-7z.dll\" cannot be loaded"), qPrintable(message));
}

void tst_SevenZipLibrary::anotherLibraryIsRefusedByName()
{
    const QString message = messageFor(L"Qt5Core.dll");
    QVERIFY2(message.contains("\"Qt5Core.dll\" is no 7-Zip library"), qPrintable(message));
}

QTEST_GUILESS_MAIN(tst_SevenZipLibrary)
#include "tst_sevenziplibrary.moc"
