// What became of a job and its files: as JSON (docs/camconvert.md), and as the record that --resume goes by.
#pragma once

#include "cam/export/exportrequest.h"
#include "cam/verify/verification.h"
#include "convert/console.h"

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <vector>

namespace convert {

// Of the JSON's form; grows when something changes its meaning.
constexpr int reportVersion = 1;

struct FileReport
{
    // Checked: by verify, which has found it. Stray: it is named like a layer's file, and no layer's.
    enum class Status { Written, Kept, Checked, Stray, Failed };
    QString layer;
    QString format; // "gds" or "gerber"
    QString file;   // relative to the output folder
    Status status = Status::Failed;
    QString hash; // SHA-256, hexadecimal; empty for a file that failed, as what follows is 0
    qint64 bytes = 0;
    double seconds = 0.0;
    QStringList warnings;
    QString error;
    QJsonObject verification; // as docs/camconvert.schema.json says; empty when it was not asked for

    // Whether there is nothing against it: a file that nobody has compared counts as proven.
    bool isProven() const
    {
        return status != Status::Stray && (verification.isEmpty() || verification["proven"].toBool());
    }
};

struct JobReport
{
    QString job;    // its name
    QString source; // as given
    QString hash;   // SHA-256 of the input
    QString step;
    double seconds = 0.0;
    QString error; // of the job as a whole
    std::vector<FileReport> files;

    bool isDone() const;   // nothing failed
    bool isProven() const; // nor is anything that was verified not proven
    QJsonObject toJson() const;
};

// What a comparison has found, as docs/camconvert.schema.json has it.
QJsonObject verificationOf(const cam::Comparison &found);

// "gds" or "gerber".
QString wordOf(cam::FileFormat format);

// Reads what toJson() made.
JobReport reportFrom(const QJsonObject &json);

// An object as one line, UTF-8.
QByteArray lineOf(const QJsonObject &object);

// Writes what --json asks for: into a file, or to the standard output for "-"; nothing for an empty name.
// False when the file cannot be written, which is said.
bool writeJson(const QString &file, const QByteArray &lines, Console &console);

} // namespace convert
