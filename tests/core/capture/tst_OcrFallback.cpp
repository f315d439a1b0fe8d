// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/capture/OcrFallback.h"
#include "fakes/FakePlatform.h"
#include "fakes/FakeScheduler.h"

#include <QTest>
#include <QThread>

using namespace tolvane;

namespace {

// A line of words laid out left to right, 60 points apart, on a row of the 600 × 72 strip.
RecognizedLine lineOf(const QStringList& words, double y, double firstX = 0)
{
    RecognizedLine line;
    line.text = words.join(QLatin1Char(' '));
    line.box = QRectF(firstX, y, 60.0 * double(words.size()), 12);
    for (qsizetype i = 0; i < words.size(); ++i)
        line.words.append({words[i], QRectF(firstX + 60.0 * double(i), y, 50, 12)});
    return line;
}

RecognizedText textOf(QList<RecognizedLine> lines)
{
    return RecognizedText{std::move(lines), QRectF(0, 0, 600, 72)};
}

LanguageHypotheses hypotheses(double english, std::optional<double> target)
{
    LanguageHypotheses h;
    h.probability.insert(QStringLiteral("en"), english);
    if (target)
        h.probability.insert(QStringLiteral("ru"), *target);
    return h;
}

} // namespace

class TestOcrFallback : public QObject
{
    Q_OBJECT
private:
    FakeScreenTextRecognizer m_recognizer;
    FakeLanguageRecognizer m_languages;
    FakeSpellChecker m_spelling;
    FakeScheduler m_scheduler;
    QList<Task> m_background;
    std::unique_ptr<OcrFallback> m_fallback;

private Q_SLOTS:
    void init()
    {
        m_recognizer = FakeScreenTextRecognizer();
        m_languages.answers.clear();
        m_spelling.knownWords = {QStringLiteral("house"), QStringLiteral("quick"), QStringLiteral("fox")};
        m_spelling.suggestionTable.clear();
        m_spelling.suggestionCalls = 0;
        m_background.clear();
        m_fallback = std::make_unique<OcrFallback>(m_recognizer, m_languages, m_spelling, m_scheduler,
                                                   [this](Task task) { m_background.append(std::move(task)); });
    }

    void stripIsSnappedAroundThePointer()
    {
        const QRectF strip = OcrFallback::captureStrip({1003.7, 500.2});
        QCOMPARE(strip, QRectF(700, 468, 600, 72));
        QCOMPARE(OcrFallback::captureStrip({1001, 503}), strip);
        QCOMPARE(OcrFallback::captureStrip({4.1, -4.1}), QRectF(-292, -44, 600, 72));
    }

    void nearestWordToThePointer()
    {
        // The centre (300, 36) sits between "quick" (270–320) and nothing else on its row; a
        // word just above it on the next line is nearer in points but further in the strip's
        // unit square, where a row of 72 points weighs as much as 600 points across.
        const RecognizedLine above = lineOf({QStringLiteral("menu"), QStringLiteral("bar")}, 46, 270);
        const RecognizedLine middle =
            lineOf({QStringLiteral("The"), QStringLiteral("quick,"), QStringLiteral("brown")}, 30, 210);
        auto nearest = OcrFallback::nearestWord(textOf({above, middle}));
        QVERIFY(nearest);
        QCOMPARE(nearest->word, QStringLiteral("quick"));
        QCOMPARE(nearest->line, QStringLiteral("The quick, brown"));

        // Equally near: the first met wins, in line order and then word order.
        RecognizedLine left = lineOf({QStringLiteral("left")}, 30, 237.5);
        RecognizedLine right = lineOf({QStringLiteral("right")}, 30, 312.5);
        nearest = OcrFallback::nearestWord(textOf({left, right}));
        QCOMPARE(nearest->word, QStringLiteral("left"));
        nearest = OcrFallback::nearestWord(textOf({right, left}));
        QCOMPARE(nearest->word, QStringLiteral("right"));

        // A word without a box of its own stands where its line does.
        RecognizedLine boxless = lineOf({QStringLiteral("far"), QStringLiteral("away")}, 30, 0);
        boxless.words[1].box = QRectF();
        boxless.box = QRectF(280, 30, 40, 12);
        QCOMPARE(OcrFallback::nearestWord(textOf({boxless}))->word, QStringLiteral("away"));

        QVERIFY(!OcrFallback::nearestWord(textOf({lineOf({QStringLiteral("—")}, 30, 275)})));
        QVERIFY(!OcrFallback::nearestWord(textOf({})));
        RecognizedLine blank;
        blank.text = QStringLiteral("  ");
        QVERIFY(!OcrFallback::nearestWord(textOf({blank})));
    }

    void spellingCorrection_data()
    {
        QTest::addColumn<QString>("word");
        QTest::addColumn<QString>("suggestion");
        QTest::addColumn<double>("english");
        QTest::addColumn<std::optional<double>>("target");
        QTest::addColumn<bool>("corrected");
        const std::optional<double> none;
        QTest::newRow("one edit") << QStringLiteral("hause") << "house" << 1.0 << std::optional(0.0) << true;
        QTest::newRow("two edits exactly") << QStringLiteral("hauze") << "house" << 1.0 << none << true;
        QTest::newRow("three edits") << QStringLiteral("haxzs") << "house" << 1.0 << none << false;
        QTest::newRow("case only") << QStringLiteral("HOUSE") << "House" << 1.0 << none << false;
        QTest::newRow("no suggestion") << QStringLiteral("qwrtz") << "" << 1.0 << none << false;
        QTest::newRow("not English enough")
            << QStringLiteral("hause") << "house" << 0.59 << std::optional(0.41) << false;
        QTest::newRow("target as likely") << QStringLiteral("hause") << "house" << 0.6 << std::optional(0.6) << false;
        QTest::newRow("target less likely") << QStringLiteral("hause") << "house" << 0.6 << std::optional(0.4) << true;
    }
    void spellingCorrection()
    {
        QFETCH(QString, word);
        QFETCH(QString, suggestion);
        QFETCH(double, english);
        QFETCH(std::optional<double>, target);
        QFETCH(bool, corrected);
        m_languages.answers.insert(word, hypotheses(english, target));
        if (!suggestion.isEmpty())
            m_spelling.suggestionTable.insert(word, {suggestion, QStringLiteral("hose")});
        QCOMPARE(m_fallback->spellCorrected(word, QStringLiteral("ru")), corrected ? suggestion : word);
        QCOMPARE(m_languages.queries.last().second, QStringList({QStringLiteral("en"), QStringLiteral("ru")}));
    }

    void recognizeWordCompletesOnceOnTheMainThread()
    {
        QList<QPair<std::optional<QString>, std::optional<QString>>> calls;
        m_fallback->recognizeWord({1003.7, 500.2}, QStringLiteral("de"),
                                  [&](std::optional<QString> word, std::optional<QString> line) {
                                      calls.append({word, line});
                                  });
        QCOMPARE(m_recognizer.requests.size(), 1);
        QCOMPARE(m_recognizer.requests[0].first, QRectF(700, 468, 600, 72));
        QCOMPARE(m_recognizer.requests[0].second, QStringList({QStringLiteral("en-US"), QStringLiteral("de-DE")}));

        // The recogniser answers from its worker; nothing reaches the caller until the main
        // thread runs its tasks, and then only once, however often the recogniser answers.
        m_spelling.suggestionTable.insert(QStringLiteral("qiuck"), {QStringLiteral("quick")});
        const RecognizedText seen =
            textOf({lineOf({QStringLiteral("The"), QStringLiteral("qiuck"), QStringLiteral("fox.")}, 30, 210)});
        QThread* worker = QThread::create([&] {
            m_recognizer.answer(0, seen);
            m_recognizer.answer(0, seen);
        });
        worker->start();
        worker->wait();
        delete worker;
        QVERIFY(calls.isEmpty());
        m_scheduler.runPosted();
        QVERIFY(calls.isEmpty()); // the misspelt word waits for its suggestions
        QCOMPARE(m_background.size(), 2);
        for (const Task& task : std::as_const(m_background))
            task();
        m_scheduler.runPosted();
        QCOMPARE(calls.size(), 1);
        QCOMPARE(calls[0].first, QStringLiteral("quick"));
        QCOMPARE(calls[0].second, QStringLiteral("The qiuck fox."));
    }

    void recognitionFailuresCompleteWithNothing()
    {
        int calls = 0;
        std::optional<QString> word = QStringLiteral("unset");
        auto completion = [&](std::optional<QString> w, std::optional<QString> line) {
            ++calls;
            word = w;
            QVERIFY(!line);
        };
        m_fallback->recognizeWord({10, 10}, QStringLiteral("ru"), completion);
        m_recognizer.answer(0, Error{QStringLiteral("capture failed")});
        m_fallback->recognizeWord({10, 10}, QStringLiteral("ru"), completion);
        m_recognizer.answer(1, textOf({lineOf({QStringLiteral("(…)")}, 30, 275)}));
        m_scheduler.runPosted();
        QCOMPARE(calls, 2);
        QCOMPARE(word, std::nullopt);
        QCOMPARE(m_spelling.suggestionCalls, 0);
    }

    void knownWordsCompleteWithoutWaiting()
    {
        std::optional<QString> word;
        m_fallback->recognizeWord({10, 10}, QStringLiteral("ru"),
                                  [&](std::optional<QString> w, std::optional<QString>) { word = w; });
        m_recognizer.answer(0, textOf({lineOf({QStringLiteral("«fox»")}, 30, 275)}));
        m_scheduler.runPosted();
        QCOMPARE(word, QStringLiteral("fox"));
        QVERIFY(m_background.isEmpty());
        QCOMPARE(m_spelling.suggestionCalls, 0);
    }
};

QTEST_GUILESS_MAIN(TestOcrFallback)
#include "tst_OcrFallback.moc"
