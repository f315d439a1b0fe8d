// SPDX-License-Identifier: GPL-3.0-or-later
// `tolvane translate`, run as a user would run it, against small dictionaries of the test's own.
#include "TestDictionaries.h"
#include "platform/linux/translation/ApertiumPassageTranslator.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace tolvane;
using namespace tolvane::testing;

class TestTranslateCommand final : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_home;

    struct Run
    {
        int exitCode = -1;
        QString out;
        QString err;
    };

    Run translate(const QStringList& arguments)
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("TOLVANE_DICTIONARY_DIR"), m_home.filePath(QStringLiteral("dictionaries")));
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), m_home.filePath(QStringLiteral("config")));
        environment.insert(QStringLiteral("XDG_DATA_HOME"), m_home.filePath(QStringLiteral("data")));
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(TOLVANE_BINARY_DIR "/src/tolvane"),
                      QStringList{QStringLiteral("translate")} + arguments);
        Run run;
        if (!process.waitForFinished(30000))
            return run;
        run.exitCode = process.exitCode();
        run.out = QString::fromUtf8(process.readAllStandardOutput());
        run.err = QString::fromUtf8(process.readAllStandardError());
        return run;
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_home.isValid());
        QVERIFY(QDir().mkpath(m_home.filePath(QStringLiteral("dictionaries"))));
        QVERIFY(writeFile(
            m_home.filePath(QStringLiteral("dictionaries/en-ru.tdict")),
            buildDictionary({{"go", "n\tго\nv\tидти|ходить"}, {"went", ">go\tv"}, {"house", "n\tдом|здание"}})));
    }

    void printsTheCardsTranslationOnOneLine()
    {
        const Run run = translate({QStringLiteral("--from"), QStringLiteral("en"), QStringLiteral("--to"),
                                   QStringLiteral("ru"), QStringLiteral("house")});
        QCOMPARE(run.exitCode, 0);
        QCOMPARE(run.out, QStringLiteral("дом, здание\n"));
    }

    void failuresSayWhatIsWrong()
    {
        Run run = translate({QStringLiteral("--to"), QStringLiteral("ko"), QStringLiteral("house")});
        QCOMPARE(run.exitCode, 1);
        QCOMPARE(run.err.trimmed(),
                 QStringLiteral("The English → Korean dictionary is not installed. Run scripts/setup."));
        run = translate({QStringLiteral("--to"), QStringLiteral("ru")});
        QCOMPARE(run.exitCode, 2);
        QVERIFY(run.err.contains(QLatin1String("nothing to translate")));
    }

    void apertiumRoutesGoThroughSpanish()
    {
        QCOMPARE(ApertiumPassageTranslator::route(QStringLiteral("en"), QStringLiteral("es")),
                 QStringList{QStringLiteral("eng-spa")});
        QCOMPARE(ApertiumPassageTranslator::route(QStringLiteral("fr"), QStringLiteral("en")),
                 (QStringList{QStringLiteral("fr-es"), QStringLiteral("spa-eng")}));
        QCOMPARE(ApertiumPassageTranslator::route(QStringLiteral("en"), QStringLiteral("pt")),
                 (QStringList{QStringLiteral("eng-spa"), QStringLiteral("es-pt_BR")}));
        QVERIFY(ApertiumPassageTranslator::route(QStringLiteral("en"), QStringLiteral("ru")).isEmpty());
        QVERIFY(ApertiumPassageTranslator::route(QStringLiteral("fr"), QStringLiteral("es")).isEmpty());
        QVERIFY(
            !ApertiumPassageTranslator::translate(QStringLiteral("Hello"), QStringLiteral("en"), QStringLiteral("ru")));
    }
};

QTEST_GUILESS_MAIN(TestTranslateCommand)
#include "tst_TranslateCommand.moc"
