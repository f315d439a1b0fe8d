// SPDX-License-Identifier: GPL-3.0-or-later
// Passages through long-running Apertium pipelines: the text survives the stream format, one
// pipeline serves many passages, and a pipeline that died is started again.
#include "platform/linux/translation/ApertiumPassageTranslator.h"

#include <QTest>
#include <csignal>

using namespace tolvane;

class TestApertiumPipeline : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void plainTextSurvivesTheStreamFormat_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("reserved characters") << "a [b] ^c$ d/e <f> {g} @h *i #j +k ~l \\m";
        QTest::newRow("line breaks") << "one\ntwo";
        QTest::newRow("right-to-left and combining marks") << "\u202Eabc\u202C e\u0301";
    }
    void plainTextSurvivesTheStreamFormat()
    {
        QFETCH(QString, text);
        const QByteArray stream = ApertiumPassageTranslator::toStream(text);
        QVERIFY(!stream.contains('\0'));
        QVERIFY(stream.endsWith("[]"));
        QCOMPARE(ApertiumPassageTranslator::fromStream(stream), text);
    }

    void everyProgramOfAModeFlushesOnNul()
    {
        QCOMPARE(ApertiumPassageTranslator::nullFlushCommand(
                     QStringLiteral("lt-proc 'a.bin' | apertium-tagger -g $2 'p.prob' | lt-proc $1 'g.bin'\n")),
                 QStringLiteral("lt-proc -z 'a.bin' | apertium-tagger -z -g  'p.prob' | lt-proc -z -n 'g.bin'"));
        QVERIFY(ApertiumPassageTranslator::nullFlushCommand(QStringLiteral("a\nb")).isEmpty());
    }

    void passagesShareOnePipelineWhichComesBackAfterDying()
    {
        if (!ApertiumPassageTranslator::isAvailable(QStringLiteral("en"), QStringLiteral("es")))
            QSKIP("Apertium's English-Spanish pair is not installed");
        const auto translate = [](const QString& text) {
            return ApertiumPassageTranslator::translate(text, QStringLiteral("en"), QStringLiteral("es"))
                .value_or(QStringLiteral("<none>"));
        };
        QCOMPARE(translate(QStringLiteral("The house is small.")), QStringLiteral("La casa es pequeña."));
        QCOMPARE(translate(QStringLiteral("The garden.")), QStringLiteral("El jardín."));
        // Every program of the pipeline killed: the next passage starts it again.
        const QList<qint64> groups = ApertiumPassageTranslator::runningProcessGroups();
        QCOMPARE(groups.size(), 1);
        ::kill(-pid_t(groups.first()), SIGKILL);
        QCOMPARE(translate(QStringLiteral("The house is small.")), QStringLiteral("La casa es pequeña."));
        ApertiumPassageTranslator::stopAll();
    }
};

QTEST_GUILESS_MAIN(TestApertiumPipeline)
#include "tst_ApertiumPipeline.moc"
