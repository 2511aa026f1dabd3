// The program itself, started as a process: the version and the drawing of a document
// into a PNG where no display is available.

#include "AppTestSupport.h"

#include "support/TempDir.h"

#include <QImage>
#include <QProcess>
#include <QtTest>

using namespace ba;
using namespace ba::test;

namespace {

struct RunResult {
    int exitCode = -1;
    QString out;
    QString err;
};

RunResult Run(const QStringList& arguments)
{
    QProcess process;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    process.setProcessEnvironment(env);
    process.start(QStringLiteral(BA_APP_EXE), arguments);
    if (!process.waitForFinished(60000)) return {};
    return {process.exitCode(), QString::fromLocal8Bit(process.readAllStandardOutput()),
            QString::fromLocal8Bit(process.readAllStandardError())};
}

} // namespace

class StartUpTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { PrepareApplicationForTests(); }

    void versionNamesTheProjectVersion()
    {
        const RunResult run = Run({QStringLiteral("--version")});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.out.trimmed(), QStringLiteral("BoreAnalyst " BA_VERSION));
    }

    void demoPngDrawsTheNamedDocument()
    {
        TempDir dir;
        auto doc = MakeTwoTraceDocument();
        CollectingMessageSink sink;
        QCOMPARE(doc->OnSaveDocument(dir.Path("demo.bal"), sink), SaveOutcome::Written);
        const QString png = ToQString(dir.Path("demo.png"));
        const RunResult run = Run({QStringLiteral("--demo-png"), png, ToQString(dir.Path("demo.bal"))});
        QVERIFY2(run.exitCode == 0, qPrintable(run.err));
        QVERIFY(run.out.startsWith(QStringLiteral("No display available")));
        const QImage image(png);
        QCOMPARE(image.size(), QSize(850, 1100));
        // Not a blank page: the plot drew something besides the background.
        const QRgb background = image.pixel(image.width() - 1, image.height() - 1);
        int drawn = 0;
        for (int y = 0; y < image.height(); y += 2) {
            for (int x = 0; x < image.width(); x += 2) drawn += image.pixel(x, y) != background ? 1 : 0;
        }
        QVERIFY(drawn > 100);
    }

    void demoPngOfAnUnreadableFileFails()
    {
        TempDir dir;
        dir.Write("bad.bal", "garbage");
        const QString png = ToQString(dir.Path("bad.png"));
        const RunResult run = Run({QStringLiteral("--demo-png"), png, ToQString(dir.Path("bad.bal"))});
        QCOMPARE(run.exitCode, 1);
        QVERIFY(run.err.contains(QStringLiteral("bad.bal")));
        QVERIFY(!QFile::exists(png));
    }

    void withoutADisplayTheWindowlessStartSaysSo()
    {
        const RunResult run = Run({});
        QCOMPARE(run.exitCode, 1);
        QVERIFY2(run.err.contains(QStringLiteral("No display available")), qPrintable(run.err));
    }
};

QTEST_MAIN(StartUpTest)
#include "StartUpTest.moc"
