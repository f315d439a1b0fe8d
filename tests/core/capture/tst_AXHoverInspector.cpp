// SPDX-License-Identifier: GPL-3.0-or-later
// The word and the selection the accessibility tree gives.
#include "core/capture/AXHoverInspector.h"
#include "core/capture/SelectedText.h"
#include "fakes/FakePlatform.h"

#include <QTest>

using namespace tolvane;

Q_DECLARE_METATYPE(WordAtPositionResult)

namespace {

std::shared_ptr<FakeAccessibleElement> textElement(const QString& value, std::optional<qsizetype> location)
{
    auto element = std::make_shared<FakeAccessibleElement>();
    element->attributes.insert(QStringLiteral("AXValue"), value);
    if (location)
        element->range = TextRange{*location, 1};
    return element;
}

WordAtPositionResult word(const QString& w, std::optional<QString> sentence)
{
    return WordAtPositionResult::makeWord(w, std::move(sentence));
}

} // namespace

class TestAXHoverInspector : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void findsTheWordUnderThePointer_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<qsizetype>("location");
        QTest::addColumn<WordAtPositionResult>("expected");

        const QString hello = QStringLiteral("Hello, world!");
        const auto noText = WordAtPositionResult::makeNoText();
        // A word whose sentence is the whole text.
        const auto whole = [](const char* text, qsizetype location, const char* w) {
            QTest::newRow(text) << QString::fromUtf8(text) << location
                                << word(QString::fromUtf8(w), QString::fromUtf8(text));
        };
        QTest::newRow("inside a word, punctuation trimmed")
            << hello << qsizetype(9) << word(QStringLiteral("world"), hello);
        QTest::newRow("on the space after a word") << hello << qsizetype(6) << word(QStringLiteral("Hello"), hello);
        whole("Save", 0, "Save"); // location 0 in one word
        QTest::newRow("location 0 in two words")
            << QStringLiteral("Open file") << qsizetype(0)
            << WordAtPositionResult::makeRangeUnsupported(QStringLiteral("Open file"));
        QTest::newRow("location at the end") << hello << qsizetype(13) << noText;
        QTest::newRow("negative location") << hello << qsizetype(-1) << noText;
        QTest::newRow("a lone dash") << QStringLiteral("—") << qsizetype(0) << noText;
        QTest::newRow("punctuation between spaces") << QStringLiteral("yes - no") << qsizetype(4) << noText;
        QTest::newRow("line break stops the walk back")
            << QStringLiteral("a\nb") << qsizetype(2) << word(QStringLiteral("b"), QStringLiteral("b"));
        QTest::newRow("second sentence") << QStringLiteral("Hello, world! The quick brown fox jumps.") << qsizetype(19)
                                         << word(QStringLiteral("quick"), QStringLiteral("The quick brown fox jumps."));
        // Locations count user-perceived characters: the flag is one, though four code units.
        whole("🇫🇷 café crème", 3, "café");
        whole("10\u00a0km", 3, "km"); // a no-break space separates
        whole("say «(bonjour)» now", 7, "bonjour");
        whole("it's fine", 1, "it's");
    }
    void findsTheWordUnderThePointer()
    {
        QFETCH(QString, text);
        QFETCH(qsizetype, location);
        QFETCH(WordAtPositionResult, expected);
        const auto element = textElement(text, location);
        const WordAtPositionResult result = AXHoverInspector::wordAtPosition(*element, {10, 10});
        QCOMPARE(int(result.kind), int(expected.kind));
        QCOMPARE(result.word, expected.word);
        QCOMPARE(result.sentence, expected.sentence);
        QCOMPARE(result.fullText, expected.fullText);
    }

    void fallsBackThroughTheTextAttributes()
    {
        // An empty value does not count: the title is the text the location points into.
        auto element = textElement(QString(), 1);
        element->attributes.insert(QStringLiteral("AXTitle"), QStringLiteral("Save"));
        element->attributes.insert(QStringLiteral("AXDescription"), QStringLiteral("Writes the file"));
        QCOMPARE(AXHoverInspector::wordAtPosition(*element, {}), word(QStringLiteral("Save"), QStringLiteral("Save")));

        // Whitespace-only text counts as text at this step (no trimming), and has no word.
        auto blank = textElement(QStringLiteral("   "), 1);
        blank->attributes.insert(QStringLiteral("AXTitle"), QStringLiteral("Save"));
        QCOMPARE(AXHoverInspector::wordAtPosition(*blank, {}), WordAtPositionResult::makeNoText());

        auto none = textElement(QString(), 0);
        QCOMPARE(AXHoverInspector::wordAtPosition(*none, {}), WordAtPositionResult::makeNoText());
    }

    void elementsThatCannotPlaceThePointer()
    {
        auto button = std::make_shared<FakeAccessibleElement>();
        button->rangeRejected = true;
        button->attributes.insert(QStringLiteral("AXValue"), QStringLiteral(" \n"));
        button->attributes.insert(QStringLiteral("AXTitle"), QStringLiteral("  OK  "));
        QCOMPARE(AXHoverInspector::wordAtPosition(*button, {}),
                 WordAtPositionResult::makeRangeUnsupported(QStringLiteral("OK")));

        auto bare = std::make_shared<FakeAccessibleElement>();
        bare->rangeRejected = true;
        QCOMPARE(AXHoverInspector::wordAtPosition(*bare, {}), WordAtPositionResult::makeNoText());

        // Answering, but with no character under the point, is not the same as refusing.
        auto past = textElement(QStringLiteral("Hello there"), std::nullopt);
        QCOMPARE(AXHoverInspector::wordAtPosition(*past, {}), WordAtPositionResult::makeNoText());
    }

    void sentenceContaining()
    {
        const QString text = QStringLiteral("Hello, world! The quick brown fox jumps.  ");
        QCOMPARE(AXHoverInspector::sentenceContaining(0, text), QStringLiteral("Hello, world!"));
        QCOMPARE(AXHoverInspector::sentenceContaining(14, text), QStringLiteral("The quick brown fox jumps."));
        QCOMPARE(AXHoverInspector::sentenceContaining(-1, text), std::nullopt);
        QCOMPARE(AXHoverInspector::sentenceContaining(text.size(), text), std::nullopt);
        QCOMPARE(AXHoverInspector::sentenceContaining(1, QStringLiteral("   ")), std::nullopt);
        // The index counts user-perceived characters, not code units.
        const QString emoji = QStringLiteral("👍🏽 Nice. Again here.");
        QCOMPARE(AXHoverInspector::sentenceContaining(9, emoji), QStringLiteral("Again here."));
    }

    void readsTheFocusedElementsSelectionAsIs()
    {
        FakeAccessibilityService service;
        QCOMPARE(selectedText(service), std::nullopt);

        auto focused = std::make_shared<FakeAccessibleElement>();
        service.focused = focused;
        QCOMPARE(selectedText(service), std::nullopt);

        // Trimming is the caller's business: whitespace-only selections come back whole.
        focused->selection = QStringLiteral("  a passage\n");
        QCOMPARE(selectedText(service), QStringLiteral("  a passage\n"));
        // The element under the pointer plays no part.
        service.elementUnderPointer = std::make_shared<FakeAccessibleElement>();
        QCOMPARE(selectedText(service), QStringLiteral("  a passage\n"));
        QVERIFY(service.pointsAsked.isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestAXHoverInspector)
#include "tst_AXHoverInspector.moc"
