// SPDX-License-Identifier: GPL-3.0-or-later
// The desktop pieces of a look-up that need no display: which name the word log gets for the
// application in front, and which espeak-ng voice speaks a learning language.
#include "platform/linux/DesktopWorkspace.h"
#include "platform/linux/speech/DesktopSpeechSynthesizer.h"

#include <QTest>

using namespace tolvane;
using Application = DesktopWorkspace::Application;

Q_DECLARE_METATYPE(tolvane::DesktopWorkspace::Application)

class TestLookupPlatform : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void theFrontApplicationIsNamedAfterItsDesktopEntry_data()
    {
        QTest::addColumn<Application>("application");
        QTest::addColumn<QString>("name");
        QTest::newRow("window class announced by the entry")
            << Application{"python3.11", "python3", "org.example.Notes", "Notes"} << "Example Notes";
        QTest::newRow("executable named in Exec") << Application{"gedit", "gedit", "gedit", "Gedit"} << "Text Editor";
        QTest::newRow("desktop file named after the class")
            << Application{"firefox-esr", "firefox-esr", "Navigator", "firefox"} << "Firefox";
        QTest::newRow("no entry: the window class") << Application{"xterm", "xterm", "xterm", "XTerm"} << "XTerm";
        QTest::newRow("nothing known") << Application{} << "";
    }
    void theFrontApplicationIsNamedAfterItsDesktopEntry()
    {
        QFETCH(Application, application);
        QFETCH(QString, name);
        const QList<DesktopWorkspace::DesktopEntry> entries = {
            *DesktopWorkspace::parseDesktopEntry(
                QStringLiteral("org.example.notes"),
                "[Desktop Entry]\nType=Application\nName=Example Notes\nName[de]=Notizen\nExec=python3 -m notes "
                "%U\nStartupWMClass=Notes\n[Desktop Action new]\nName=New note\n"),
            *DesktopWorkspace::parseDesktopEntry(QStringLiteral("org.gnome.gedit"),
                                                 "[Desktop Entry]\nName=Text Editor\nExec=/usr/bin/gedit %U\n"),
            *DesktopWorkspace::parseDesktopEntry(QStringLiteral("firefox"),
                                                 "[Desktop Entry]\nName=Firefox\nExec=env MOZ=1 /opt/ff/ff %u\n"),
        };
        QCOMPARE(DesktopWorkspace::applicationName(application, entries), name);
    }

    void hiddenEntriesAndOtherTypesAreNotApplications()
    {
        QVERIFY(!DesktopWorkspace::parseDesktopEntry(QStringLiteral("a"), "[Desktop Entry]\nName=A\nHidden=true\n"));
        QVERIFY(!DesktopWorkspace::parseDesktopEntry(QStringLiteral("b"), "[Desktop Entry]\nName=B\nType=Link\n"));
        QVERIFY(!DesktopWorkspace::parseDesktopEntry(QStringLiteral("c"), "Name=C\n"));
    }

    void eachLearningLanguageHasItsVoice_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QString>("voice");
        QTest::newRow("Chinese reads characters, not tone digits") << "zh-CN"
                                                                   << "cmn-latn-pinyin";
        QTest::newRow("Brazilian Portuguese") << "pt-BR"
                                              << "pt-BR";
        QTest::newRow("American English") << "en-US"
                                          << "en-us";
        QTest::newRow("Japanese") << "ja-JP"
                                  << "ja";
        QTest::newRow("Russian") << "ru-RU"
                                 << "ru";
    }
    void eachLearningLanguageHasItsVoice()
    {
        QFETCH(QString, locale);
        QFETCH(QString, voice);
        QCOMPARE(DesktopSpeechSynthesizer::espeakVoice(locale), voice);
        DesktopSpeechSynthesizer speech;
        if (QFile::exists(QStringLiteral("/usr/lib/x86_64-linux-gnu/espeak-ng-data/en_dict")))
            QVERIFY(speech.hasVoice(locale));
        QVERIFY(!speech.hasVoice(QStringLiteral("xx-YY")));
    }

    // Without a speech service or a sound device the words are not heard, and nothing waits.
    void speakingWithoutASpeechServiceNeitherBlocksNorFails()
    {
        auto speech = std::make_unique<DesktopSpeechSynthesizer>([](const QString&) { return QStringLiteral("いえ"); });
        speech->speak(QStringLiteral("家"), QStringLiteral("ja-JP"));
        speech->speak(QStringLiteral("house"), QStringLiteral("en-US"));
        QTest::qWait(300);
        speech->stop();
        speech.reset();
    }
};

QTEST_GUILESS_MAIN(TestLookupPlatform)
#include "tst_LookupPlatform.moc"
