// Runs the built camconvert as a process of its own, with a folder for temporary files that tests can look
// into.
#pragma once

#include "tests/support/temporaryworkingfolder.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStringList>

struct Ran
{
    int code = -1; // -1 also when it crashed or did not end in time
    QString output, errors;

    QJsonObject json() const { return QJsonDocument::fromJson(output.toUtf8()).object(); }
};

class Program
{
public:
    Program() { QDir().mkpath(m_folder.filePath("temporary")); }

    QString filePath(const QString &name) const { return m_folder.filePath(name); }
    const TemporaryWorkingFolder &folder() const { return m_folder; }
    static QString path() { return QCoreApplication::applicationDirPath() + "/camconvert"; }

    void prepare(QProcess &process) const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char *name : {"TMPDIR", "TMP", "TEMP"})
            environment.insert(name, QDir::toNativeSeparators(m_folder.filePath("temporary")));
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(m_folder.path());
    }
    Ran run(const QStringList &arguments, const QString &program = path()) const
    {
        QProcess process;
        prepare(process);
        process.start(program, arguments);
        return end(process);
    }
    static Ran end(QProcess &process)
    {
        const bool ended = process.waitForFinished(200000);
        if (!ended)
            process.kill();
        Ran ran;
        ran.output = QString::fromUtf8(process.readAllStandardOutput());
        ran.output.replace("\r\n", "\n"); // Windows' ends of lines
        ran.errors = QString::fromUtf8(process.readAllStandardError());
        if (ended && process.exitStatus() == QProcess::NormalExit)
            ran.code = process.exitCode();
        return ran;
    }

    QStringList temporaryFiles() const
    {
        return QDir(filePath("temporary")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    }
    QByteArray bytes(const QString &name) const
    {
        QFile file(filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QStringList files(const QString &folder) const { return QDir(filePath(folder)).entryList(QDir::Files); }

private:
    TemporaryWorkingFolder m_folder;
};
