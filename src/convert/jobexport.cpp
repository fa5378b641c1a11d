// Writes the layers of a job, and remembers that it has.
#include "convert/jobexport.h"

#include "version.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QSaveFile>

#include <optional>

namespace convert {

namespace {

// All that a file's bytes depend on, but for the input and the program.
QByteArray textOf(const ExportArguments &arguments)
{
    const cam::ExportOptions &options = arguments.options;
    QStringList words{arguments.step,
                      arguments.layers.names.join(','),
                      arguments.layers.onlyBoard ? "board" : "all",
                      arguments.namePattern,
                      arguments.positive ? "positive" : "",
                      arguments.verify ? "verify" : ""};
    for (const cam::FileFormat format : arguments.formats)
        words << wordOf(format);
    for (const double number : {options.dbu, options.resize, options.angle, options.xScale, options.yScale})
        words << QString::number(number, 'g', 17);
    for (const bool flag : {options.negative, options.profileOnTop, options.mirror})
        words << QString::number(flag);
    return words.join('\n').toUtf8();
}

} // namespace

JobExport::JobExport(const QString &path, Shared &run, const ExportArguments &arguments)
    : JobRun(path, run), m_arguments(arguments)
{
}

bool JobExport::isDoneAlready()
{
    std::optional<JobReport> earlier = earlierReport();
    if (!earlier)
        return false;
    earlier->source = m_report.source;
    m_report = std::move(*earlier);
    for (FileReport &file : m_report.files)
        file.status = FileReport::Status::Kept;
    return true;
}

void JobExport::work(const cam::LayerImage &image, const cam::ExportRequest &request, FileReport &file)
{
    if (image.polarity == cam::Polarity::Negative && !request.options.negative &&
        request.format == cam::FileFormat::Gds)
        file.warnings << "the layer's polarity is negative, which a GDSII file cannot say; --positive "
                         "writes it as a positive image";
    const QString path = pathOf(file);
    const QString folder = QFileInfo(path).path();
    if (!QDir().mkpath(folder))
        throw std::runtime_error(folder.toStdString() + ": the folder cannot be made");
    cam::ExportRequest complete = request;
    complete.options.file = localPath(path);
    cam::writeLayer(image, complete);
    file.status = FileReport::Status::Written;
    file.bytes = QFileInfo(path).size();
    file.hash = hashOfFile(path);
    if (m_arguments.verify) {
        cam::VerifyControl control;
        control.report = report();
        file.verification =
            verificationOf(cam::verifyFile(image, complete.options, complete.options.file, control));
    }
}

void JobExport::completed()
{
    if (m_report.isProven())
        writeRecord();
}

// One a job and combination of options, so that the formats of a job may be written by two runs.
QString JobExport::recordPath() const
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(textOf(m_arguments));
    const QString options = QString::fromLatin1(hash.result().toHex().left(12));
    return QDir(m_arguments.folder).filePath(QString(".camconvert/%1-%2.json").arg(m_report.job, options));
}

void JobExport::writeRecord() const
{
    const QString path = recordPath();
    QDir().mkpath(QFileInfo(path).path());
    // flush() sees a full disk, commit() does not.
    QSaveFile file(path);
    const QByteArray bytes = lineOf(m_report.toJson()) + '\n';
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush() ||
        !file.commit())
        throw std::runtime_error(
            (path + ": the record cannot be written: " + file.errorString()).toStdString());
}

// What the record says, when input and program are the same and every file is what it was.
std::optional<JobReport> JobExport::earlierReport() const
{
    QFile record(recordPath());
    if (!record.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QJsonObject json = QJsonDocument::fromJson(record.readAll()).object();
    JobReport earlier = reportFrom(json);
    if (json["version"].toInt() != reportVersion ||
        json["program"].toString() != "camconvert " FILE_PROCESS_VERSION || earlier.hash != m_report.hash ||
        earlier.job != m_report.job || !earlier.isProven())
        return std::nullopt;
    for (const FileReport &file : earlier.files) {
        const QString path = QDir(m_arguments.folder).filePath(file.file);
        if (QFileInfo(path).size() != file.bytes || !QFileInfo(path).isFile() ||
            hashOfFile(path) != file.hash)
            return std::nullopt;
    }
    return earlier;
}

} // namespace convert
