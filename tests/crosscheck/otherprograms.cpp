// Command lines, and what comes back.
#include "tests/crosscheck/otherprograms.h"

#include <QFile>
#include <QImage>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTextStream>

#include <algorithm>

namespace crosscheck {

namespace {

constexpr double inch = 25.4e6; // nanometres
// The programs draw so many pixels for one, in both directions: gerbv moves the ends of strokes, and rounds
// their widths, to whole pixels of its own; KLayout darkens half of one around every shape.
constexpr int finer = 2;
constexpr double drawnPixel = pixel / finer;
constexpr int timeout = 2 * 60 * 60 * 1000; // milliseconds; KLayout draws all pictures of a board at once

Complaints run(const QString &program, const QStringList &arguments,
               QProcessEnvironment environment = QProcessEnvironment::systemEnvironment())
{
    QProcess process;
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

// The window with the margin around it.
Window drawnWindow(const Picture &picture)
{
    Window window = picture.window;
    window.left -= picture.margin * pixel;
    window.bottom -= picture.margin * pixel;
    window.width += 2 * picture.margin;
    window.height += 2 * picture.margin;
    return window;
}

// With gerbvpicture.cpp in it.
QProcessEnvironment gerbvEnvironment()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LD_PRELOAD", GERBV_PICTURE);
    environment.insert("GLIBC_TUNABLES", "glibc.malloc.hugetlb=1"); // a picture takes 150 MB
    environment.insert("GERBV_PICTURE_FINER", QString::number(finer));
    return environment;
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
        const Window window = drawnWindow(picture);
        // A hair more than the size: gerbv cuts fractions of a pixel off.
        const double hair = drawnPixel / 10.0;
        const QString origin = inches(window.left) + 'x' + inches(window.bottom);
        const QString size = inches(window.width * pixel + hair) + 'x' + inches(window.height * pixel + hair);
        const QString said =
            run("gerbv",
                {"-a", "-x", "png", "-D", QString::number(inch / drawnPixel), "-B", "0", "-b", "#ffffff",
                 "-f", "#000000ff", "-O", origin, "-W", size, "-o", picture.image, picture.file},
                gerbvEnvironment());
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
        const Window window = drawnWindow(picture);
        const QStringList fields = {picture.file,
                                    picture.image,
                                    QString::number(window.width * finer),
                                    QString::number(window.height * finer),
                                    QString::number(window.left / 1000.0, 'f', 3),
                                    QString::number(window.bottom / 1000.0, 'f', 3),
                                    QString::number(drawnPixel / 1000.0, 'f', 3)};
        list.write(fields.join('\t').toUtf8() + '\n');
    }
    list.close();
    return run("klayout",
               {"-z", "-nc", "-rd", "pictures=" + listFile, "-r", CROSSCHECK_FOLDER "/draw_gds.py"});
}

QStringList compareFormats(const std::vector<FormatPair> &pairs, const QString &base)
{
    const QString listFile = base + "_pairs.txt", resultFile = base + "_results.txt";
    QFile list(listFile), results(resultFile);
    results.remove();
    if (!list.open(QIODevice::WriteOnly))
        return {listFile + " cannot be written"};
    for (const FormatPair &pair : pairs)
        list.write((pair.gerber + '\t' + pair.gds + '\n').toUtf8());
    list.close();
    const QString said =
        run("klayout", {"-zz", "-nc", "-rd", "pairs=" + listFile, "-rd", "results=" + resultFile, "-r",
                        CROSSCHECK_FOLDER "/compare_files.py"});
    QStringList found;
    if (results.open(QIODevice::ReadOnly)) {
        while (!results.atEnd())
            found << QString::fromUtf8(results.readLine()).trimmed();
    }
    // A pair without a line was not compared.
    while (found.size() < static_cast<int>(pairs.size()))
        found << "KLayout did not compare the two files: " + said;
    return found;
}

Bitmap read(const Picture &picture)
{
    const QImage image = QImage(picture.image).convertToFormat(QImage::Format_Grayscale8);
    const Window drawn = drawnWindow(picture);
    // gerbv's picture comes averaged, KLayout's as it was drawn.
    const int share = picture.image.endsWith(".pgm") ? 1 : finer;
    if (image.width() != drawn.width * share || image.height() != drawn.height * share)
        return {};
    const Window &window = picture.window;
    const int margin = picture.margin * share; // in the image's pixels, the same at the top and at the bottom
    Bitmap bitmap(window.width, window.height);
    std::vector<int> brightness(static_cast<std::size_t>(window.width)); // sums over share x share pixels
    for (int y = 0; y < window.height; ++y) {
        std::fill(brightness.begin(), brightness.end(), 0);
        for (int i = 0; i < share; ++i) {
            const uchar *row = image.constScanLine(margin + (window.height - 1 - y) * share + i) + margin;
            for (int x = 0; x < window.width; ++x) {
                for (int j = 0; j < share; ++j)
                    brightness[static_cast<std::size_t>(x)] += row[x * share + j];
            }
        }
        for (int x = 0; x < window.width; ++x) {
            if (brightness[static_cast<std::size_t>(x)] < 128 * share * share)
                bitmap.set(x, y);
        }
    }
    return bitmap;
}

} // namespace crosscheck
