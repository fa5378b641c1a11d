// Options by Qt's parser; what they mean, and what may not be, is settled here once.
#include "convert/arguments.h"

#include "version.h"

#include <QCommandLineParser>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <thread>

namespace convert {

namespace {

const char programHelp[] =
    R"(Usage: camconvert COMMAND [options] ...

Converts ODB++ jobs to GDSII and Gerber files, and proves what has been written.

Commands:
  export   Write layers of jobs as GDSII or Gerber files.
  verify   Compare written files with the layers of their jobs.
  diff     Show what two jobs, or two files, have and do not have in common.
  picture  Draw a layer or the whole board.
  info     Show what is in jobs.

"camconvert COMMAND --help" describes a command, with examples.
--version shows the program's version.

Exit codes: 0 done, 1 something failed, 2 the command line is wrong, 3 not proven, 128 and the signal's
number after a signal.
)";

const char exportExamples[] = R"(
Examples:
  camconvert export board.tgz --out files
      Every layer with a drawing, as GDSII and as Gerber: files/board/top.gds, files/board/top.gerber, ...
  camconvert export board.tgz --format gerber --layers board --out files
      The layers of the board only, as Gerber.
  camconvert export board.tgz --layers top,bottom --rotate 90 --mirror --out files
      Two layers, mirrored about the Y axis, then rotated about the step's datum.
  camconvert export *.tgz --positive --out files --name "{job}/{row}_{layer}{ext}" --json report.jsonl
      Many jobs, planes as positive images, file names by a pattern, one line of JSON a job.
  camconvert export *.tgz --out files --resume
      Goes on where an earlier run ended: jobs whose files are there and unchanged are passed over.
)";

const char verifyExamples[] = R"(
Examples:
  camconvert verify board.tgz files
      The files of "camconvert export board.tgz --out files": files/board/top.gds, ...
  camconvert verify board.tgz files --rotate 90 --mirror --format gerber
      The options that change or choose what is written are those of the export.
  camconvert verify *.tgz files --json -
      Many jobs, one line of JSON for each.
)";

const char diffExamples[] = R"(
Examples:
  camconvert diff board_a.tgz board_b.tgz
      Layer by layer: what came, what went, where.
  camconvert diff board_a.tgz board_b.tgz --layers top --picture changes.png --width 4000
      Green is added, red removed, grey both have.
  camconvert diff top.gds top.gerber --json -
      Two files of either format.
)";

const char pictureExamples[] = R"(
Examples:
  camconvert picture board.tgz --out board.png
      The layers of the board over each other, at most 2000 pixels a side.
  camconvert picture board.tgz --layer top --out top.svg
      One layer, at its true size.
  camconvert picture board.tgz --layer bottom --mirror --scale 40 --out bottom.png
      Seen from below, 40 pixels a millimetre.
)";

const char infoExamples[] = R"(
Examples:
  camconvert info board.tgz
  camconvert info --json board.tgz other_job_folder
)";

// What is common to the parsers of all commands.
class Parser
{
public:
    // `operands`: each with its help.
    Parser(const char *command, const char *description,
           const std::vector<std::pair<const char *, const char *>> &operands)
        : m_command(command), m_operand(QString(operands.front().first).remove("..."))
    {
        m_parser.setApplicationDescription(description);
        m_parser.addPositionalArgument(command, "", command);
        for (const auto &[name, help] : operands)
            m_parser.addPositionalArgument(name, help, name);
    }
    void flag(const char *name, const char *help) { m_parser.addOption({name, help}); }
    void option(const char *name, const char *help, const char *value)
    {
        m_parser.addOption({name, help, value});
    }

    // False when the answer is settled: by --help, or by an error.
    bool parse(const QStringList &arguments, const char *examples, Arguments &result)
    {
        m_parser.addOption({{"h", "help"}, "Show this text."});
        const bool understood = m_parser.parse(arguments);
        if (m_parser.isSet("help")) {
            // The command itself is no argument to explain.
            result.text = m_parser.helpText()
                              .replace(QString("Usage: %1 [options] %2").arg(arguments.first(), m_command),
                                       QString("Usage: camconvert %1 [options]").arg(m_command))
                              .remove(QRegularExpression(QString("^  %1 *\\n").arg(m_command),
                                                         QRegularExpression::MultilineOption)) +
                          examples;
            return false;
        }
        if (!understood)
            result.error = m_parser.errorText();
        else if (operands().isEmpty())
            result.error = QString("%1: expected at least one %2").arg(m_command, m_operand);
        return result.error.isEmpty();
    }

    bool isSet(const char *name) const { return m_parser.isSet(name); }
    QString text(const char *name) const { return m_parser.value(name); }
    QStringList list(const char *name) const
    {
        QStringList values;
        for (const QString &value : m_parser.values(name))
            values << value.split(',');
        values.removeAll(QString());
        return values;
    }
    // What stands on the command line without an option, in order.
    QStringList operands() const { return m_parser.positionalArguments().mid(1); }

    // Leaves `number` alone where the option is not there.
    void number(const char *name, double &number, QString &error) const
    {
        if (!isSet(name))
            return;
        bool isNumber = false;
        number = text(name).toDouble(&isNumber);
        if (!isNumber || !std::isfinite(number))
            error = QString("--%1 %2: expected a number").arg(name, text(name));
    }

private:
    QString m_command, m_operand; // the first of its kind
    QCommandLineParser m_parser;
};

QString patternFault(const QString &pattern)
{
    QString rest = pattern;
    for (const char *word : {"{job}", "{step}", "{layer}", "{type}", "{row}", "{ext}"})
        rest.remove(word);
    if (rest.contains('{') || rest.contains('}'))
        return "expected {job}, {step}, {layer}, {type}, {row} and {ext} in braces";
    const QStringList parts = QString(pattern).replace('\\', '/').split('/');
    if (parts.contains(QString()) || parts.contains(".") || parts.contains("..") || rest.contains(':'))
        return "expected a path below the output folder";
    if (!pattern.contains("{layer}") && !pattern.contains("{row}"))
        return "expected {layer} or {row}, or all layers have one name";
    return {};
}

const std::pair<const char *, const char *> jobOperand("JOB...", "Archives (.tgz) and unpacked job folders.");

void addChoiceOptions(Parser &parser)
{
    parser.option("step", "Step of the layers. (The job's first one otherwise.)", "name");
    parser.option("layers",
                  "all (that have a drawing), board (of those the layers of the board), or names with "
                  "commas between. (all otherwise.)",
                  "layers");
}

LayerChoice layerChoice(const Parser &parser, QString &error)
{
    LayerChoice choice;
    const QStringList layers = parser.list("layers");
    choice.onlyBoard = layers == QStringList("board");
    if (!choice.onlyBoard && layers != QStringList("all"))
        choice.names = layers;
    if (parser.isSet("layers") && layers.isEmpty())
        error = "--layers: expected all, board or names";
    return choice;
}

// How much is done at once.
void addWorkOptions(Parser &parser)
{
    parser.option("jobs", "How many layers at once. (One a core otherwise.)", "number");
    parser.option("memory", "What the layers at work may take together, by estimate. (1000 otherwise.)",
                  "megabytes");
}

void readWorkOptions(const Parser &parser, int &threads, double &megabytes, QString &error)
{
    double number = std::max(1u, std::thread::hardware_concurrency());
    megabytes = 1000.0;
    parser.number("jobs", number, error);
    parser.number("memory", megabytes, error);
    if (number < 1.0 || number > 1024.0 || number != std::floor(number))
        error = "--jobs: expected a whole number from 1 to 1024";
    if (!(megabytes > 0.0))
        error = "--memory: expected a number above 0";
    threads = static_cast<int>(number);
}

QString jsonFile(const Parser &parser, QString &error)
{
    if (parser.isSet("json") && parser.text("json").isEmpty())
        error = "--json: expected a file, or -";
    return parser.text("json");
}

void addSizeOptions(Parser &parser)
{
    parser.option("scale", "Pixels a millimetre.", "number");
    parser.option("width", "Of the picture, in pixels. (2000 along the longer side otherwise.)", "pixels");
}

PictureSize pictureSize(const Parser &parser, QString &error)
{
    PictureSize size;
    double width = 1.0;
    size.pixelsPerMillimetre = 1.0;
    parser.number("scale", size.pixelsPerMillimetre, error);
    parser.number("width", width, error);
    if (!(size.pixelsPerMillimetre > 0.0))
        error = "--scale: expected a number above 0";
    if (width < 1.0 || width > 1e5 || width != std::floor(width))
        error = "--width: expected a whole number of 1 to 100000";
    if (parser.isSet("scale") && parser.isSet("width"))
        error = "expected --scale or --width, not both";
    if (!parser.isSet("scale"))
        size.pixelsPerMillimetre = 0.0;
    size.width = parser.isSet("width") ? static_cast<int>(width) : 0;
    return size;
}

bool isPictureFile(const QString &file, bool mayBeSvg)
{
    return file.endsWith(".png", Qt::CaseInsensitive) ||
           (mayBeSvg && file.endsWith(".svg", Qt::CaseInsensitive));
}

void addLayerOptions(Parser &parser)
{
    parser.option("format", "gds, gerber or both with a comma between. (Both otherwise.)", "formats");
    addChoiceOptions(parser);
    parser.option("name",
                  "Names of the files below the folder, of {job}, {step}, {layer}, {type}, {row} and {ext}. "
                  "({job}/{layer}{ext} otherwise, all in lower case.)",
                  "pattern");
    parser.option("rotate", "Rotate counter-clockwise about the step's datum, after mirroring.", "degrees");
    parser.flag("mirror", "Mirror, x to -x.");
    parser.option("x-scale", "Scale along x, before mirroring.", "factor");
    parser.option("y-scale", "Scale along y, before mirroring.", "factor");
    parser.option("resize", "By how much features grow, half of it to each side.", "micrometres");
    parser.flag("negate", "The area of the step's profile less the layer.");
    parser.flag("positive", "Layers of negative polarity as positive images.");
    parser.option("dbu", "Database unit of GDSII files. (0.001 otherwise.)", "micrometres");
    parser.flag("profile", "With the step's profile.");
    parser.option("json", "Write a line of JSON for each job; - for the standard output.", "file");
    addWorkOptions(parser);
}

void readLayerOptions(const Parser &parser, LayerArguments &values, QString &error)
{
    QStringList formats = parser.list("format");
    if (!parser.isSet("format"))
        formats = QStringList{"gds", "gerber"};
    for (const QString &format : formats) {
        if (format != "gds" && format != "gerber") {
            error = QString("--format %1: expected gds or gerber").arg(format);
            return;
        }
        const auto known = format == "gds" ? cam::FileFormat::Gds : cam::FileFormat::Gerber;
        if (std::find(values.formats.begin(), values.formats.end(), known) == values.formats.end())
            values.formats.push_back(known);
    }
    if (values.formats.empty())
        error = "--format: expected gds or gerber";
    values.step = parser.text("step");
    values.layers = layerChoice(parser, error);
    values.namePattern = parser.isSet("name") ? parser.text("name") : QString("{job}/{layer}{ext}");
    if (const QString fault = patternFault(values.namePattern); !fault.isEmpty())
        error = QString("--name %1: %2").arg(values.namePattern, fault);
    else if (values.formats.size() > 1 && !values.namePattern.contains("{ext}"))
        error = QString("--name %1: expected {ext}, or both formats have one name").arg(values.namePattern);
    else if (values.jobs.size() > 1 && !values.namePattern.contains("{job}"))
        error = QString("--name %1: expected {job}, or several jobs have one name").arg(values.namePattern);

    double micrometres = 0.0;
    parser.number("rotate", values.options.angle, error);
    parser.number("x-scale", values.options.xScale, error);
    parser.number("y-scale", values.options.yScale, error);
    parser.number("resize", micrometres, error);
    parser.number("dbu", values.options.dbu, error);
    values.options.resize = micrometres * 1000.0;
    if (values.options.xScale == 0.0 || values.options.yScale == 0.0)
        error = "expected scales other than 0";
    if (!(values.options.dbu > 0.0))
        error = "--dbu: expected a number above 0";
    readWorkOptions(parser, values.threads, values.megabytes, error);
    values.options.mirror = parser.isSet("mirror");
    values.options.negative = parser.isSet("negate");
    values.options.profileOnTop = parser.isSet("profile");
    values.positive = parser.isSet("positive");
    values.json = jsonFile(parser, error);
}

void parseExport(const QStringList &arguments, Arguments &result)
{
    Parser parser("export",
                  "Writes layers of jobs as GDSII or Gerber files. A file appears under its name only "
                  "when it is complete.",
                  {jobOperand});
    parser.option("out", "Folder of the files. It is made when it is missing.", "folder");
    addLayerOptions(parser);
    parser.flag("verify", "Read each file back and compare it with its layer.");
    parser.flag("resume",
                "Pass over jobs that an earlier run has done: the same input, options and version, and the "
                "files still there.");
    if (!parser.parse(arguments, exportExamples, result))
        return;
    ExportArguments &values = result.exporting;
    result.command = Arguments::Command::Export;
    values.jobs = parser.operands();
    values.folder = parser.text("out");
    if (values.folder.isEmpty())
        result.error = "expected --out, the folder of the files";
    values.verify = parser.isSet("verify");
    values.resume = parser.isSet("resume");
    readLayerOptions(parser, values, result.error);
}

void parseVerify(const QStringList &arguments, Arguments &result)
{
    Parser parser("verify",
                  "Reads written files back and compares each with its layer: what the file lacks, what it "
                  "has too much, how far it deviates and where. Layers without a file, and files without a "
                  "layer, are named.",
                  {jobOperand, {"FOLDER", "That of the export's --out."}});
    addLayerOptions(parser);
    if (!parser.parse(arguments, verifyExamples, result))
        return;
    LayerArguments &values = result.verifying;
    result.command = Arguments::Command::Verify;
    values.jobs = parser.operands();
    values.folder = values.jobs.takeLast();
    if (values.jobs.isEmpty())
        result.error = "verify: expected a job, and the folder of its files";
    readLayerOptions(parser, values, result.error);
}

// A folder or an archive, rather than a written file.
bool isJob(const QString &path)
{
    return QFileInfo(path).isDir() || path.endsWith(".tgz", Qt::CaseInsensitive) ||
           path.endsWith(".tar.gz", Qt::CaseInsensitive);
}

void parseDiff(const QStringList &arguments, Arguments &result)
{
    Parser parser("diff",
                  "Compares two jobs layer by layer, or two files: layers that came or went, area that was "
                  "added and removed, and where. The exit code is 3 where there are differences.",
                  {{"A", "The older one: an archive, a job folder, or a GDSII, Gerber or drill file."},
                   {"B", "The newer one, of the same kind."}});
    addChoiceOptions(parser);
    parser.option("picture",
                  "Draw the layers that differ: green is added, red removed, grey common. With several "
                  "layers \"-LAYER\" is put before the ending, which is .png.",
                  "file");
    addSizeOptions(parser);
    parser.option("json", "Write a line of JSON; - for the standard output.", "file");
    addWorkOptions(parser);
    if (!parser.parse(arguments, diffExamples, result))
        return;
    DiffArguments &values = result.diff;
    result.command = Arguments::Command::Diff;
    const QStringList operands = parser.operands();
    if (operands.size() != 2) {
        result.error = "diff: expected two jobs or two files";
        return;
    }
    values.first = operands[0];
    values.second = operands[1];
    // What is not there is an error of the comparison, whatever it would have been.
    const bool isFirstThere = QFileInfo::exists(values.first);
    values.areFiles = !isJob(isFirstThere ? values.first : values.second);
    if (isFirstThere && QFileInfo::exists(values.second) && isJob(values.second) == values.areFiles)
        result.error = "diff: expected two jobs or two files, found one of each";
    values.step = parser.text("step");
    values.layers = layerChoice(parser, result.error);
    values.picture = parser.text("picture");
    if (parser.isSet("picture") && !isPictureFile(values.picture, false))
        result.error = QString("--picture %1: expected a name that ends in .png").arg(values.picture);
    values.size = pictureSize(parser, result.error);
    values.json = jsonFile(parser, result.error);
    readWorkOptions(parser, values.threads, values.megabytes, result.error);
}

void parsePicture(const QStringList &arguments, Arguments &result)
{
    Parser parser("picture",
                  "Draws layers of a job over each other, in the colours of the Export dialog's table.",
                  {{"JOB", "An archive (.tgz) or an unpacked job folder."}});
    parser.option("out", "The picture: a name that ends in .png or .svg.", "file");
    parser.option("layer", "Layer to draw; several with commas between. (Those of the board otherwise.)",
                  "name");
    parser.option("step", "Step of the layers. (The job's first one otherwise.)", "name");
    parser.flag("mirror", "Mirror, x to -x: as it is seen from below.");
    addSizeOptions(parser);
    if (!parser.parse(arguments, pictureExamples, result))
        return;
    PictureArguments &values = result.picture;
    result.command = Arguments::Command::Picture;
    values.job = parser.operands().first();
    if (parser.operands().size() != 1)
        result.error = "picture: expected one job";
    values.file = parser.text("out");
    if (!isPictureFile(values.file, true))
        result.error = "expected --out, a file whose name ends in .png or .svg";
    values.step = parser.text("step");
    values.layers.names = parser.list("layer");
    values.layers.onlyBoard = true;
    if (parser.isSet("layer") && values.layers.names.isEmpty())
        result.error = "--layer: expected a name";
    values.mirror = parser.isSet("mirror");
    values.size = pictureSize(parser, result.error);
}

void parseInfo(const QStringList &arguments, Arguments &result)
{
    Parser parser("info",
                  "Shows the steps and layers of jobs, what the layers hold, and what of it cannot be drawn.",
                  {jobOperand});
    parser.flag("json", "Show it as a line of JSON for each job.");
    if (!parser.parse(arguments, infoExamples, result))
        return;
    result.command = Arguments::Command::Info;
    result.info.jobs = parser.operands();
    result.info.asJson = parser.isSet("json");
}

} // namespace

Arguments Arguments::parse(const QStringList &arguments)
{
    Arguments result;
    const QString command = arguments.value(1);
    if (command == "export")
        parseExport(arguments, result);
    else if (command == "verify")
        parseVerify(arguments, result);
    else if (command == "diff")
        parseDiff(arguments, result);
    else if (command == "picture")
        parsePicture(arguments, result);
    else if (command == "info")
        parseInfo(arguments, result);
    else if (command == "--version")
        result.text = "camconvert " FILE_PROCESS_VERSION "\n";
    else if (command == "--help" || command == "-h" || command == "help")
        result.text = programHelp;
    else if (command.isEmpty())
        result.error = "expected a command: export, verify, diff, picture or info";
    else
        result.error =
            QString("unknown command %1: expected export, verify, diff, picture or info").arg(command);
    return result;
}

} // namespace convert
