// Compares the files of a job with its layers, and looks for files that no layer has.
#include "convert/jobverify.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QRegularExpression>

#include <set>

namespace convert {

namespace {

// The folder that holds all files of a job by the pattern, and what their paths look like; below the output
// folder.
struct Place
{
    QString folder;
    QRegularExpression names;
};

Place placeOf(const LayerArguments &arguments, const QString &job)
{
    const QStringList parts = QString(arguments.namePattern).replace('\\', '/').split('/');
    QStringList fixed;
    for (int i = 0; i + 1 < parts.size(); ++i) {
        const QString part = QString(parts[i]).replace("{job}", job);
        if (part.contains('{'))
            break;
        fixed << part;
    }
    QString names = QRegularExpression::escape(parts.join('/'));
    const std::pair<const char *, QString> words[] = {{"{job}", QRegularExpression::escape(job)},
                                                      {"{step}", "[^/]+"},
                                                      {"{layer}", "[^/]+"},
                                                      {"{type}", "[^/]+"},
                                                      {"{row}", "[0-9]+"},
                                                      {"{ext}", "\\.(gds|gerber)"}};
    for (const auto &[word, text] : words)
        names.replace(QRegularExpression::escape(word), text);
    return {fixed.join('/'),
            QRegularExpression('^' + names + '$', QRegularExpression::CaseInsensitiveOption)};
}

} // namespace

// A file that is named as those of the job are, and is of no layer in no step.
void JobVerify::planned(const cam::Matrix &matrix)
{
    std::set<QString> known;
    for (const std::string &step : matrix.steps) {
        for (const cam::MatrixLayer &layer : matrix.layers) {
            for (const cam::FileFormat format : {cam::FileFormat::Gds, cam::FileFormat::Gerber})
                known.insert(fileName(lowerCase(step), layer, format).toLower());
        }
    }
    const Place place = placeOf(m_run.arguments, m_report.job);
    const QDir output(QDir(m_run.arguments.folder).absolutePath());
    QStringList strays;
    QDirIterator walk(output.filePath(place.folder), QDir::Files, QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        const QString file = output.relativeFilePath(walk.next());
        if (place.names.match(file).hasMatch() && known.count(file.toLower()) == 0)
            strays << file;
    }
    strays.sort();
    for (const QString &file : strays) {
        FileReport stray;
        stray.file = file;
        stray.format = wordOf(file.endsWith(".gds", Qt::CaseInsensitive) ? cam::FileFormat::Gds
                                                                         : cam::FileFormat::Gerber);
        stray.status = FileReport::Status::Stray;
        stray.bytes = QFileInfo(pathOf(stray)).size();
        stray.hash = hashOfFile(pathOf(stray));
        m_report.files.push_back(stray);
    }
}

void JobVerify::work(const cam::LayerImage &image, const cam::ExportRequest &request, FileReport &file)
{
    const QString path = pathOf(file);
    if (!QFileInfo(path).isFile())
        throw std::runtime_error(path.toStdString() + ": there is no such file");
    file.bytes = QFileInfo(path).size();
    file.hash = hashOfFile(path);
    cam::VerifyControl control;
    control.report = report();
    file.verification = verificationOf(cam::verifyFile(image, request.options, localPath(path), control));
    file.status = FileReport::Status::Checked;
}

} // namespace convert
