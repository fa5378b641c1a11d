// Measures the view: how long the first picture of a layer takes, how long frames take while the view is
// panned and zoomed, how much memory that is, and how long it takes until a step can be searched. One process
// a layer; scripts/bench.sh view runs it.
//
//   viewbench JOB STEP LAYER               the job's folder
//   viewbench panel WORK JOB STEP LAYER    writes WORK/panel: a million features, the layer again and again
#include "bench/export/panel.h"
#include "drawing/layerscene.h"
#include "workbench/search/searchpanel.h"
#include "workbench/view/boardview.h"
#include "workbench/view/scenestore.h"
#include "workbench/view/stepsource.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTimer>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <functional>
#include <memory>
#include <vector>

namespace {

// Of this process, in MB of 1e6 bytes; 0 where the system does not say.
double megabytes(const char *name)
{
    QFile file("/proc/self/status");
    if (!file.open(QIODevice::ReadOnly))
        return 0.0;
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith(name))
            return line.mid(int(qstrlen(name))).simplified().split(' ').value(0).toDouble() * 1024 / 1e6;
    }
    return 0.0;
}

// Paints what the view shows now, as the window system would; returns milliseconds.
double frame(BoardView &view)
{
    QElapsedTimer timer;
    timer.start();
    view.repaint();
    QCoreApplication::processEvents();
    return double(timer.nsecsElapsed()) / 1e6;
}

// Sleeps between events: with a limit of time processEvents() spins, and takes a core from what is measured.
void waitFor(const std::function<bool()> &isDone)
{
    while (!isDone())
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

void print(const char *what, std::vector<double> times)
{
    std::sort(times.begin(), times.end());
    std::printf("%s: median %.1f ms, 95 of 100 within %.1f ms, worst %.1f ms (%zu frames)\n", what,
                times[times.size() / 2], times[times.size() * 95 / 100], times.back(), times.size());
}

// How long the event loop stands still while this lives: what a user would feel.
class Pulse
{
public:
    Pulse()
    {
        QObject::connect(&m_tick, &QTimer::timeout, [this] {
            m_longest = std::max(m_longest, double(m_sinceTick.nsecsElapsed()) / 1e6);
            m_sinceTick.start();
        });
        m_sinceTick.start();
        m_tick.start(5);
    }
    double longest() const { return m_longest; } // milliseconds

private:
    QTimer m_tick;
    QElapsedTimer m_sinceTick;
    double m_longest = 0.0;
};

// From Ctrl+F until the step can be searched, and what it takes to list what a letter is in.
void searchStep(const std::shared_ptr<StepSource> &source)
{
    const double before = megabytes("VmRSS:");
    const double processorBefore = double(std::clock()) / CLOCKS_PER_SEC;
    SearchPanel panel;
    panel.resize(300, 700);
    QElapsedTimer timer;
    timer.start();
    {
        const Pulse pulse;
        panel.setSource(source);
        panel.show();
        panel.start();
        waitFor([&] { return !panel.isReading(); });
        std::printf("search: ready after %.2f s, %.2f s of processor time; the user interface held for %.0f "
                    "ms at most; %.0f MB more\n",
                    double(timer.elapsed()) / 1e3, double(std::clock()) / CLOCKS_PER_SEC - processorBefore,
                    pulse.longest(), megabytes("VmRSS:") - before);
    }
    const Pulse pulse;
    auto *line = panel.findChild<QLineEdit *>();
    for (const char letter : {'r', '1', '0', '*'}) {
        QKeyEvent key(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, QString(QChar(letter)));
        QCoreApplication::sendEvent(line, &key);
        timer.start();
        waitFor([&] { return timer.elapsed() > 400; }); // longer than the pause before the list changes
    }
    std::printf("search: typing holds the user interface for %.0f ms at most\n", pulse.longest());
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    if (argc == 6 && qstrcmp(argv[1], "panel") == 0) {
        const std::size_t count =
            bench::writeFlatPanel({argv[3], argv[4], argv[5]}, std::string(argv[2]) + "/panel", 1000000);
        std::printf("%zu features\n", count);
        return 0;
    }
    if (argc != 4) {
        std::fprintf(stderr, "usage: viewbench JOB STEP LAYER\n"
                             "       viewbench panel WORK JOB STEP LAYER\n");
        return 2;
    }
    BoardView view;
    view.resize(1240, 780);
    view.show();
    QCoreApplication::processEvents();
    const double before = megabytes("VmRSS:");

    QElapsedTimer timer;
    timer.start();
    auto pulse = std::make_unique<Pulse>();
    SceneStore store;
    ViewRow row;
    row.name = argv[3];
    row.color = QColor(255, 215, 0);
    const auto source = std::make_shared<StepSource>(argv[1], argv[2]);
    store.setStep(argv[1], argv[2], source);
    store.want({row});
    waitFor([&] { return !store.isBusy(); });
    const std::shared_ptr<const drawing::Scene> scene = store.scene(row);
    if (!scene) {
        std::fprintf(stderr, "the layer cannot be read\n");
        return 1;
    }
    const double read = double(timer.elapsed());
    std::printf("read: %.2f s of processor time\n", double(std::clock()) / CLOCKS_PER_SEC);
    view.setFrame(scene->extent(), true);
    view.setScenes({{scene, row.color, 1.0}});
    waitFor([&] { return view.isDrawn(); });
    frame(view);
    const double held = pulse->longest();
    pulse.reset();
    std::printf(
        "first picture: %.2f s, of these reading %.2f s; %.2f s of processor time; the user interface "
        "held for %.0f ms at most\n",
        double(timer.elapsed()) / 1e3, read / 1e3, double(std::clock()) / CLOCKS_PER_SEC, held);

    std::vector<double> panning, zooming;
    const drawing::Viewport start = view.viewport();
    view.setViewport(start.center, start.pixel / 4);
    waitFor([&] { return view.isDrawn(); });
    for (int i = 0; i < 200; ++i) { // to and fro, twelve pixels a frame
        const double away = (i % 100 < 50 ? i % 50 : 50 - i % 50) * 12.0 * start.pixel / 4;
        view.setViewport({start.center.x + away, start.center.y + away / 2}, start.pixel / 4);
        panning.push_back(frame(view));
    }
    for (int i = 0; i < 100; ++i) {
        view.setViewport(start.center, start.pixel / std::pow(1.1, i % 50));
        zooming.push_back(frame(view));
    }
    print("panning", panning);
    print("zooming", zooming);
    const auto features =
        dynamic_cast<const drawing::LayerScene &>(*scene).image().top().features.order.size();
    std::printf("memory: %.0f MB with %zu features, %.0f MB before; most %.0f MB\n", megabytes("VmRSS:"),
                features, before, megabytes("VmHWM:"));
    searchStep(source);
    return 0;
}
