// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/JsonFilePreferenceStore.h"

#include "core/support/AppPaths.h"
#include "core/support/AtomicFile.h"
#include "core/support/Logging.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

#include <cmath>

TOLVANE_DEFINE_LOG(lcPreferenceFile, "Preferences")

namespace tolvane {

namespace {

QByteArray jsonString(const QString& text)
{
    // QJsonDocument escapes correctly; strip the array brackets around the one string.
    const QByteArray array = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
    return array.mid(1, array.size() - 2);
}

QByteArray jsonDouble(double value)
{
    QByteArray text = QByteArray::number(value, 'g', QLocale::FloatingPointShortest);
    if (!text.contains('.') && !text.contains('e') && !text.contains('E'))
        text += ".0";
    return text;
}

bool isJsonInteger(const QJsonValue& value)
{
    return value.isDouble() && value.toVariant().typeId() == QMetaType::LongLong;
}

// Qt's parser reads "5.0" as the integer 5, so the top-level keys whose number is written with a
// fraction or an exponent are found here, in text that QJsonDocument has already accepted.
QSet<QString> keysWrittenAsReal(const QByteArray& text)
{
    QSet<QString> keys;
    qsizetype i = 0;
    const qsizetype n = text.size();
    auto skipSpace = [&] {
        while (i < n && (text[i] == ' ' || text[i] == '\n' || text[i] == '\r' || text[i] == '\t'))
            ++i;
    };
    auto skipString = [&] { // at the opening quote; leaves i after the closing one
        for (++i; i < n && text[i] != '"'; ++i) {
            if (text[i] == '\\')
                ++i;
        }
        ++i;
    };
    auto skipValue = [&] {
        int depth = 0;
        while (i < n) {
            const char c = text[i];
            if (c == '"') {
                skipString();
                continue;
            }
            if (c == '[' || c == '{')
                ++depth;
            else if (c == ']' || c == '}') {
                if (depth == 0)
                    return;
                --depth;
            } else if (c == ',' && depth == 0)
                return;
            ++i;
        }
    };
    skipSpace();
    if (i >= n || text[i] != '{')
        return keys;
    ++i;
    while (i < n) {
        skipSpace();
        if (i >= n || text[i] != '"')
            break;
        const qsizetype keyStart = i;
        skipString();
        const QString key =
            QJsonDocument::fromJson("[" + text.mid(keyStart, i - keyStart) + "]").array().at(0).toString();
        skipSpace();
        ++i; // ':'
        skipSpace();
        if (i < n && (text[i] == '-' || (text[i] >= '0' && text[i] <= '9'))) {
            bool real = false;
            while (i < n && QByteArrayView("+-.0123456789eE").contains(text[i])) {
                real = real || text[i] == '.' || text[i] == 'e' || text[i] == 'E';
                ++i;
            }
            // Of a key written twice the parser keeps the last value, so its text decides.
            if (real)
                keys.insert(key);
            else
                keys.remove(key);
        } else {
            keys.remove(key);
            skipValue();
        }
        skipSpace();
        if (i < n && text[i] == ',')
            ++i;
    }
    return keys;
}

} // namespace

JsonFilePreferenceStore::JsonFilePreferenceStore(QString path, QObject* parent)
    : MemoryPreferenceStore(parent)
    , m_path(std::move(path))
{
    reload();
    watch();
}

JsonFilePreferenceStore::~JsonFilePreferenceStore() = default;

QByteArray JsonFilePreferenceStore::serialize(const QMap<QString, PreferenceValue>& values)
{
    QByteArray out = "{\n";
    bool first = true;
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        QByteArray text;
        if (const bool* b = std::get_if<bool>(&*it))
            text = *b ? "true" : "false";
        else if (const qint64* i = std::get_if<qint64>(&*it))
            text = QByteArray::number(*i);
        else if (const double* d = std::get_if<double>(&*it)) {
            if (!std::isfinite(*d))
                continue; // JSON has no way to say it; the reader falls back to the default
            text = jsonDouble(*d);
        } else if (const QString* s = std::get_if<QString>(&*it))
            text = jsonString(*s);
        else if (const auto* list = std::get_if<QList<qint64>>(&*it)) {
            text = "[";
            for (qsizetype n = 0; n < list->size(); ++n)
                text += (n ? ", " : "") + QByteArray::number(list->at(n));
            text += "]";
        }
        out += (first ? "    " : ",\n    ") + jsonString(it.key()) + ": " + text;
        first = false;
    }
    out += first ? "}\n" : "\n}\n";
    return out;
}

JsonFilePreferenceStore::Parsed JsonFilePreferenceStore::parse(const QByteArray& text)
{
    Parsed parsed;
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError) {
        parsed.error = QStringLiteral("not JSON (%1 at offset %2)").arg(error.errorString()).arg(error.offset);
        return parsed;
    }
    if (!document.isObject()) {
        parsed.error = QStringLiteral("not a JSON object");
        return parsed;
    }
    const QJsonObject object = document.object();
    const QSet<QString> realKeys = keysWrittenAsReal(text);
    for (auto it = object.begin(); it != object.end(); ++it) {
        const QJsonValue value = it.value();
        if (value.isBool()) {
            parsed.values.insert(it.key(), value.toBool());
        } else if (isJsonInteger(value) && !realKeys.contains(it.key())) {
            parsed.values.insert(it.key(), qint64(value.toInteger()));
        } else if (value.isDouble()) {
            parsed.values.insert(it.key(), value.toDouble());
        } else if (value.isString()) {
            parsed.values.insert(it.key(), value.toString());
        } else if (value.isArray()) {
            QList<qint64> list;
            bool allIntegers = true;
            for (const QJsonValue& element : value.toArray()) {
                allIntegers = allIntegers && isJsonInteger(element);
                if (allIntegers)
                    list.append(element.toInteger());
            }
            if (allIntegers)
                parsed.values.insert(it.key(), list);
            else
                parsed.ignoredKeys.append(it.key());
        } else {
            parsed.ignoredKeys.append(it.key());
        }
    }
    return parsed;
}

void JsonFilePreferenceStore::set(const QString& key, const PreferenceValue& value)
{
    if (object(key) == value && storedValues().contains(key))
        return;
    MemoryPreferenceStore::set(key, value);
    persist();
}

void JsonFilePreferenceStore::remove(const QString& key)
{
    if (!storedValues().contains(key))
        return;
    MemoryPreferenceStore::remove(key);
    persist();
}

QString JsonFilePreferenceStore::setAside(bool move)
{
    return setFileAside(m_path, recoveryCopySuffix(), move ? SetAside::move : SetAside::copy).valueOr(QString());
}

void JsonFilePreferenceStore::reload()
{
    QFile file(m_path);
    if (!file.exists()) {
        m_lastText.clear();
        replaceStoredValues({});
        return;
    }
    if (QFileInfo(m_path).isDir() || !file.open(QIODevice::ReadOnly)) {
        qCWarning(lcPreferenceFile).noquote()
            << "Cannot read" << m_path << "(" + file.errorString() + "); using the values in memory";
        return;
    }
    // A preferences file is tiny; anything huge is not ours and is not worth reading whole.
    constexpr qint64 maximumSize = 4 * 1024 * 1024;
    const QByteArray text = file.size() > maximumSize ? QByteArray() : file.readAll();
    file.close();
    if (text == m_lastText && !text.isEmpty())
        return;

    Parsed parsed = parse(text);
    if (!parsed.error.isEmpty()) {
        const bool atStart = m_lastText.isNull() && storedValues().isEmpty();
        // At start-up the broken file is moved aside so the next start is clean; a broken edit
        // made while running is copied, and what is in memory stays in force.
        const QString aside = setAside(atStart);
        qCWarning(lcPreferenceFile).noquote()
            << "Ignored" << m_path << "because it is" << parsed.error + "; a copy was kept at"
            << (aside.isEmpty() ? QStringLiteral("(copy failed)") : aside);
        if (atStart)
            replaceStoredValues({});
        return;
    }
    m_lastText = text;
    if (!parsed.ignoredKeys.isEmpty()) {
        const QString aside = setAside(false);
        qCWarning(lcPreferenceFile).noquote()
            << "Ignored values of unsupported types for" << parsed.ignoredKeys.join(QStringLiteral(", ")) << "in"
            << m_path << "; a copy was kept at" << (aside.isEmpty() ? QStringLiteral("(copy failed)") : aside);
    }
    replaceStoredValues(std::move(parsed.values));
    if (!parsed.ignoredKeys.isEmpty())
        persist();
}

void JsonFilePreferenceStore::persist()
{
    const QFileInfo info(m_path);
    if (!ensurePrivateDirectory(info.absolutePath())) {
        qCWarning(lcPreferenceFile).noquote() << "Cannot create" << info.absolutePath() << "; preferences not saved";
        return;
    }
    if (info.exists() && (info.isDir() || !info.isReadable())) {
        // Writing would destroy a file we could not read; keep the change in memory only.
        qCWarning(lcPreferenceFile).noquote() << "Not saving preferences over unreadable" << m_path;
        return;
    }
    const QByteArray text = serialize(storedValues());
    if (const Result<void> written = writeFileAtomically(m_path, text); !written.ok()) {
        qCWarning(lcPreferenceFile).noquote()
            << "Failed to save" << m_path << "(" + written.error().message + "); the change is kept in memory";
        return;
    }
    m_lastText = text;
    watch();
}

void JsonFilePreferenceStore::watch()
{
    if (!m_watcher) {
        m_watcher = new QFileSystemWatcher(this);
        auto onChange = [this] {
            reload();
            watch(); // an atomic replace gives the file a new inode; watch that one
        };
        connect(m_watcher, &QFileSystemWatcher::fileChanged, this, onChange);
        connect(m_watcher, &QFileSystemWatcher::directoryChanged, this, onChange);
    }
    const QString dir = QFileInfo(m_path).absolutePath();
    if (QFileInfo::exists(dir) && !m_watcher->directories().contains(dir))
        m_watcher->addPath(dir);
    if (QFileInfo::exists(m_path) && !m_watcher->files().contains(m_path))
        m_watcher->addPath(m_path);
}

} // namespace tolvane
