// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/translation/DirectionDetection.h"
#include "platform/linux/language/LanguageModel.h"
#include "platform/linux/language/LanguageModelRecognizer.h"

#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <thread>
#include <vector>

using namespace tolvane;

class TestLanguageModelRecognizer : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase()
    {
        m_directory = LanguageModelRecognizer::defaultModelDirectory();
        QVERIFY2(!m_directory.isEmpty(), "the language models are built with the project");
    }

    void sentencesAndWordsGoToTheirLanguage_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("isTarget");
        const std::tuple<const char*, const char*, const char*, bool> rows[] = {
            {"French sentence", "fr", "Nous avons mangé une pomme au marché ce matin.", true},
            {"German sentence", "de", "Wir haben heute Morgen einen Apfel gekauft.", true},
            {"Spanish sentence", "es", "Mañana vamos a comprar pan en la tienda.", true},
            {"Russian sentence", "ru", "Завтра мы пойдём в магазин за хлебом.", true},
            {"English sentence, French target", "fr", "We bought an apple at the market.", false},
            {"inflected German noun", "de", "Häuser", true},
            {"French verb form", "fr", "mangeaient", true},
            {"missing accents", "fr", "eglise", true},
            {"English word, Spanish target", "es", "breakfast", false},
            {"misread English word", "de", "rnoming", false},
        };
        for (const auto& [name, target, text, isTarget] : rows)
            QTest::newRow(name) << QString::fromUtf8(target) << QString::fromUtf8(text) << isTarget;
    }

    void sentencesAndWordsGoToTheirLanguage()
    {
        QFETCH(QString, target);
        QFETCH(QString, text);
        QFETCH(bool, isTarget);
        LanguageModelRecognizer recognizer(m_directory);
        const LanguageHypotheses answer = recognizer.recognize(text, {QStringLiteral("en"), target});
        const double p = answer.probability.value(target);
        QVERIFY2(isTarget ? p >= 0.6 : p < 0.6, qPrintable(QStringLiteral("p(%1)=%2").arg(target).arg(p)));
        QVERIFY(qAbs(answer.probability.value(QStringLiteral("en")) + p - 1.0) < 1e-6);
        QCOMPARE(detectDirection(text, target, recognizer),
                 isTarget ? DetectedDirection::targetToEnglish : DetectedDirection::englishToTarget);
    }

    void wordsSpelledAlikeAbstain()
    {
        LanguageModelRecognizer recognizer(m_directory);
        for (const QString& target : QStringList{"fr", "de", "it", "es", "pt"}) {
            for (const QString& word : QStringList{"hotel", "piano", "radio", "taxi"}) {
                const double p = recognizer.recognize(word, {QStringLiteral("en"), target}).probability.value(target);
                QVERIFY2(p < 0.6, qPrintable(QStringLiteral("%1 as %2: %3").arg(word, target).arg(p)));
            }
        }
    }

    void scriptsDecideAmongNineLanguages_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        const std::tuple<const char*, const char*, const char*> rows[] = {
            {"kana", "ありがとうございます", "ja"},
            {"kanji with kana", "図書館に行きます", "ja"},
            {"Han only", "图书馆", "zh-Hans"},
            {"Hangul", "도서관에 갑니다", "ko"},
            {"Spanish", "la biblioteca está cerrada hoy", "es"},
        };
        for (const auto& [name, text, expected] : rows)
            QTest::newRow(name) << QString::fromUtf8(text) << QString::fromUtf8(expected);
    }

    void scriptsDecideAmongNineLanguages()
    {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        LanguageModelRecognizer recognizer(m_directory);
        const QStringList nine = {"zh-Hans", "fr", "de", "it", "ja", "ko", "pt", "ru", "es"};
        QCOMPARE(recognizer.recognize(text, nine).dominant, expected);
    }

    void hostileInputStaysEnglishAndBounded()
    {
        LanguageModelRecognizer recognizer(m_directory);
        const QStringList pair = {QStringLiteral("en"), QStringLiteral("fr")};
        QCOMPARE(recognizer.recognize(QString(), pair).dominant, QString());
        QCOMPARE(recognizer.recognize(QStringLiteral(" \n\t "), pair).dominant, QString());
        QCOMPARE(recognizer.recognize(QStringLiteral("😀🎉 12:30"), pair).dominant, QString());
        QCOMPARE(recognizer.recognize(QStringLiteral("hotel"), {}).dominant, QString());
        const QString invalid = QString::fromUtf8("\xff\xfe\xc3 caf\xc3");
        QCOMPARE(detectDirection(invalid, QStringLiteral("fr"), recognizer), DetectedDirection::englishToTarget);
        // A megabyte of French is judged on its beginning and still answers.
        const QString paragraph =
            QStringLiteral("Le chat dort sur le canapé pendant que nous travaillons. ").repeated(20000);
        QCOMPARE(recognizer.recognize(paragraph, pair).dominant, QStringLiteral("fr"));
        // Mixed scripts: the Cyrillic majority wins for Russian.
        QCOMPARE(recognizer.recognize(QStringLiteral("Привет, как дела? ok"), {"en", "ru"}).dominant,
                 QStringLiteral("ru"));
    }

    void threadsCanShareOneRecognizer()
    {
        // The first calls load the models, all at once from several threads.
        LanguageModelRecognizer recognizer(m_directory);
        const QStringList targets = {"fr", "de", "es", "it"};
        const QStringList sentences = {"Le chien dort dans la cuisine.", "Der Hund schläft in der Küche.",
                                       "El perro duerme en la cocina.", "Il cane dorme in cucina."};
        std::atomic<int> wrong = 0;
        std::vector<std::thread> threads;
        for (int t = 0; t < 4; ++t) {
            threads.emplace_back([&, t] {
                for (int round = 0; round < 50; ++round) {
                    const QString& target = targets[(t + round) % 4];
                    const QString& sentence = sentences[(t + round) % 4];
                    if (recognizer.recognize(sentence, {"en", target}).dominant != target)
                        ++wrong;
                }
            });
        }
        for (std::thread& thread : threads)
            thread.join();
        QCOMPARE(wrong.load(), 0);
    }

    void missingOrDamagedModelsDegradeWithoutCrashing()
    {
        QTemporaryDir empty;
        LanguageModelRecognizer withoutModels(empty.path());
        const LanguageHypotheses answer = withoutModels.recognize(QStringLiteral("bonjour"), {"en", "fr"});
        QVERIFY(answer.probability.value(QStringLiteral("fr")) < 0.6);

        // Noise, and a real model cut short.
        QFile original(m_directory + QStringLiteral("/de.langmodel"));
        QVERIFY(original.open(QIODevice::ReadOnly));
        for (const QByteArray& content : {QByteArray(4096, 'x'), original.read(100000)}) {
            QFile damaged(empty.filePath(QStringLiteral("fr.langmodel")));
            QVERIFY(damaged.open(QIODevice::WriteOnly | QIODevice::Truncate));
            damaged.write(content);
            damaged.close();
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("Not a language model")));
            QVERIFY(!LanguageModel::open(damaged.fileName()));
        }
    }

private:
    QString m_directory;
};

QTEST_GUILESS_MAIN(TestLanguageModelRecognizer)
#include "tst_LanguageModelRecognizer.moc"
