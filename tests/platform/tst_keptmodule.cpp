// Keeping a module in memory after its host has unloaded it.

#include <QCoreApplication>
#include <QLibrary>
#include <QtTest>

class tst_KeptModule : public QObject
{
    Q_OBJECT

private slots:
    void moduleForgetsWhenItIsUnloaded();
    void keptModuleIsStillThere();

private:
    // Loads the module, lets it remember 5, unloads it, loads it again, and returns what it remembers.
    int rememberedAfterUnloading(bool keep);
};

int tst_KeptModule::rememberedAfterUnloading(bool keep)
{
    const auto module = [] { return QCoreApplication::applicationDirPath() + "/keptmodule"; };
    {
        QLibrary library(module());
        if (!library.load())
            qFatal("%s", qPrintable(library.errorString()));
        if (keep)
            library.resolve("keep")();
        reinterpret_cast<void (*)(int)>(library.resolve("remember"))(5);
        if (!library.unload())
            qFatal("the module was not unloaded");
    }
    QLibrary library(module());
    if (!library.load())
        qFatal("%s", qPrintable(library.errorString()));
    const int number = reinterpret_cast<int (*)()>(library.resolve("remembered"))();
    library.unload();
    return number;
}

void tst_KeptModule::moduleForgetsWhenItIsUnloaded()
{
    QCOMPARE(rememberedAfterUnloading(false), 0);
}

void tst_KeptModule::keptModuleIsStillThere()
{
    QCOMPARE(rememberedAfterUnloading(true), 5);
}

QTEST_GUILESS_MAIN(tst_KeptModule)
#include "tst_keptmodule.moc"
