#include "convert/report.h"

#include "version.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSaveFile>

#include <algorithm>

namespace convert {

namespace {

const char *const statusWords[] = {"written", "kept", "checked", "stray", "failed"};

QJsonObject toJson(const FileReport &file)
{
    QJsonObject json{{"layer", file.layer},     {"format", file.format},
                     {"file", file.file},       {"status", statusWords[int(file.status)]},
                     {"seconds", file.seconds}, {"warnings", QJsonArray::fromStringList(file.warnings)}};
    if (file.status == FileReport::Status::Failed) {
        json["error"] = file.error;
    } else {
        json["sha256"] = file.hash;
        json["bytes"] = double(file.bytes);
    }
    if (!file.verification.isEmpty())
        json["verification"] = file.verification;
    return json;
}

FileReport fileFrom(const QJsonObject &json)
{
    FileReport file;
    file.layer = json["layer"].toString();
    file.format = json["format"].toString();
    file.file = json["file"].toString();
    file.hash = json["sha256"].toString();
    file.bytes = qint64(json["bytes"].toDouble());
    file.seconds = json["seconds"].toDouble();
    for (const auto &warning : json["warnings"].toArray())
        file.warnings << warning.toString();
    file.verification = json["verification"].toObject();
    file.error = json["error"].toString();
    const auto word = std::find(std::begin(statusWords), std::end(statusWords), json["status"].toString());
    if (word != std::end(statusWords))
        file.status = FileReport::Status(word - std::begin(statusWords));
    return file;
}

} // namespace

bool JobReport::isDone() const
{
    return error.isEmpty() && std::none_of(files.begin(), files.end(), [](const FileReport &file) {
               return file.status == FileReport::Status::Failed;
           });
}

bool JobReport::isProven() const
{
    return isDone() &&
           std::all_of(files.begin(), files.end(), [](const FileReport &file) { return file.isProven(); });
}

QJsonObject JobReport::toJson() const
{
    QJsonArray list;
    for (const FileReport &file : files)
        list.append(convert::toJson(file));
    QJsonObject json{{"version", reportVersion},
                     {"program", "camconvert " FILE_PROCESS_VERSION},
                     {"job", job},
                     {"source", source},
                     {"sha256", hash},
                     {"step", step},
                     {"seconds", seconds},
                     {"done", isDone()},
                     {"files", list}};
    if (!error.isEmpty())
        json["error"] = error;
    return json;
}

QJsonObject verificationOf(const cam::Comparison &found)
{
    if (!found.reason.empty())
        return {{"proven", false}, {"reason", QString::fromStdString(found.reason)}};
    QJsonObject json{{"proven", found.isProven()},
                     {"missing", found.missingArea},
                     {"extra", found.extraArea},
                     {"deviation", found.deviation},
                     {"places", double(found.placesInAll)}};
    if (!found.places.empty()) {
        const cam::Point at = found.places.front().at;
        json["first"] = QJsonArray{at.x / 1e6, at.y / 1e6};
    }
    return json;
}

QString wordOf(cam::FileFormat format)
{
    return format == cam::FileFormat::Gds ? "gds" : "gerber";
}

JobReport reportFrom(const QJsonObject &json)
{
    JobReport report;
    report.job = json["job"].toString();
    report.source = json["source"].toString();
    report.hash = json["sha256"].toString();
    report.step = json["step"].toString();
    report.seconds = json["seconds"].toDouble();
    report.error = json["error"].toString();
    for (const auto &file : json["files"].toArray())
        report.files.push_back(fileFrom(file.toObject()));
    return report;
}

QByteArray lineOf(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

bool writeJson(const QString &file, const QByteArray &lines, Console &console)
{
    if (file == "-")
        console.json(lines.trimmed());
    if (file.isEmpty() || file == "-")
        return true;
    // flush() sees a full disk, commit() does not.
    QSaveFile written(file);
    if (written.open(QIODevice::WriteOnly) && written.write(lines) == lines.size() && written.flush() &&
        written.commit())
        return true;
    console.error(QString("%1: cannot be written: %2").arg(file, written.errorString()));
    return false;
}

} // namespace convert
