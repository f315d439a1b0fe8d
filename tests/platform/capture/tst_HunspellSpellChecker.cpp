// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/capture/HunspellSpellChecker.h"

#include <QTemporaryDir>
#include <QTest>
#include <QtConcurrent>

using namespace tolvane;

class TestHunspellSpellChecker : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void checksAndSuggestsEnglish()
    {
        HunspellSpellChecker checker;
        if (!checker.isLoaded())
            QSKIP("hunspell-en-us is not installed");
        QVERIFY(checker.isCorrect(QStringLiteral("house")));
        QVERIFY(checker.isCorrect(QStringLiteral("House")));
        QVERIFY(!checker.isCorrect(QStringLiteral("hause")));
        QVERIFY(checker.suggestions(QStringLiteral("hause")).contains(QStringLiteral("house")));
        QCOMPARE(checker.suggestions(QStringLiteral("recieve")).value(0), QStringLiteral("receive"));
        // Non-Latin text neither crashes nor counts as English.
        QVERIFY(!checker.isCorrect(QStringLiteral("дом")));
        QVERIFY(checker.isCorrect(QString()));
    }

    void sharedBetweenThreads()
    {
        HunspellSpellChecker checker;
        if (!checker.isLoaded())
            QSKIP("hunspell-en-us is not installed");
        const QStringList words{QStringLiteral("qiuck"), QStringLiteral("borwn"), QStringLiteral("jumsp"),
                                QStringLiteral("lazzy")};
        const QList<QStringList> answers =
            QtConcurrent::blockingMapped(words, [&](const QString& w) { return checker.suggestions(w); });
        for (qsizetype i = 0; i < answers.size(); ++i)
            QVERIFY2(!answers[i].isEmpty(), qPrintable(words[i]));
    }

    void missingDictionaryAcceptsEverything()
    {
        QTemporaryDir empty;
        HunspellSpellChecker checker(empty.path());
        QVERIFY(!checker.isLoaded());
        QVERIFY(checker.isCorrect(QStringLiteral("hause")));
        QVERIFY(checker.suggestions(QStringLiteral("hause")).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestHunspellSpellChecker)
#include "tst_HunspellSpellChecker.moc"
