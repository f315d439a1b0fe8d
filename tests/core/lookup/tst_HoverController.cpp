// SPDX-License-Identifier: GPL-3.0-or-later
// A word look-up from the press to the card going away: what the card shows, what is recorded,
// what is cached, and how long the card stays.
#include "core/hotkeys/CarbonModifiers.h"
#include "core/lookup/LookupFixture.h"

#include <QTest>

using namespace tolvane;
using Kind = HoverOverlayView::State::Kind;
using namespace std::chrono_literals;

class TestHoverController : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void aReleaseKeepsTheCardForTheRestOfTheReadingTime_data()
    {
        QTest::addColumn<double>("storedDuration"); // 0: never stored
        QTest::addColumn<int>("releaseAfterMs");
        QTest::addColumn<int>("hiddenAfterReleaseMs"); // 0: at once
        QTest::newRow("default, quick tap") << 0.0 << 1000 << 4000;
        QTest::newRow("default, held past it") << 0.0 << 7000 << 0;
        QTest::newRow("eight seconds") << 8.0 << 2500 << 5500;
        QTest::newRow("not above zero") << -2.0 << 1000 << 4000;
    }
    void aReleaseKeepsTheCardForTheRestOfTheReadingTime()
    {
        QFETCH(double, storedDuration);
        QFETCH(int, releaseAfterMs);
        QFETCH(int, hiddenAfterReleaseMs);
        LookupFixture f;
        if (storedDuration != 0.0)
            f.preferences.setDouble(PreferenceKey::wordOverlayDurationSeconds, storedDuration);
        f.pointAt(QStringLiteral("house"));
        f.press();
        QVERIFY(f.card->visible);
        f.advance(Duration(releaseAfterMs));
        f.release();
        QVERIFY(!f.hover.isHotkeyHeld());
        if (hiddenAfterReleaseMs == 0) {
            QVERIFY(!f.card->visible);
            return;
        }
        f.advance(Duration(hiddenAfterReleaseMs - 1));
        QVERIFY(f.card->visible);
        f.advance(1ms);
        QVERIFY(!f.card->visible);
        QVERIFY(!f.hover.isActive());
    }

    void holdingPastTheSafetyTimeEndsTheLookUpAndTheLateReleaseDoesNothing_data()
    {
        QTest::addColumn<double>("storedDuration");
        QTest::addColumn<int>("safetySeconds");
        QTest::newRow("never stored") << 0.0 << 60;
        QTest::newRow("eight seconds: ten times") << 8.0 << 80;
        QTest::newRow("three seconds: a minute") << 3.0 << 60;
    }
    void holdingPastTheSafetyTimeEndsTheLookUpAndTheLateReleaseDoesNothing()
    {
        QFETCH(double, storedDuration);
        QFETCH(int, safetySeconds);
        LookupFixture f;
        if (storedDuration != 0.0)
            f.preferences.setDouble(PreferenceKey::wordOverlayDurationSeconds, storedDuration);
        f.pointAt(QStringLiteral("house"));
        f.press();
        f.advance(std::chrono::seconds(safetySeconds) - 1ms);
        QVERIFY(f.card->visible);
        f.advance(1ms);
        QVERIFY(!f.card->visible);
        QVERIFY(!f.hover.isHotkeyHeld());
        QVERIFY(!f.hover.hasKeyReleaseMonitor());
        f.release();
        QCOMPARE(f.scheduler.activeTimerCount(), 2); // the two permission polls only
        QVERIFY(!f.card->visible);
    }

    void aWordIsTranslatedShownWithItsReadingAidsAndRecorded()
    {
        LookupFixture f;
        f.preferences.setString(PreferenceKey::targetLanguage, QStringLiteral("zh-Hans"));
        f.platform.translationEngine->translations = {
            {QStringLiteral("books"), QStringLiteral("书")},
            {QStringLiteral("I read the book yesterday."), QStringLiteral("我昨天读了这本书。")}};
        f.platform.lexicalTagger->classes.insert(QStringLiteral("book"), LexicalClass::noun);
        f.platform.workspace->frontmost = QStringLiteral("gedit");
        f.pointAt(QStringLiteral("book"), QStringLiteral("I read the book yesterday."));
        // The accessibility reader hands over "book"; make the found word the plural.
        auto element = std::static_pointer_cast<FakeAccessibleElement>(f.platform.accessibility->elementUnderPointer);
        element->attributes.insert(QStringLiteral("AXValue"), QStringLiteral("I read the books yesterday."));
        f.platform.translationEngine->translations.insert(QStringLiteral("I read the books yesterday."),
                                                          QStringLiteral("我昨天读了这些书。"));
        element->range = TextRange{11, 1};
        f.press();

        QCOMPARE(f.card->kinds(), (QList<Kind>{Kind::unmatched, Kind::translating, Kind::liveLookup}));
        const HoverOverlayView shown = f.card->last();
        QCOMPARE(shown.state, HoverOverlayView::State::liveLookup(QStringLiteral("books"), QStringLiteral("书")));
        QCOMPARE(shown.directionLabel, QStringLiteral("EN → ZH"));
        QCOMPARE(shown.targetLanguageCode, QStringLiteral("zh-Hans"));
        QVERIFY(!shown.exampleSentence);
        QVERIFY(shown.onSpeak);
        shown.onSpeak();
        QCOMPARE(f.platform.speech->spoken,
                 (QList<QPair<QString, QString>>{{QStringLiteral("书"), QStringLiteral("zh-CN")}}));

        // The records themselves: tst_LookupEndToEnd; here, that they name the application.
        QCOMPARE(f.confusionLog.entries().first().appContext, QStringLiteral("gedit"));

        // The example follows the word after a pause, and is remembered with it.
        f.advance(299ms);
        QCOMPARE(f.card->views.size(), 3);
        f.advance(1ms);
        QCOMPARE(f.card->last().exampleSentence, QStringLiteral("I read the books yesterday.\n我昨天读了这些书。"));
        QCOMPARE(f.hover.cache().value(QStringLiteral("englishToTarget:zh-Hans:books")).exampleSentence,
                 f.card->last().exampleSentence);
    }

    void theSecondLookUpOfAWordComesFromTheCacheAndIsStillRecorded()
    {
        LookupFixture f;
        f.platform.translationEngine->translations = {{QStringLiteral("house"), QStringLiteral("дом")}};
        f.pointAt(QStringLiteral("house"));
        f.press();
        f.release();
        f.advance(5s);
        const int views = int(f.card->views.size());
        f.press();
        QCOMPARE(f.translationsOf(QStringLiteral("house")), 1);
        QCOMPARE(f.card->views.size(), views + 1);
        QCOMPARE(f.card->last().state,
                 HoverOverlayView::State::liveLookup(QStringLiteral("house"), QStringLiteral("дом")));
        QCOMPARE(f.usageEvents.events().size(), 2);
        QCOMPARE(f.confusionLog.entries().first().seenCount, 2);
        QCOMPARE(f.deck.cards().size(), 1);
        QCOMPARE(f.milestones.successfulLookupCount(), 2);
    }

    void aFailedTranslationIsLoggedEmptyAndTriedAgainNextTime()
    {
        LookupFixture f;
        f.pointAt(QStringLiteral("zzxq"));
        f.press();
        QCOMPARE(f.card->last().state, HoverOverlayView::State::unmatched(QStringLiteral("zzxq")));
        QVERIFY(!f.card->last().onSpeak);
        QCOMPARE(f.confusionLog.entries().first().translation, QString());
        QVERIFY(f.deck.cards().isEmpty());
        QCOMPARE(f.milestones.successfulLookupCount(), 0);
        f.release();
        f.advance(5s);
        f.press();
        QCOMPARE(f.translationsOf(QStringLiteral("zzxq")), 2);
        QVERIFY(f.hover.cache().isEmpty());
    }

    void hostileWordsAreLookedUpAndRecordedAsGiven_data()
    {
        QTest::addColumn<QString>("word");
        QTest::newRow("markup") << "<b>house</b>";
        QTest::newRow("bidirectional overrides") << "\u202Ehouse\u202C";
        QTest::newRow("a lone surrogate") << QString(QChar(0xD800)) + QStringLiteral("house");
        QTest::newRow("a 100 000-character token") << QString(100000, QLatin1Char('x'));
    }
    void hostileWordsAreLookedUpAndRecordedAsGiven()
    {
        QFETCH(QString, word);
        LookupFixture f;
        f.platform.translationEngine->translations = {{word, QStringLiteral("дом")}};
        // A label that cannot place points: its whole text is the word.
        auto element = std::make_shared<FakeAccessibleElement>();
        element->rangeRejected = true;
        element->attributes.insert(QStringLiteral("AXValue"), word);
        f.platform.accessibility->elementUnderPointer = element;
        f.press();
        QVERIFY(f.card);
        QVERIFY(!f.card->views.isEmpty());
        f.advance(1s);
        QCOMPARE(f.card->last().state, HoverOverlayView::State::liveLookup(word, QStringLiteral("дом")));
        QCOMPARE(f.confusionLog.entries().size(), 1);
        QCOMPARE(f.confusionLog.entries().first().translation, QStringLiteral("дом"));
        QCOMPARE(f.milestones.successfulLookupCount(), 1);
    }

    void anAnswerForAnOlderLookUpIsDropped()
    {
        LookupFixture f;
        f.platform.translationEngine->translations = {{QStringLiteral("house"), QStringLiteral("дом")},
                                                      {QStringLiteral("tree"), QStringLiteral("дерево")}};
        f.pointAt(QStringLiteral("house"));
        f.engine.hotkeyPressed();
        f.scheduler.runPosted(); // the translation is still in the engine
        f.engine.hotkeyReleased();
        f.pointAt(QStringLiteral("tree"));
        f.press();
        QCOMPARE(f.card->last().state,
                 HoverOverlayView::State::liveLookup(QStringLiteral("tree"), QStringLiteral("дерево")));
        for (const auto& view : std::as_const(f.card->views))
            QVERIFY(view.state.translation != QStringLiteral("дом"));
        QCOMPARE(f.confusionLog.entries().size(), 1);
        QVERIFY(!f.hover.cache().contains(QStringLiteral("englishToTarget:ru:house")));
    }

    void exampleSentenceUsable_data()
    {
        QTest::addColumn<QString>("sentence");
        QTest::addColumn<QString>("word");
        QTest::addColumn<bool>("usable");
        QTest::newRow("plural within one edit") << "I read the book yesterday"
                                                << "books" << true;
        QTest::newRow("two words never") << "read books"
                                         << "books" << false;
        QTest::newRow("punctuation around the piece") << "He said: «Books!» twice"
                                                      << "BOOKS" << true;
        QTest::newRow("long word allows a quarter") << "Those translatons were odd"
                                                    << "translations" << true;
        QTest::newRow("nothing near") << "The cat sat down"
                                      << "house" << false;
        QTest::newRow("spaces only count") << "I\tread\tthe\tbook"
                                           << "book" << false;
        QTest::newRow("a token too long to be a word") << "a b c" << QString(100000, QLatin1Char('x')) << false;
    }
    void exampleSentenceUsable()
    {
        QFETCH(QString, sentence);
        QFETCH(QString, word);
        QFETCH(bool, usable);
        QCOMPARE(HoverController::exampleSentenceUsable(sentence, word), usable);
    }

    void theScreenTextStandsInWhereAccessibilityHasNone_data()
    {
        QTest::addColumn<QString>("elementKind"); // none, empty, multiWordLabel, oneWordLabel
        QTest::addColumn<bool>("ocrEnabled");
        QTest::addColumn<QString>("recognised"); // empty: nothing
        QTest::addColumn<int>("recognitionRequests");
        QTest::addColumn<QList<Kind>>("kinds");
        QTest::newRow("no element, word read off the screen")
            << "none" << true << "maison" << 1
            << QList<Kind>{Kind::noLabel, Kind::ocrUnmatched, Kind::translating, Kind::ocrUnmatched};
        QTest::newRow("no element, nothing read") << "none" << true << "" << 1 << QList<Kind>{Kind::noLabel};
        QTest::newRow("no element, fallback off") << "none" << false << "maison" << 0 << QList<Kind>{Kind::noLabel};
        QTest::newRow("label of several words: recognised counts as accessibility")
            << "multiWordLabel" << true << "maison" << 1
            << QList<Kind>{Kind::unmatched, Kind::translating, Kind::unmatched};
        QTest::newRow("label of one word: no capture")
            << "oneWordLabel" << true << "maison" << 0
            << QList<Kind>{Kind::unmatched, Kind::translating, Kind::unmatched};
    }
    void theScreenTextStandsInWhereAccessibilityHasNone()
    {
        QFETCH(QString, elementKind);
        QFETCH(bool, ocrEnabled);
        QFETCH(QString, recognised);
        QFETCH(int, recognitionRequests);
        QFETCH(QList<Kind>, kinds);
        LookupFixture f;
        f.preferences.setBool(PreferenceKey::ocrFallbackEnabled, ocrEnabled);
        if (elementKind != QLatin1String("none")) {
            auto element = std::make_shared<FakeAccessibleElement>();
            element->rangeRejected = true;
            element->attributes.insert(QStringLiteral("AXValue"), elementKind == QLatin1String("multiWordLabel")
                                                                      ? QStringLiteral("la maison bleue")
                                                                      : QStringLiteral("maison"));
            f.platform.accessibility->elementUnderPointer = element;
        }
        f.engine.hotkeyPressed();
        f.settle();
        QCOMPARE(int(f.platform.textRecognizer->requests.size()), recognitionRequests);
        if (recognitionRequests > 0) {
            RecognizedText text;
            if (!recognised.isEmpty()) {
                text.strip = f.platform.textRecognizer->requests.first().first;
                const QRectF box(text.strip.width() / 2 - 20, text.strip.height() / 2 - 8, 40, 16);
                text.lines.append({recognised, box, {{recognised, box}}});
            }
            f.platform.textRecognizer->answer(0, text);
            f.settle();
        }
        QCOMPARE(f.card->kinds(), kinds);
    }

    void theKeyReleaseMonitorFollowsTheHotkey_data()
    {
        QTest::addColumn<quint32>("keyCode");
        QTest::addColumn<GlobalKeyEvent>("event");
        QTest::addColumn<bool>("monitored");
        QTest::addColumn<bool>("released");
        const quint32 space = 49, option = CarbonModifier::option;
        QTest::newRow("the key goes up") << space << GlobalKeyEvent{GlobalKeyEvent::Kind::keyUp, space, option} << true
                                         << true;
        QTest::newRow("the modifier goes up")
            << space << GlobalKeyEvent{GlobalKeyEvent::Kind::flagsChanged, 0, 0} << true << true;
        QTest::newRow("another key goes up")
            << space << GlobalKeyEvent{GlobalKeyEvent::Kind::keyUp, 0, option} << true << false;
        QTest::newRow("another modifier joins")
            << space << GlobalKeyEvent{GlobalKeyEvent::Kind::flagsChanged, 0, option | CarbonModifier::shift} << true
            << false;
        QTest::newRow("modifiers alone: no monitor")
            << HotkeyCombination::modifierOnlyKeyCode << GlobalKeyEvent{GlobalKeyEvent::Kind::flagsChanged, 0, 0}
            << false << false;
    }
    void theKeyReleaseMonitorFollowsTheHotkey()
    {
        QFETCH(quint32, keyCode);
        QFETCH(GlobalKeyEvent, event);
        QFETCH(bool, monitored);
        QFETCH(bool, released);
        LookupFixture f;
        f.hotkey = {keyCode, CarbonModifier::option};
        f.pointAt(QStringLiteral("house"));
        f.press();
        QCOMPARE(f.hover.hasKeyReleaseMonitor(), monitored);
        f.keyReleases.send(event);
        f.settle();
        QCOMPARE(f.hover.isHotkeyHeld(), !released);
        QCOMPARE(f.keyReleases.monitors.isEmpty(), released || !monitored);
    }

    void switchingWordLookUpsOffEndsTheLookUp()
    {
        LookupFixture f;
        f.pointAt(QStringLiteral("house"));
        f.press();
        QVERIFY(f.card->visible);
        f.preferences.setBool(PreferenceKey::axWordLookupEnabled, false);
        QVERIFY(!f.card->visible);
        QVERIFY(!f.hover.isActive());
    }

    void theLearnerHearsTheTargetLanguageWhenAVoiceExists_data()
    {
        QTest::addColumn<bool>("voice");
        QTest::addColumn<QString>("heard"); // empty: no speaker button
        QTest::newRow("French word: the word itself") << true << "maison";
        QTest::newRow("no French voice: no button") << false << "";
    }
    void theLearnerHearsTheTargetLanguageWhenAVoiceExists()
    {
        QFETCH(bool, voice);
        QFETCH(QString, heard);
        LookupFixture f;
        f.preferences.setString(PreferenceKey::targetLanguage, QStringLiteral("fr"));
        f.platform.languageRecognizer->answers.insert(
            QStringLiteral("maison"),
            {QStringLiteral("fr"), {{QStringLiteral("fr"), 0.95}, {QStringLiteral("en"), 0.05}}});
        f.platform.lexicalTagger->classes.insert(QStringLiteral("maison"), LexicalClass::noun);
        f.platform.translationEngine->translations = {{QStringLiteral("maison"), QStringLiteral("house")}};
        if (!voice)
            f.platform.speech->voicelessLocales = {QStringLiteral("fr-FR")};
        f.pointAt(QStringLiteral("maison"), QStringLiteral("La maison est grande."));
        f.press();
        const HoverOverlayView shown = f.card->last();
        QCOMPARE(shown.directionLabel, QStringLiteral("FR → EN"));
        QVERIFY(!shown.partOfSpeech); // tagged only when English is looked up
        QCOMPARE(bool(shown.onSpeak), voice);
        if (shown.onSpeak) {
            shown.onSpeak();
            QCOMPARE(f.platform.speech->spoken.last(), qMakePair(heard, QStringLiteral("fr-FR")));
            QCOMPARE(f.platform.speech->stops, 1);
        }
        f.advance(1s);
        QCOMPARE(f.translationsOf(QStringLiteral("La maison est grande.")), 0); // examples only from English
    }
};

Q_DECLARE_METATYPE(tolvane::GlobalKeyEvent)
QTEST_GUILESS_MAIN(TestHoverController)
#include "tst_HoverController.moc"
