#include "AppIcons.h"
#ifdef TENDMARK_TEST_HOOKS
#include "LoggedPrompts.h"
#endif
#include "PrivateFiles.h"
#include "Prompt.h"
#include "SingleInstance.h"
#include "WidgetPrompts.h"
#include "basRegistry.h"
#include "frmMain.h"

#include <QApplication>
#include <QCommandLineParser>

namespace {

// The start procedure: one copy per user, then the main window.
int Main(QApplication &app)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("TendMark: client records for food pantries."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("file"), QStringLiteral("The database file to open."));
    const QCommandLineOption demo(QStringLiteral("demo"), QStringLiteral("Open the demo database (created on first use)."));
    parser.addOption(demo);
    parser.process(app);
    const QStringList files = parser.positionalArguments();
    QString fileToOpen = files.isEmpty() ? QString() : files.constFirst();

    WidgetPrompts prompts;
#ifdef TENDMARK_TEST_HOOKS
    const QString promptLog = qEnvironmentVariable("TENDMARK_PROMPT_LOG");
    LoggedPrompts logged(promptLog);
    Prompt::setHandler(promptLog.isEmpty() ? static_cast<Prompt::Handler *>(&prompts) : &logged);
#else
    Prompt::setHandler(&prompts);
#endif

    SingleInstance instance(QStringLiteral("TendMark-") + basRegistry::GetUserName());
    if (instance.anotherIsRunning(files)) {
        Prompt::message(QStringLiteral("TendMark"), QStringLiteral("An instance of TendMark is already open."), Prompt::Icon::Exclamation,
                        Prompt::Ok);
        return 0;
    }
    instance.listen();

    frmMain window;
    QObject::connect(&instance, &SingleInstance::activated, &window, [&window](const QStringList &) {
        window.setWindowState((window.windowState() & ~Qt::WindowMinimized) | Qt::WindowActive);
        window.show();
        window.raise();
        window.activateWindow();
    });
    window.restoreWindowGeometry();
    window.show();
    if (parser.isSet(demo))
        fileToOpen = window.prepareDemoDatabase();
    window.startUp(fileToOpen);
    const int result = app.exec();
    Prompt::setHandler(nullptr);
    return result;
}

}   // namespace

int main(int argc, char *argv[])
{
    PrivateFiles::RestrictNewFiles();
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("TendMark"));
    QApplication::setOrganizationName(QStringLiteral("TendMark"));
    QApplication::setApplicationVersion(QStringLiteral(TENDMARK_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("tendmark"));
    QApplication::setWindowIcon(AppIcons::application());
    return Main(app);
}
