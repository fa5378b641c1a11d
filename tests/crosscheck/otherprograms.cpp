// Command lines, and what comes back.
#include "tests/crosscheck/otherprograms.h"

#include <QFile>
#include <QImage>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>
#include <QTextStream>

namespace crosscheck {

namespace {

constexpr double inch = 25.4e6; // nanometres
constexpr int timeout = 300000; // milliseconds

Complaints run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    if (!process.waitForStarted())
        return program + " cannot be started: install it with scripts/packages.sh crosscheck";
    if (!process.waitForFinished(timeout)) {
        process.kill();
        return program + " did not end";
    }
    QString text = QString::fromLocal8Bit(process.readAll()).trimmed();
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        text += "\nended with " + QString::number(process.exitCode());
    return text.trimmed();
}

// Inches to a fortieth of a pixel: gerbv takes 20 characters for both coordinates of an origin.
QString inches(double nanometres)
{
    return QString::number(nanometres / inch, 'f', 5);
}

} // namespace

Complaints drawGerber(const std::vector<Picture> &pictures)
{
    Complaints complaints;
    for (const Picture &picture : pictures) {
        const Window &window = picture.window;
        // A hair more than the size: gerbv cuts fractions of a pixel off.
        const double hair = pixel / 10.0;
        const QString origin = inches(window.left) + 'x' + inches(window.bottom);
        const QString size = inches(window.width * pixel + hair) + 'x' + inches(window.height * pixel + hair);
        const QString said =
            run("gerbv", {"-a", "-x", "png", "-D", QString::number(inch / pixel), "-B", "0", "-b", "#ffffff",
                          "-f", "#000000ff", "-O", origin, "-W", size, "-o", picture.png, picture.file});
        if (!said.isEmpty())
            complaints += picture.file + ": " + said + '\n';
    }
    return complaints;
}

Complaints drawGds(const std::vector<Picture> &pictures, const QString &listFile)
{
    QFile list(listFile);
    if (!list.open(QIODevice::WriteOnly))
        return listFile + " cannot be written";
    for (const Picture &picture : pictures) {
        const Window &window = picture.window;
        const QStringList fields = {picture.file,
                                    picture.png,
                                    QString::number(window.width),
                                    QString::number(window.height),
                                    QString::number(window.left / 1000.0, 'f', 3),
                                    QString::number(window.bottom / 1000.0, 'f', 3),
                                    QString::number(pixel / 1000.0, 'f', 3)};
        list.write(fields.join('\t').toUtf8() + '\n');
    }
    list.close();
    return run("klayout",
               {"-z", "-nc", "-rd", "pictures=" + listFile, "-r", CROSSCHECK_FOLDER "/draw_gds.py"});
}

Bitmap read(const Picture &picture)
{
    const QImage image = QImage(picture.png).convertToFormat(QImage::Format_Grayscale8);
    const Window &window = picture.window;
    if (image.width() != window.width || image.height() != window.height)
        return {};
    Bitmap bitmap(window.width, window.height);
    for (int y = 0; y < window.height; ++y) {
        const uchar *row = image.constScanLine(window.height - 1 - y);
        for (int x = 0; x < window.width; ++x) {
            if (row[x] < 128)
                bitmap.set(x, y);
        }
    }
    return bitmap;
}

} // namespace crosscheck
