// SPDX-License-Identifier: GPL-3.0-or-later
// The preferences file: exact types across a restart, hand edits, and broken files.
#include "core/setup/Preferences.h"
#include "platform/linux/JsonFilePreferenceStore.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace tolvane;

namespace {

void writeFile(const QString& path, const QByteArray& text)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(text);
}

QStringList corruptCopies(const QString& dir)
{
    return QDir(dir).entryList({QStringLiteral("preferences.json.corrupt-*")}, QDir::Files);
}

} // namespace

class TestJsonFilePreferenceStore : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void typesSurviveARestartExactlyAndRemovedKeysStayGone()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("Tolvane/preferences.json"));
        const QList<QPair<QString, PreferenceValue>> values = {
            {QStringLiteral("double"), 5.0},
            {QStringLiteral("integer"), qint64(5)},
            {QStringLiteral("big"), qint64(4294967295)},
            {QStringLiteral("bool"), false},
            {QStringLiteral("text"), QStringLiteral("\"quoted\" \\ ü 中文\n")},
            {QStringLiteral("array"), QList<qint64>{25, 100}},
            {QStringLiteral("empty"), QList<qint64>{}}};
        {
            JsonFilePreferenceStore store(path);
            for (const auto& [key, value] : values)
                store.set(key, value);
            store.set(QStringLiteral("removed"), false);
            store.remove(QStringLiteral("removed"));
        }
        QVERIFY(QFile::exists(path));
        QCOMPARE(QFile::permissions(path) & (QFile::ReadOther | QFile::ReadGroup), QFileDevice::Permissions());
        JsonFilePreferenceStore reread(path);
        for (const auto& [key, value] : values)
            QVERIFY2(reread.object(key) == std::optional(value), qPrintable(key));
        QVERIFY(!reread.object(QStringLiteral("absent")));
        QVERIFY(!reread.object(QStringLiteral("removed")));
        QCOMPARE(corruptCopies(dir.filePath(QStringLiteral("Tolvane"))), QStringList());
    }

    void aFileThatIsNotJsonIsMovedAsideAndDefaultsApply()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("preferences.json"));
        writeFile(path, "{\"targetLanguage\": \"fr\", oops");
        QTest::ignoreMessage(
            QtWarningMsg,
            QRegularExpression(QStringLiteral(
                "^Ignored .*preferences.json because it is not JSON.*a copy was kept at .*corrupt-[0-9A-F-]{36}$")));
        JsonFilePreferenceStore store(path);
        Preferences prefs(store);
        QCOMPARE(prefs.targetLanguage(), QStringLiteral("ru"));
        const QStringList copies = corruptCopies(dir.path());
        QCOMPARE(copies.size(), 1);
        QFile copy(dir.filePath(copies.first()));
        QVERIFY(copy.open(QIODevice::ReadOnly));
        QCOMPARE(copy.readAll(), QByteArray("{\"targetLanguage\": \"fr\", oops"));
        // The next start is clean: nothing more is moved aside.
        prefs.setString(PreferenceKey::targetLanguage, QStringLiteral("de"));
        JsonFilePreferenceStore again(path);
        QCOMPARE(again.object(PreferenceKey::targetLanguage), PreferenceValue(QStringLiteral("de")));
        QCOMPARE(corruptCopies(dir.path()).size(), 1);
    }

    void unsupportedTypesAreIgnoredKeyByKeyAndACopyIsKept()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("preferences.json"));
        writeFile(path, R"({"targetLanguage": "ja", "shownLookupMilestones": [25, "x"], "appearanceMode": null,
                            "nested": {"a": [[[1]]]}, "wordOverlayDurationSeconds": 2.5})");
        QTest::ignoreMessage(
            QtWarningMsg,
            QRegularExpression(QStringLiteral(
                "^Ignored values of unsupported types for appearanceMode, nested, shownLookupMilestones")));
        JsonFilePreferenceStore store(path);
        Preferences prefs(store);
        QCOMPARE(prefs.targetLanguage(), QStringLiteral("ja"));
        QCOMPARE(prefs.wordOverlayDurationSeconds(), 2.5);
        QVERIFY(prefs.shownLookupMilestones().isEmpty());
        QCOMPARE(corruptCopies(dir.path()).size(), 1);
        // The file was rewritten without the broken keys, so the next start says nothing.
        JsonFilePreferenceStore again(path);
        QCOMPARE(corruptCopies(dir.path()).size(), 1);
        QCOMPARE(again.object(PreferenceKey::wordOverlayDurationSeconds), PreferenceValue(2.5));
    }

    void numbersReadAsWrittenWithOrWithoutAFraction_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<PreferenceValue>("expected");
        QTest::newRow("integer") << QByteArray(R"({"n": 5})") << PreferenceValue(qint64(5));
        QTest::newRow("fraction") << QByteArray(R"({"n": 5.0})") << PreferenceValue(5.0);
        QTest::newRow("exponent") << QByteArray(R"({"n": 5E0})") << PreferenceValue(5.0);
        QTest::newRow("escaped key") << QByteArray(R"({"\u006e": -0.0})") << PreferenceValue(-0.0);
        QTest::newRow("same key inside an object")
            << QByteArray(R"({"o": {"n": 1.5}, "n": 2})") << PreferenceValue(qint64(2));
        QTest::newRow("written twice, last an integer")
            << QByteArray(R"({"n": 1.5, "n": 2})") << PreferenceValue(qint64(2));
        QTest::newRow("written twice, last a fraction") << QByteArray(R"({"n": 2, "n": 1.5})") << PreferenceValue(1.5);
    }

    void numbersReadAsWrittenWithOrWithoutAFraction()
    {
        QFETCH(QByteArray, text);
        QFETCH(PreferenceValue, expected);
        const JsonFilePreferenceStore::Parsed parsed = JsonFilePreferenceStore::parse(text);
        QVERIFY2(parsed.error.isEmpty(), qPrintable(parsed.error));
        QCOMPARE(parsed.values.value(QStringLiteral("n")), expected);
    }

    void aHandEditIsSeenWithoutARestart()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("preferences.json"));
        JsonFilePreferenceStore store(path);
        store.set(QStringLiteral("targetLanguage"), QStringLiteral("fr"));
        QSignalSpy spy(&store, &PreferenceStore::valueChanged);
        QFile::remove(path);
        writeFile(path, R"({"targetLanguage": "es", "onboardingComplete": true})");
        QTRY_VERIFY(store.object(QStringLiteral("onboardingComplete")).has_value());
        QCOMPARE(store.object(QStringLiteral("targetLanguage")), PreferenceValue(QStringLiteral("es")));
        QVERIFY(spy.count() >= 2);
        // Our own writes are not mistaken for outside edits.
        spy.clear();
        store.set(QStringLiteral("targetLanguage"), QStringLiteral("it"));
        QTest::qWait(200);
        QCOMPARE(spy.count(), 1);
    }

    void aDirectoryInThePlaceOfTheFileIsLeftAlone()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("preferences.json"));
        QVERIFY(QDir().mkpath(path));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^Cannot read")));
        JsonFilePreferenceStore store(path);
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression(QStringLiteral("^Not saving preferences over unreadable")));
        store.set(QStringLiteral("targetLanguage"), QStringLiteral("ko"));
        // Kept in memory for this run; the directory is untouched.
        QCOMPARE(store.object(QStringLiteral("targetLanguage")), PreferenceValue(QStringLiteral("ko")));
        QVERIFY(QFileInfo(path).isDir());
    }
};

QTEST_GUILESS_MAIN(TestJsonFilePreferenceStore)
#include "tst_JsonFilePreferenceStore.moc"
