// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/capture/HunspellSpellChecker.h"

#include "core/support/Logging.h"

#include <QFileInfo>
#include <QStandardPaths>

#include <hunspell/hunspell.hxx>

TOLVANE_DEFINE_LOG(lcSpellChecker, "SpellChecker")

namespace tolvane {

namespace {

QString findDictionaryFolder()
{
    QStringList folders{QStringLiteral("/usr/share/hunspell"), QStringLiteral("/usr/share/myspell")};
    for (const QString& data : QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation))
        folders.prepend(data + QStringLiteral("/hunspell"));
    for (const QString& folder : folders) {
        if (QFileInfo::exists(folder + QStringLiteral("/en_US.aff")) &&
            QFileInfo::exists(folder + QStringLiteral("/en_US.dic")))
            return folder;
    }
    return {};
}

} // namespace

HunspellSpellChecker::HunspellSpellChecker(const QString& dictionaryFolder)
{
    const QString folder = dictionaryFolder.isEmpty() ? findDictionaryFolder() : dictionaryFolder;
    const QString aff = folder + QStringLiteral("/en_US.aff");
    const QString dic = folder + QStringLiteral("/en_US.dic");
    if (folder.isEmpty() || !QFileInfo::exists(aff) || !QFileInfo::exists(dic)) {
        qCWarning(lcSpellChecker) << "No en_US dictionary found (install hunspell-en-us); spelling is not corrected";
        return;
    }
    m_hunspell = std::make_unique<Hunspell>(QFile::encodeName(aff).constData(), QFile::encodeName(dic).constData());
}

HunspellSpellChecker::~HunspellSpellChecker() = default;

bool HunspellSpellChecker::isCorrect(const QString& word) const
{
    if (!m_hunspell || word.isEmpty())
        return true;
    const QMutexLocker lock(&m_mutex);
    return m_hunspell->spell(word.toStdString());
}

QStringList HunspellSpellChecker::suggestions(const QString& word) const
{
    if (!m_hunspell || word.isEmpty())
        return {};
    const QMutexLocker lock(&m_mutex);
    QStringList result;
    for (const std::string& suggestion : m_hunspell->suggest(word.toStdString()))
        result.append(QString::fromStdString(suggestion));
    return result;
}

} // namespace tolvane
