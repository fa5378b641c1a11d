#include "workbench/manual.h"

#include <QFile>
#include <QImage>
#include <QKeyEvent>
#include <QTextDocument>
#include <QVBoxLayout>
#if QT_CONFIG(textbrowser)
#include <QTextBrowser>
#else
#include <QPlainTextEdit>
#endif

// The guide lies in a static library, from which only what is called gets into a program.
static void initManual()
{
    Q_INIT_RESOURCE(manual);
}

#if QT_CONFIG(textbrowser)
namespace {

// The guide's pictures are as wide as the windows that they show, and often wider than this one.
class Browser : public QTextBrowser
{
public:
    using QTextBrowser::setSource;
    // Some links lead to what only the sources of the program have.
    void setSource(const QUrl &name) override
    {
        if (name.scheme() != "qrc" || QFile::exists(':' + name.path()))
            QTextBrowser::setSource(name);
    }
    QVariant loadResource(int type, const QUrl &name) override
    {
        const QVariant resource = QTextBrowser::loadResource(type, name);
        if (type != QTextDocument::ImageResource)
            return resource;
        QImage image = QImage::fromData(resource.toByteArray());
        const int room = viewport()->width() - 40;
        return image.width() > room && room > 0 ? image.scaledToWidth(room, Qt::SmoothTransformation) : image;
    }
};

} // namespace
#endif

Manual::Manual(QWidget *parent) : QWidget(parent, Qt::Window)
{
    initManual();
    setObjectName("Manual");
    setWindowTitle(tr("User guide"));
    setAttribute(Qt::WA_DeleteOnClose);
    resize(900, 700);
#if QT_CONFIG(textbrowser)
    auto *browser = new Browser;
    browser->setOpenExternalLinks(true);
    browser->resize(size());
    browser->setSource(QUrl("qrc:/manual/user-guide.md"));
#else // a Qt without it: the guide as it was written, which is plain enough
    auto *browser = new QPlainTextEdit;
    browser->setReadOnly(true);
    QFile guide(":/manual/user-guide.md");
    if (guide.open(QIODevice::ReadOnly))
        browser->setPlainText(QString::fromUtf8(guide.readAll()));
#endif
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(browser);
}

void Manual::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QWidget::keyPressEvent(event);
}

void Manual::open(QWidget *parent)
{
    auto *manual = parent->findChild<Manual *>();
    if (!manual)
        manual = new Manual(parent);
    manual->show();
    manual->raise();
    manual->activateWindow();
}
