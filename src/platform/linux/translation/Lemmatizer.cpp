// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/translation/Lemmatizer.h"

#include <QHash>

namespace tolvane {

namespace {

void addStripped(QStringList& out, const QString& word, const QString& suffix, const QString& replacement,
                 int minimumStem = 2)
{
    if (word.size() - suffix.size() >= minimumStem && word.endsWith(suffix))
        out.append(word.left(word.size() - suffix.size()) + replacement);
}

// Strong and irregular German verbs: the forms a learner meets most, pointing to the infinitive.
const QHash<QString, QString>& germanIrregular()
{
    static const QHash<QString, QString> table = [] {
        QHash<QString, QString> t;
        const char* rows[][2] = {
            {"bin", "sein"},
            {"bist", "sein"},
            {"ist", "sein"},
            {"sind", "sein"},
            {"seid", "sein"},
            {"war", "sein"},
            {"warst", "sein"},
            {"waren", "sein"},
            {"wart", "sein"},
            {"gewesen", "sein"},
            {"wäre", "sein"},
            {"wären", "sein"},
            {"sei", "sein"},
            {"habe", "haben"},
            {"hast", "haben"},
            {"hat", "haben"},
            {"habt", "haben"},
            {"hatte", "haben"},
            {"hatten", "haben"},
            {"hattest", "haben"},
            {"gehabt", "haben"},
            {"hätte", "haben"},
            {"wird", "werden"},
            {"wirst", "werden"},
            {"werde", "werden"},
            {"wurde", "werden"},
            {"wurden", "werden"},
            {"geworden", "werden"},
            {"kann", "können"},
            {"kannst", "können"},
            {"konnte", "können"},
            {"könnte", "können"},
            {"muss", "müssen"},
            {"musst", "müssen"},
            {"musste", "müssen"},
            {"will", "wollen"},
            {"willst", "wollen"},
            {"wollte", "wollen"},
            {"darf", "dürfen"},
            {"durfte", "dürfen"},
            {"soll", "sollen"},
            {"sollte", "sollen"},
            {"mag", "mögen"},
            {"möchte", "mögen"},
            {"möchten", "mögen"},
            {"weiß", "wissen"},
            {"weißt", "wissen"},
            {"wusste", "wissen"},
            {"gewusst", "wissen"},
            {"ging", "gehen"},
            {"gingen", "gehen"},
            {"gegangen", "gehen"},
            {"kam", "kommen"},
            {"kamen", "kommen"},
            {"gekommen", "kommen"},
            {"sah", "sehen"},
            {"sahen", "sehen"},
            {"siehst", "sehen"},
            {"sieht", "sehen"},
            {"gesehen", "sehen"},
            {"aß", "essen"},
            {"aßen", "essen"},
            {"isst", "essen"},
            {"gegessen", "essen"},
            {"trank", "trinken"},
            {"getrunken", "trinken"},
            {"schlief", "schlafen"},
            {"schläft", "schlafen"},
            {"geschlafen", "schlafen"},
            {"schrieb", "schreiben"},
            {"geschrieben", "schreiben"},
            {"las", "lesen"},
            {"liest", "lesen"},
            {"gelesen", "lesen"},
            {"sprach", "sprechen"},
            {"spricht", "sprechen"},
            {"sprichst", "sprechen"},
            {"gesprochen", "sprechen"},
            {"gab", "geben"},
            {"gibt", "geben"},
            {"gibst", "geben"},
            {"gegeben", "geben"},
            {"nahm", "nehmen"},
            {"nimmt", "nehmen"},
            {"nimmst", "nehmen"},
            {"genommen", "nehmen"},
            {"fand", "finden"},
            {"gefunden", "finden"},
            {"stand", "stehen"},
            {"gestanden", "stehen"},
            {"lief", "laufen"},
            {"läuft", "laufen"},
            {"gelaufen", "laufen"},
            {"fuhr", "fahren"},
            {"fährt", "fahren"},
            {"gefahren", "fahren"},
            {"hielt", "halten"},
            {"hält", "halten"},
            {"gehalten", "halten"},
            {"ließ", "lassen"},
            {"lässt", "lassen"},
            {"gelassen", "lassen"},
            {"tat", "tun"},
            {"getan", "tun"},
            {"brachte", "bringen"},
            {"gebracht", "bringen"},
            {"dachte", "denken"},
            {"gedacht", "denken"},
            {"kannte", "kennen"},
            {"gekannt", "kennen"},
            {"half", "helfen"},
            {"hilft", "helfen"},
            {"geholfen", "helfen"},
            {"trug", "tragen"},
            {"trägt", "tragen"},
            {"getragen", "tragen"},
            {"fiel", "fallen"},
            {"fällt", "fallen"},
            {"gefallen", "fallen"},
            {"rief", "rufen"},
            {"gerufen", "rufen"},
            {"saß", "sitzen"},
            {"gesessen", "sitzen"},
            {"lag", "liegen"},
            {"gelegen", "liegen"},
            {"blieb", "bleiben"},
            {"geblieben", "bleiben"},
            {"starb", "sterben"},
            {"stirbt", "sterben"},
            {"gestorben", "sterben"},
            {"flog", "fliegen"},
            {"geflogen", "fliegen"},
            {"schwamm", "schwimmen"},
            {"geschwommen", "schwimmen"},
            {"sang", "singen"},
            {"gesungen", "singen"},
            {"verstand", "verstehen"},
            {"vergaß", "vergessen"},
            {"vergisst", "vergessen"},
            {"begann", "beginnen"},
            {"begonnen", "beginnen"},
            {"wusch", "waschen"},
            {"wäscht", "waschen"},
            {"gewaschen", "waschen"},
            {"traf", "treffen"},
            {"trifft", "treffen"},
            {"getroffen", "treffen"},
            {"zog", "ziehen"},
            {"gezogen", "ziehen"},
            {"schnitt", "schneiden"},
            {"geschnitten", "schneiden"},
            {"hieß", "heißen"},
            {"geheißen", "heißen"},
            {"lud", "laden"},
            {"wuchs", "wachsen"},
            {"wächst", "wachsen"},
            {"gewachsen", "wachsen"},
            {"vergessen", "vergessen"},
            {"Häuser", "Haus"},
            {"Bäume", "Baum"},
            {"Bücher", "Buch"},
            {"Männer", "Mann"},
            {"Frauen", "Frau"},
            {"Kinder", "Kind"},
            {"Hände", "Hand"},
            {"Städte", "Stadt"},
            {"Väter", "Vater"},
            {"Mütter", "Mutter"},
            {"Brüder", "Bruder"},
            {"Töchter", "Tochter"},
            {"Länder", "Land"},
            {"Wörter", "Wort"},
            {"Äpfel", "Apfel"},
            {"Vögel", "Vogel"},
            {"Füße", "Fuß"},
            {"Nächte", "Nacht"},
            {"Gärten", "Garten"},
            {"Züge", "Zug"},
            {"Stühle", "Stuhl"},
            {"Köpfe", "Kopf"},
            {"Zähne", "Zahn"},
            {"Dörfer", "Dorf"},
            {"Wälder", "Wald"},
            {"Gläser", "Glas"},
            {"Blätter", "Blatt"},
            {"Fächer", "Fach"},
            {"Türen", "Tür"},
            {"Augen", "Auge"},
            {"Tage", "Tag"},
            {"Jahre", "Jahr"},
        };
        for (const auto& row : rows)
            t.insert(QString::fromUtf8(row[0]), QString::fromUtf8(row[1]));
        return t;
    }();
    return table;
}

} // namespace

QStringList Lemmatizer::guesses(const QString& word, const QString& language)
{
    if (word.isEmpty())
        return {};
    if (language == QLatin1String("en"))
        return english(word.toLower());
    if (language == QLatin1String("de"))
        return german(word);
    if (language == QLatin1String("fr") || language == QLatin1String("es") || language == QLatin1String("it") ||
        language == QLatin1String("pt"))
        return romance(word.toLower(), language);
    if (language == QLatin1String("ru"))
        return russian(word.toLower());
    if (language == QLatin1String("ko"))
        return korean(word);
    if (language == QLatin1String("zh"))
        return chinese(word);
    return {};
}

QString Lemmatizer::irregularLemma(const QString& word, const QString& language)
{
    if (language != QLatin1String("de"))
        return {};
    return germanIrregular().value(word);
}

QStringList Lemmatizer::english(const QString& w)
{
    QStringList out;
    addStripped(out, w, QStringLiteral("ies"), QStringLiteral("y"));
    addStripped(out, w, QStringLiteral("ves"), QStringLiteral("f"));
    addStripped(out, w, QStringLiteral("es"), QString());
    addStripped(out, w, QStringLiteral("s"), QString());
    addStripped(out, w, QStringLiteral("ied"), QStringLiteral("y"));
    addStripped(out, w, QStringLiteral("ed"), QString());
    addStripped(out, w, QStringLiteral("ed"), QStringLiteral("e"));
    addStripped(out, w, QStringLiteral("d"), QString());
    if (w.size() > 5 && w.endsWith(QLatin1String("ed")) && w.at(w.size() - 3) == w.at(w.size() - 4))
        out.append(w.left(w.size() - 3)); // stopped -> stop
    addStripped(out, w, QStringLiteral("ing"), QString());
    addStripped(out, w, QStringLiteral("ing"), QStringLiteral("e"));
    if (w.size() > 6 && w.endsWith(QLatin1String("ing")) && w.at(w.size() - 4) == w.at(w.size() - 5))
        out.append(w.left(w.size() - 4)); // running -> run
    addStripped(out, w, QStringLiteral("ier"), QStringLiteral("y"));
    addStripped(out, w, QStringLiteral("iest"), QStringLiteral("y"));
    addStripped(out, w, QStringLiteral("er"), QString());
    addStripped(out, w, QStringLiteral("est"), QString());
    addStripped(out, w, QStringLiteral("ly"), QString(), 3);
    return out;
}

QStringList Lemmatizer::german(const QString& w)
{
    QStringList out;
    const auto& irregular = germanIrregular();
    if (auto it = irregular.constFind(w); it != irregular.cend())
        out.append(*it);
    const QString lower = w.toLower();
    if (auto it = irregular.constFind(lower); it != irregular.cend())
        out.append(*it);
    // Verb endings back to the infinitive, then noun and adjective endings.
    for (const char* suffix : {"st", "t", "e", "te", "ten", "test", "tet", "et"})
        addStripped(out, lower, QString::fromLatin1(suffix), QStringLiteral("en"));
    if (lower.startsWith(QLatin1String("ge")) && lower.endsWith(QLatin1Char('t')) && lower.size() > 5)
        out.append(lower.mid(2, lower.size() - 3) + QStringLiteral("en")); // gemacht -> machen
    for (const char* suffix : {"en", "n", "e", "er", "es", "s", "em", "ern", "nen"})
        addStripped(out, w, QString::fromLatin1(suffix), QString(), 3);
    return out;
}

QStringList Lemmatizer::romance(const QString& w, const QString& language)
{
    QStringList out;
    if (language == QLatin1String("fr")) {
        addStripped(out, w, QStringLiteral("aux"), QStringLiteral("al"));
        addStripped(out, w, QStringLiteral("x"), QString());
        addStripped(out, w, QStringLiteral("s"), QString());
        addStripped(out, w, QStringLiteral("es"), QString());
        addStripped(out, w, QStringLiteral("e"), QString());
        addStripped(out, w, QStringLiteral("é"), QStringLiteral("er"));
        addStripped(out, w, QStringLiteral("ée"), QStringLiteral("er"));
        addStripped(out, w, QStringLiteral("és"), QStringLiteral("er"));
        addStripped(out, w, QStringLiteral("ons"), QStringLiteral("er"));
        addStripped(out, w, QStringLiteral("ez"), QStringLiteral("er"));
        addStripped(out, w, QStringLiteral("ent"), QStringLiteral("er"));
        return out;
    }
    if (language == QLatin1String("it")) {
        addStripped(out, w, QStringLiteral("i"), QStringLiteral("o"));
        addStripped(out, w, QStringLiteral("i"), QStringLiteral("e"));
        addStripped(out, w, QStringLiteral("e"), QStringLiteral("a"));
        addStripped(out, w, QStringLiteral("a"), QStringLiteral("o"));
        addStripped(out, w, QStringLiteral("ato"), QStringLiteral("are"));
        addStripped(out, w, QStringLiteral("uto"), QStringLiteral("ere"));
        addStripped(out, w, QStringLiteral("ito"), QStringLiteral("ire"));
        return out;
    }
    addStripped(out, w, QStringLiteral("es"), QString());
    addStripped(out, w, QStringLiteral("s"), QString());
    addStripped(out, w, QStringLiteral("a"), QStringLiteral("o"));
    addStripped(out, w, QStringLiteral("as"), QStringLiteral("o"));
    addStripped(out, w, QStringLiteral("ões"), QStringLiteral("ão"));
    addStripped(out, w, QStringLiteral("ado"), QStringLiteral("ar"));
    addStripped(out, w, QStringLiteral("ido"), QStringLiteral("er"));
    addStripped(out, w, QStringLiteral("ido"), QStringLiteral("ir"));
    return out;
}

QStringList Lemmatizer::russian(const QString& w)
{
    QStringList out;
    // Verbs: present and past tense back to the infinitive.
    const char* verbEndings[][2] = {{"ает", "ать"}, {"ают", "ать"}, {"аешь", "ать"}, {"аю", "ать"},  {"яет", "ять"},
                                    {"яют", "ять"}, {"ит", "ить"},  {"ят", "ить"},   {"ишь", "ить"}, {"ю", "ить"},
                                    {"ет", "еть"},  {"ал", "ать"},  {"ала", "ать"},  {"ало", "ать"}, {"али", "ать"},
                                    {"ил", "ить"},  {"ила", "ить"}, {"или", "ить"},  {"ел", "еть"},  {"ела", "еть"},
                                    {"ет", "ать"},  {"ут", "ать"},  {"у", "ать"},    {"ешь", "ать"}};
    for (const auto& ending : verbEndings)
        addStripped(out, w, QString::fromUtf8(ending[0]), QString::fromUtf8(ending[1]));
    // Nouns and adjectives: case and number endings back to the dictionary form.
    const char* nounEndings[][2] = {
        {"ы", ""},    {"и", ""},     {"а", ""},     {"у", ""},    {"ом", ""},   {"е", ""},    {"ов", ""},
        {"ам", ""},   {"ах", ""},    {"и", "а"},    {"ы", "а"},   {"у", "а"},   {"ой", "а"},  {"е", "а"},
        {"и", "я"},   {"ю", "я"},    {"и", "ь"},    {"ая", "ый"}, {"ая", "ий"}, {"ое", "ый"}, {"ые", "ый"},
        {"ие", "ий"}, {"ого", "ый"}, {"ому", "ый"}, {"ой", "ый"}, {"ую", "ый"}, {"ых", "ый"}, {"ая", "ой"},
        {"ие", "ой"}, {"ее", "ий"},  {"ами", ""},   {"ами", "а"}, {"ями", "я"}, {"ями", "ь"}};
    for (const auto& ending : nounEndings)
        addStripped(out, w, QString::fromUtf8(ending[0]), QString::fromUtf8(ending[1]));
    return out;
}

namespace {

constexpr char16_t hangulBase = 0xAC00;
constexpr char16_t hangulLast = 0xD7A3;

bool isHangulSyllable(QChar c)
{
    return c.unicode() >= hangulBase && c.unicode() <= hangulLast;
}

} // namespace

QStringList Lemmatizer::korean(const QString& w)
{
    QStringList out;
    // Particles after nouns, longest first.
    for (const char* particle :
         {"이었어요", "이에요", "입니다", "에서는", "에게서", "으로는", "한테서", "에서", "에게", "으로",
          "까지",     "부터",   "처럼",   "보다",   "하고",   "한테",   "께서",   "이랑", "마다", "밖에",
          "예요",     "이다",   "이야",   "은",     "는",     "이",     "가",     "을",   "를",   "에",
          "의",       "도",     "와",     "과",     "로",     "만",     "들",     "께",   "랑"}) {
        const QString p = QString::fromUtf8(particle);
        if (w.size() > p.size() && w.endsWith(p)) {
            const QString noun = w.left(w.size() - p.size());
            out.append(noun);
            // The plural 들 comes before the particle: 아이들이 -> 아이
            if (noun.size() > 1 && noun.endsWith(QStringLiteral("들")))
                out.append(noun.chopped(1));
        }
    }
    // Verb and adjective endings back to the stem, step by step: endings come off, the past
    // tense's ㅆ comes out of its syllable, and contracted vowels open up again (봐 -> 보,
    // 마셔 -> 마시, 해 -> 하, 써 -> 쓰). Every stem reached is offered with -다.
    static const QStringList endings = [] {
        QStringList e;
        for (const char* ending : {"습니다", "습니까", "니다", "세요", "으세요", "지만", "으면", "어요", "아요",
                                   "어서",   "아서",   "어도", "아도", "는데",   "니까", "요",   "다",   "고",
                                   "면",     "서",     "지",   "게",   "기",     "는",   "은",   "을"})
            e.append(QString::fromUtf8(ending));
        return e;
    }();
    const QString da = QStringLiteral("다");
    QStringList frontier{w}, stems;
    for (int depth = 0; depth < 4 && !frontier.isEmpty(); ++depth) {
        QStringList next;
        auto offer = [&](const QString& stem) {
            if (!stem.isEmpty() && !stems.contains(stem) && !next.contains(stem))
                next.append(stem);
        };
        for (const QString& form : frontier) {
            for (const QString& e : endings) {
                if (form.size() > e.size() && form.endsWith(e))
                    offer(form.left(form.size() - e.size()));
            }
            const QChar last = form.back();
            if (!isHangulSyllable(last))
                continue;
            const QString head = form.left(form.size() - 1);
            const int index = last.unicode() - hangulBase;
            const int initial = index / (21 * 28), vowel = (index / 28) % 21, coda = index % 28;
            auto syllable = [&](int v, int f) { return QChar(char16_t(hangulBase + (initial * 21 + v) * 28 + f)); };
            if (coda == 17) // ㅂ of ㅂ니다 folded into the stem's last syllable
                offer(head + syllable(vowel, 0));
            if (coda == 4) { // ㄴ of the adjective before a noun: 큰, 빈, 조용한, and 긴 from 길다
                offer(head + syllable(vowel, 0));
                offer(head + syllable(vowel, 8));
            }
            // -운 of a ㅂ-adjective: 뜨거운 -> 뜨겁, 쉬운 -> 쉽
            if (initial == 11 && vowel == 13 && coda == 4 && !head.isEmpty() && isHangulSyllable(head.back()) &&
                (head.back().unicode() - hangulBase) % 28 == 0)
                offer(head.left(head.size() - 1) + QChar(char16_t(head.back().unicode() + 17)));
            if (coda == 20) // ㅆ: the past tense
                offer(head + syllable(vowel, 0));
            // Irregular stems, each after the regular reading (which the dictionary may also have):
            const bool headOpen =
                !head.isEmpty() && isHangulSyllable(head.back()) && (head.back().unicode() - hangulBase) % 28 == 0;
            const int headCoda =
                !head.isEmpty() && isHangulSyllable(head.back()) ? (head.back().unicode() - hangulBase) % 28 : -1;
            // ㅂ before a vowel became 우/워/와: 추워 -> 춥, 도와 -> 돕, 어려우면 -> 어렵
            if (initial == 11 && coda == 0 && (vowel == 14 || vowel == 9 || vowel == 13) && headOpen)
                offer(head.left(head.size() - 1) + QChar(char16_t(head.back().unicode() + 17)));
            // 르 lost its vowel and doubled the ㄹ: 몰라 -> 모르, 불러 -> 부르
            if (initial == 5 && coda == 0 && (vowel == 0 || vowel == 4) && headCoda == 8)
                offer(head.left(head.size() - 1) + QChar(char16_t(head.back().unicode() - 8)) + QStringLiteral("르"));
            // ㅎ dropped: 빨간 -> 빨갛, 하얀 -> 하얗, 빨개 -> 빨갛, 그래 -> 그렇
            if (coda == 4)
                offer(head + syllable(vowel, 27));
            if (coda == 0 && vowel == 1) {
                offer(head + syllable(0, 27));
                offer(head + syllable(4, 27));
            }
            if (coda == 0 && vowel == 3)
                offer(head + syllable(2, 27));
            // ㄷ became ㄹ before a vowel (들어 -> 듣, 걸어 -> 걷); ㅅ dropped (지어 -> 짓); ㄹ dropped
            // before ㄴ, ㅂ and ㅅ (사는 -> 살, 아세요 -> 알).
            if (coda == 8)
                offer(head + syllable(vowel, 7));
            if (coda == 0 && form.size() < w.size()) {
                offer(head + syllable(vowel, 19));
                offer(head + syllable(vowel, 8));
            }
            if (coda == 0) {
                switch (vowel) {
                case 9:
                    offer(head + syllable(8, 0));
                    break; // ㅘ -> ㅗ
                case 14:
                    offer(head + syllable(13, 0));
                    break; // ㅝ -> ㅜ
                case 6:
                    offer(head + syllable(20, 0));
                    break; // ㅕ -> ㅣ
                case 10:
                    offer(head + syllable(11, 0));
                    break; // ㅙ -> ㅚ
                case 1:
                    offer(head + syllable(0, 0));
                    break; // 해 -> 하
                case 4:
                    offer(head + syllable(18, 0));
                    break; // 써 -> 쓰
                case 0:
                    offer(head + syllable(18, 0));
                    break; // 바빠 -> 바쁘
                default:
                    break;
                }
                if ((vowel == 4 || vowel == 0) && initial == 11 && form.size() > 1) // a bare 어 / 아 ending
                    offer(head);
            }
        }
        stems += next;
        frontier = next;
    }
    for (const QString& stem : stems) {
        if (!stem.endsWith(da))
            out.append(stem + da);
    }
    if (!w.endsWith(da))
        out.append(w + da);
    return out;
}

QStringList Lemmatizer::chinese(const QString& w)
{
    QStringList out;
    for (const char* particle : {"了", "过", "着", "们", "的", "地", "得"}) {
        const QString p = QString::fromUtf8(particle);
        if (w.size() > p.size() && w.endsWith(p))
            out.append(w.left(w.size() - p.size()));
    }
    return out;
}

} // namespace tolvane
