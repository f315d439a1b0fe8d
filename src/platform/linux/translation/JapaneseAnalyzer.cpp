// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/translation/JapaneseAnalyzer.h"

#include <mecab.h>

#include <QStringList>

namespace tolvane {

void JapaneseAnalyzer::Deleter::operator()(void* tagger) const
{
    mecab_destroy(static_cast<mecab_t*>(tagger));
}

JapaneseAnalyzer::JapaneseAnalyzer()
    : m_tagger(mecab_new2(""))
{}

JapaneseAnalyzer::~JapaneseAnalyzer() = default;

QList<JapaneseAnalyzer::Token> JapaneseAnalyzer::tokens(const QString& text) const
{
    QList<Token> out;
    if (!m_tagger || text.isEmpty())
        return out;
    const QByteArray utf8 = text.toUtf8();
    auto* tagger = static_cast<mecab_t*>(m_tagger.get());
    for (const mecab_node_t* node = mecab_sparse_tonode2(tagger, utf8.constData(), std::size_t(utf8.size())); node;
         node = node->next) {
        if (node->stat == MECAB_BOS_NODE || node->stat == MECAB_EOS_NODE)
            continue;
        Token token;
        token.surface = QString::fromUtf8(node->surface, node->length);
        const QStringList features = QString::fromUtf8(node->feature).split(QLatin1Char(','));
        token.partOfSpeech = features.value(0);
        token.subclass = features.value(1);
        const QString base = features.value(6);
        token.baseForm = base.isEmpty() || base == QLatin1String("*") ? token.surface : base;
        out.append(token);
    }
    return out;
}

} // namespace tolvane
