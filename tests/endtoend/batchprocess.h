// Runs the built workbench in batch mode, as a process of its own.
#pragma once

#include <QCoreApplication>
#include <QProcess>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

struct BatchResult
{
    int code = -1; // -1 also when it crashed or did not end in time
    QString output;
    QString errors;

    QString all() const { return output + errors; }
    QStringList lines(const QString &pattern) const
    {
        return output.split(QRegularExpression("\r?\n")).filter(QRegularExpression(pattern));
    }
    // The lines of the files that were written.
    QStringList fileLines() const { return lines("^  .+  .+\\.(gds|gerber)  \\d+ bytes  \\d+s$"); }
};

inline BatchResult runBatch(const QString &workingFolder, const QStringList &arguments)
{
    QProcess process;
    process.setWorkingDirectory(workingFolder);
    // Those of the person who runs the tests do not count.
    const QStringList settings{"--settings", workingFolder + "/settings"};
    process.start(QCoreApplication::applicationDirPath() + "/workbench",
                  QStringList{"--batch"} + settings + arguments);
    const bool ended = process.waitForFinished(400000);
    if (!ended)
        process.kill();
    BatchResult result;
    result.output = QString::fromLocal8Bit(process.readAllStandardOutput());
    result.errors = QString::fromLocal8Bit(process.readAllStandardError());
    if (ended && process.exitStatus() == QProcess::NormalExit)
        result.code = process.exitCode();
    return result;
}
