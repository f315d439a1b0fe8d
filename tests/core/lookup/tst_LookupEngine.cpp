// SPDX-License-Identifier: GPL-3.0-or-later
// The press decides between a passage and a word; passages are translated into the passage card
// and recorded; the release goes where the press went.
#include "core/lookup/LookupFixture.h"

#include <QTest>

using namespace tolvane;
using namespace std::chrono_literals;

class TestLookupEngine : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void aPressLooksUpTheSelectionOrTheWordUnlessSwitchedOff_data()
    {
        QTest::addColumn<std::optional<PreferenceValue>>("helper");
        QTest::addColumn<bool>("wordLookUps");
        QTest::addColumn<QString>("selection");
        QTest::addColumn<QString>("expected");    // passage, word or nothing
        QTest::addColumn<bool>("nothingFocused"); // the selection is found under the pointer
        using V = std::optional<PreferenceValue>;
        QTest::newRow("nothing stored, no selection") << V() << true << QString() << "word" << false;
        QTest::newRow("helper stored off") << V(false) << true << "Le chat dort."
                                           << "nothing" << false;
        QTest::newRow("helper stored as a text") << V(QStringLiteral("no")) << true << QString() << "word" << false;
        QTest::newRow("spaces and line breaks are no selection") << V() << true << " \n\t \n"
                                                                 << "word" << false;
        QTest::newRow("word look-ups off, no selection") << V() << false << QString() << "nothing" << false;
        QTest::newRow("word look-ups off, selection") << V() << false << "  Le chat dort. "
                                                      << "passage" << false;
        QTest::newRow("focus taken by the key grab") << V() << true << "Le chat dort."
                                                     << "passage" << true;
        QTest::newRow("focus taken, no selection") << V() << true << QString() << "word" << true;
    }
    void aPressLooksUpTheSelectionOrTheWordUnlessSwitchedOff()
    {
        QFETCH(std::optional<PreferenceValue>, helper);
        QFETCH(bool, wordLookUps);
        QFETCH(QString, selection);
        QFETCH(QString, expected);
        QFETCH(bool, nothingFocused);
        LookupFixture f;
        if (helper)
            f.platform.preferences->set(PreferenceKey::translationHelperEnabled, *helper);
        f.preferences.setBool(PreferenceKey::axWordLookupEnabled, wordLookUps);
        f.pointAt(QStringLiteral("house"));
        if (nothingFocused)
            std::static_pointer_cast<FakeAccessibleElement>(f.platform.accessibility->elementUnderPointer)->selection =
                selection;
        else
            f.select(selection);
        f.press();
        QCOMPARE(f.passageCards.size(), expected == QLatin1String("passage") ? 1 : 0);
        QCOMPARE(f.card != nullptr, expected == QLatin1String("word"));
        if (expected == QLatin1String("word")) // one question to the desktop about the pointer
            QCOMPARE(f.platform.accessibility->pointsAsked.size(), 1);
        QCOMPARE(f.usageEvents.events().size(), expected == QLatin1String("nothing") ? 0 : 1);
        if (expected == QLatin1String("passage"))
            QCOMPARE(f.passageCards.first()->views.first().source, QStringLiteral("Le chat dort."));
    }

    void aPassageShowsTranslatingThenItsTranslationAndIsSavedOnlyWhenAsked_data()
    {
        QTest::addColumn<bool>("autoSave");
        QTest::addColumn<bool>("translated");
        QTest::newRow("translated, kept out of the deck") << false << true;
        QTest::newRow("translated, saved") << true << true;
        QTest::newRow("not translated") << true << false;
    }
    void aPassageShowsTranslatingThenItsTranslationAndIsSavedOnlyWhenAsked()
    {
        QFETCH(bool, autoSave);
        QFETCH(bool, translated);
        LookupFixture f;
        f.preferences.setString(PreferenceKey::targetLanguage, QStringLiteral("zh-Hans"));
        f.preferences.setBool(PreferenceKey::passageAutoSaveEnabled, autoSave);
        f.platform.workspace->frontmost = QStringLiteral("Text Editor");
        const QString passage = QStringLiteral("The children are playing outside.");
        if (translated)
            f.platform.translationEngine->translations.insert(passage, QStringLiteral("孩子们在外面玩。"));
        f.select(passage);
        f.press();
        QCOMPARE(f.passageCards.size(), 1);
        const auto& views = f.passageCards.first()->views;
        QCOMPARE(views.size(), 2);
        QCOMPARE(views.at(0), (TranslationOverlayView{passage, QStringLiteral("Translating…"), std::nullopt,
                                                      std::nullopt, true, QStringLiteral("EN → ZH")}));
        QCOMPARE(views.at(1),
                 (TranslationOverlayView{
                     passage, translated ? QStringLiteral("孩子们在外面玩。") : QStringLiteral("No translation found"),
                     std::nullopt, translated ? std::optional(QStringLiteral("Live")) : std::nullopt, true,
                     QStringLiteral("EN → ZH")}));
        QCOMPARE(f.confusionLog.entries().size(), 1);
        QCOMPARE(f.confusionLog.entries().first().translation, translated ? views.at(1).translation : QString());
        QCOMPARE(f.confusionLog.entries().first().appContext, QStringLiteral("Text Editor"));
        QCOMPARE(f.deck.cards().size(), autoSave && translated ? 1 : 0);
        QCOMPARE(f.milestones.successfulLookupCount(), 0); // passages never count
    }

    void twoQuickPassagesAreBothRecordedButTheCardShowsOnlyTheSecond()
    {
        LookupFixture f;
        f.preferences.setBool(PreferenceKey::passageAutoSaveEnabled, true);
        f.platform.translationEngine->translations = {{QStringLiteral("first passage here"), QStringLiteral("один")},
                                                      {QStringLiteral("second passage here"), QStringLiteral("два")}};
        f.select(QStringLiteral("first passage here"));
        f.engine.hotkeyPressed();
        f.scheduler.runPosted();
        f.engine.hotkeyReleased();
        f.select(QStringLiteral("second passage here"));
        f.engine.hotkeyPressed();
        f.settle();
        QCOMPARE(f.passageCards.size(), 1); // still up: the second reuses it
        QStringList shown;
        for (const auto& view : std::as_const(f.passageCards.first()->views))
            shown.append(view.translation);
        QCOMPARE(shown,
                 (QStringList{QStringLiteral("Translating…"), QStringLiteral("Translating…"), QStringLiteral("два")}));
        QCOMPARE(f.confusionLog.entries().size(), 2);
        QCOMPARE(f.deck.cards().size(), 2);
        QCOMPARE(f.engine.passageLookupGeneration(), 2);
    }

    void aClosedPassageCardIsReplacedAndTheReleaseGoesWhereThePressWent()
    {
        LookupFixture f;
        f.select(QStringLiteral("un deux trois"));
        f.press();
        f.release();
        QCOMPARE(f.passageCards.first()->dismissRequests, 1);
        f.passageCards.first()->visible = false; // it closed by its rules
        f.press();
        QCOMPARE(f.passageCards.size(), 2);

        // A press the helper refuses leaves the routing as it was.
        f.preferences.setBool(PreferenceKey::translationHelperEnabled, false);
        f.press();
        f.release();
        QCOMPARE(f.passageCards.last()->dismissRequests, 1);

        f.preferences.setBool(PreferenceKey::translationHelperEnabled, true);
        f.select(QString());
        f.pointAt(QStringLiteral("house"));
        f.press();
        QVERIFY(f.hover.isHotkeyHeld());
        f.release();
        QVERIFY(!f.hover.isHotkeyHeld());
        QCOMPARE(f.passageCards.last()->dismissRequests, 1);
    }
};

Q_DECLARE_METATYPE(std::optional<tolvane::PreferenceValue>)
QTEST_GUILESS_MAIN(TestLookupEngine)
#include "tst_LookupEngine.moc"
