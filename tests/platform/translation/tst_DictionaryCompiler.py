#!/usr/bin/python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""The dictionary compiler's readers and ranking, on small made-up entries."""
import contextlib
import io
import math
import os
import sys
import tempfile
import unittest

sys.path.insert(0, sys.argv.pop(1) if len(sys.argv) > 1 else os.path.join(os.path.dirname(__file__), "../../../tools/dictionaries"))
import tdict_compile as tc  # noqa: E402
import tdict_query as tq  # noqa: E402


def fake_dictd(bodies):
    """Replaces the dictd reader with the given entry bodies."""
    return lambda name: iter(bodies)


class Readers(unittest.TestCase):
    def setUp(self):
        self.saved = tc.dictd_entries

    def tearDown(self):
        tc.dictd_entries = self.saved

    def test_mueller_senses_links_and_examples(self):
        tc.dictd_entries = fake_dictd([
            "house\n   1. _n. [haus]\n      1) дом; жилище; здание\n      2) _разг. театр; to keep house вести хозяйство\n"
            "   2. _v. [hauz]\n      1) предоставлять жилище; обеспечивать жильём\n",
            "went\n   [went] _p. от go 1\n",
            "beer\n   _I  [bɪɜ] _n. пиво; small beer\n      а) слабое пиво;\n   _II [bɪɜ] _n. _текст. ход (основы)\n",
        ])
        table = tc.Table("mueller7")
        tc.read_mueller(table)
        senses = table.senses["house"]
        self.assertEqual(senses[0].pos, "n")
        self.assertEqual(senses[0].cands, ["дом", "жилище", "здание"])
        self.assertEqual(senses[1].cands, ["театр"])  # the English example ends the sense
        self.assertTrue(senses[1].domain)
        verb = [s for s in senses if s.pos == "v"][0]
        self.assertLessEqual(verb.order, 1)  # the verb starts again near the top
        self.assertEqual(table.redirects["went"], "go")
        # Numbered homonyms are words of their own, each with its main sense.
        self.assertEqual([(s.cands, s.order, s.domain) for s in table.senses["beer"]],
                         [(["пиво"], 0, False), (["ход"], 0, True)])

    def test_freedict_headwords_tags_notes_and_labels_of_one_word(self):
        tc.dictd_entries = fake_dictd([
            "have /hˈav/ (had /hˈad/ <>, had /hˈad/ <>) <v>\nbesitzen, haben <v, trans> [ugs.]\n"
            "      \"have and to hold\"  - besitzen\n   Synonyms: {hold}\n",
            "dog /dɒg/\nHund <masc> [zool.]\n",
            "dog /dɒg/\nKlammhaken <masc> [techn.]\n",
            "soon /sˈuːn/\nbald, in Bälde [geh.]\n",
            "etw. (an einen Ort) werfen /vˈɛɾfən/ <v>\nthrow sth. <v>\n",
        ])
        table = tc.Table("freedict")
        tc.read_freedict("x", True, False, table)
        self.assertEqual(table.senses["have"][0].cands, ["besitzen", "haben"])
        self.assertEqual(table.senses["have"][0].pos, "v")
        self.assertFalse(table.senses["dog"][0].domain)  # zoology is everyday for a dog
        self.assertTrue(table.senses["dog"][1].domain)
        plain, labelled = table.senses["soon"]
        self.assertEqual((plain.cands, plain.marked, labelled.cands, labelled.marked),
                         (["bald"], False, ["in Bälde"], True))
        self.assertEqual(table.senses["werfen"][0].cands, ["throw"])

    def test_wikdict_japanese_lines_numbers_and_labels(self):
        tc.dictd_entries = fake_dictd([
            "happy //ˈhæpi// <adj>\n1. 幸せ, 幸福, 嬉しい\ncontented, joyous\n2. 幸運\nfortunate, lucky\n",
            "free //fɹiː// /[fɹɪi̯]/ <adj>\n1. 自由 2.\nnot imprisoned\n 3.\nunconstrained\n2. そのままの\nunobstructed\n",
            "sick //sɪk// <adj>\nヤバい\nslang: very good, excellent\n",
            "word //wɜːd// <n>\n1. 言語, 言葉\ncomputing: fixed-size group of bits\n",
            "chan /tʃˈan/ <suffix>\nゃん\n",
        ])
        table = tc.Table("wikdict")
        tc.read_wikdict_japanese(table)
        self.assertEqual([(s.pos, s.cands, s.order) for s in table.senses["happy"]],
                         [("adj", ["幸せ", "幸福", "嬉しい"], 0), ("adj", ["幸運"], 1)])
        # A sense number left at a line's end is no word; definitions are never candidates.
        self.assertEqual([s.cands for s in table.senses["free"]], [["自由"], ["そのままの"]])
        self.assertTrue(table.senses["sick"][0].marked)
        self.assertTrue(table.senses["word"][0].domain)
        self.assertFalse(table.senses["word"][0].marked)

    def test_clean_removes_nested_brackets_to_and_object_slots(self):
        self.assertEqual(tc.clean("dog (Canis (lupus) familiaris)", True), "dog")
        self.assertEqual(tc.clean("to buy", True), "buy")
        self.assertEqual(tc.clean("sth. (formal) hold", True), "hold")
        self.assertEqual(tc.clean("etw. werfen", False), "werfen")
        self.assertEqual(tc.clean("jdm. etw. geben", False), "geben")
        self.assertEqual(tc.without_placeholders("catch sth."), "catch")
        self.assertEqual(tc.clean("truth about sth", True), "truth about")  # CC-CEDICT writes no dot
        self.assertEqual(tc.clean("so-called", True), "so-called")
        self.assertEqual(tc.without_placeholders("Mr. Smith"), "Mr. Smith")


class Ranking(unittest.TestCase):
    def test_back_translation_and_frequency_beat_source_order(self):
        forward = tc.Table("ding", 0.15)
        forward.add("dog", tc.Sense("n", ["Klammhaken"], False, 0))
        forward.add("dog", tc.Sense("n", ["Hund"], False, 1))
        backward = tc.Table("ding", 0.15)
        backward.add("Hund", tc.Sense("n", ["dog"], False, 0))
        backward.add("Klammhaken", tc.Sense("n", ["dog", "clamp"], True, 0))
        d = tc.Direction("en", "de")
        d.direct, d.reverse, d.freq = [forward], [backward], {"hund": 40, "klammhaken": 1}
        entries, confidence = tc.rank_direction(d)
        self.assertEqual(entries["dog"][0], "n\tHund|Klammhaken")
        self.assertGreater(confidence["dog"], 0)

    def test_reversed_direction_prefers_the_first_sense(self):
        source = tc.Table("mueller7")
        source.add("house", tc.Sense("n", ["дом", "здание"], False, 0))
        source.add("home", tc.Sense("n", ["дом", "жилище"], False, 0))
        source.add("building", tc.Sense("n", ["здание"], False, 0))
        source.add("cottage", tc.Sense("n", ["домик", "дом"], False, 0))
        d = tc.Direction("ru", "en")
        d.reverse, d.freq = [source], {"house": 300, "home": 200, "building": 100, "cottage": 5}
        entries, _ = tc.rank_direction(d)
        first = entries["дом"][0].split("\t")[1].split("|")
        self.assertEqual(first[:2], ["house", "home"])
        self.assertEqual(entries["здание"][0].split("\t")[1].split("|")[0], "building")

    def test_read_only_backwards_the_common_english_word_wins(self):
        source = tc.Table("mueller7")
        source.add("ale", tc.Sense("n", ["пиво"], False, 0))
        source.add("beer", tc.Sense("n", ["напиток"], False, 0))
        source.add("beer", tc.Sense("n", ["пиво"], False, 1))
        d = tc.Direction("ru", "en")
        d.reverse = [source]
        d.zipf = tc.Frequencies("dasher", {"beer": 4.5, "ale": 2.5}, 2.0)
        entries, _ = tc.rank_direction(d)
        self.assertEqual(entries["пиво"][0], "n\tbeer|ale")

    def test_a_second_source_read_backwards_confirms_a_gloss_and_offers_adjectives(self):
        edict = tc.Table("edict")
        edict.keeps_senses = True
        edict.add("肉", tc.Sense("n", ["flesh"], False, 0))
        edict.add("肉", tc.Sense("n", ["meat", "thickness"], False, 1))
        edict.add("幸せ", tc.Sense("n", ["happiness", "luck"], False, 0))
        wik = tc.Table("wikdict", 0.3)
        wik.add("meat", tc.Sense("n", ["肉", "身"], False, 0))
        wik.add("happy", tc.Sense("adj", ["幸せ", "幸福"], False, 0))
        d = tc.Direction("ja", "en")
        d.direct, d.reverse = [edict], [wik]
        d.zipf = tc.Frequencies("dasher", {"flesh": 3.0, "meat": 3.6, "happy": 4.5, "happiness": 3.5}, 2.0)
        entries, _ = tc.rank_direction(d)
        self.assertTrue(entries["肉"][0].startswith("n\tmeat|"))
        self.assertIn("adj\thappy", entries["幸せ"])
        # Where the word is mostly used as an adjective, the adjective leads.
        d.source_classes = {"幸せ": {"adj"}}
        d.class_bonus = d.other_class_penalty = tc.JAPANESE_CLASS_WEIGHT
        entries, _ = tc.rank_direction(d, english_pos={})
        self.assertEqual(entries["幸せ"][0], "adj\thappy")
        self.assertTrue(entries["肉"][0].startswith("n\tmeat|"))

    def test_a_plural_gloss_offers_its_singular_unless_the_plural_is_a_word_of_its_own(self):
        table = tc.Table("cedict")
        table.keeps_senses = True
        table.add("蔬菜", tc.Sense("n", ["vegetables"], False, 0))
        table.add("衣服", tc.Sense("n", ["clothes"], False, 0))
        table.add("武器", tc.Sense("n", ["weapon", "arms"], False, 0))
        table.add("的", tc.Sense("", ["of"], False, 0))
        d = tc.Direction("zh", "en")
        d.direct = [table]
        lemmas = {"vegetables": [("vegetable", "n")], "clothes": [("cloth", "n")], "arms": [("arm", "n")],
                  "of": [("of", "pr")]}
        entries, _ = tc.rank_direction(d, english_pos={"clothes": {"n": 9}, "arms": {"n": 5}}, english_lemmas=lemmas)
        self.assertEqual(entries["蔬菜"], ["n\tvegetables|vegetable"])
        self.assertEqual(entries["衣服"], ["n\tclothes"])
        self.assertEqual(entries["武器"], ["n\tweapon|arms"])
        self.assertEqual(entries["的"], ["\tof"])

    def test_a_russian_plural_gloss_answers_only_for_a_singular_without_words_of_its_own(self):
        source = tc.Table("mueller7")
        source.add("fruit", tc.Sense("n", ["плод", "фрукты"], False, 0))
        source.add("hour", tc.Sense("n", ["час"], False, 0))
        source.add("watch", tc.Sense("n", ["часы"], False, 0))
        d = tc.Direction("ru", "en")
        d.reverse, d.freq = [source], {"fruit": 50, "hour": 80, "watch": 60}
        lemmas = {"фрукты": [("фрукт", "n")], "часы": [("час", "n")], "плод": [("плодить", "v")]}
        entries, _ = tc.rank_direction(d, source_lemmas=lemmas)
        self.assertEqual(entries["фрукт"], ["n\tfruit"])
        self.assertEqual(entries["час"], ["n\thour"])
        self.assertEqual(entries["часы"], ["n\twatch"])

    def test_russian_verbs_share_their_aspect_partners_words_and_a_qualified_gloss_answers_for_its_head(self):
        tc.TAGGED_LEMMAS["ru"] = {("прийти", "vblex"): "<vblex>"}
        try:
            source = tc.Table("mueller7")
            source.add("die", tc.Sense("v", ["умереть"], False, 0))
            source.add("perish", tc.Sense("v", ["погибать", "умирать"], False, 0))
            source.add("come", tc.Sense("v", ["приходить"], False, 0))
            source.add("breakfast", tc.Sense("n", ["утренний завтрак"], False, 0))
            source.add("luncheon", tc.Sense("n", ["завтрак"], False, 0))
            d = tc.Direction("ru", "en")
            d.reverse = [source]
            d.zipf = tc.Frequencies("subtlex", {"die": 5.4, "perish": 3.0, "come": 6.0, "breakfast": 4.8,
                                                "luncheon": 2.8}, 1.0)
            entries, _ = tc.rank_direction(d)
        finally:
            del tc.TAGGED_LEMMAS["ru"]
        self.assertEqual(entries["умирать"][0], "v\tdie|perish")
        self.assertEqual(entries["прийти"][0], "v\tcome")  # known to the analyser only
        self.assertEqual(entries["завтрак"][0], "n\tbreakfast|luncheon")
        self.assertIn("выиграть", list(tc.aspect_partners("выигрывать")))
        self.assertIn("останавливаться", list(tc.aspect_partners("остановиться")))

    def test_an_english_gloss_offers_the_word_it_is_about_where_that_is_far_commoner(self):
        source = tc.Table("cedict")
        source.add("牛奶", tc.Sense("", ["cow's milk"], False, 0))
        source.add("热狗", tc.Sense("", ["hot dog"], False, 0))
        source.add("等", tc.Sense("", ["wait for"], False, 0))
        d = tc.Direction("zh", "en")
        d.direct = [source]
        d.zipf = tc.Frequencies("subtlex", {"milk": 5.0, "cow": 3.6, "s": 6.5, "hot": 5.3, "dog": 5.3,
                                            "wait": 5.6, "for": 6.8}, 1.0)
        source.add("真相", tc.Sense("", ["truth about"], False, 0))  # "truth about sth", cleaned
        d.zipf.values.update({"truth": 5.0, "about": 6.3})
        english_pos = {"hot": {"adj": 40}, "wait": {"v": 30, "n": 5}, "milk": {"n": 20}, "dog": {"n": 30},
                       "truth": {"n": 25}, "about": {"adv": 9}}
        entries, _ = tc.rank_direction(d, english_pos=english_pos, english_lemmas={})
        self.assertEqual(entries["牛奶"][0].split("\t")[1], "milk|cow's milk")
        self.assertEqual(entries["热狗"][0].split("\t")[1], "hot dog|dog")
        self.assertEqual(entries["等"][0].split("\t")[1].split("|")[0], "wait")
        self.assertEqual(entries["真相"][0].split("\t")[1], "truth|truth about")  # never "about" alone

    def test_a_field_label_costs_a_common_word_nothing_and_a_rare_one_all(self):
        backward = tc.Table("freedict", 0.15)
        backward.add("salt", tc.Sense("n", ["Salz"], True, 0))
        backward.add("saline", tc.Sense("adj", ["Salz", "salzig"], False, 0))
        backward.add("halite", tc.Sense("n", ["Steinsalz"], True, 0))
        backward.add("rock salt", tc.Sense("n", ["Steinsalz"], False, 0))
        d = tc.Direction("de", "en")
        d.reverse = [backward]
        d.zipf = tc.Frequencies("subtlex", {"salt": 4.6, "saline": 2.9, "halite": 1.0, "rock": 4.8}, 1.0)
        entries, _ = tc.rank_direction(d)
        self.assertEqual(entries["Salz"][0], "n\tsalt")
        self.assertEqual(entries["Steinsalz"][0], "n\trock salt|halite")

    def test_read_backwards_a_russian_adjective_takes_an_english_adjective_first(self):
        tc.TAGGED_LEMMAS["xx"] = {("больной", "adj"): "<adj>", ("рабочий", "adj"): "<adj>", ("рабочий", "n"): "<n>",
                                  ("больница", "n"): "<n>", ("ой", "ij"): "<ij>"}
        self.assertEqual(tc.analyser_classes("xx"), {"больной": {"adj"}, "больница": {"n"}, "ой": {"intj"}})
        del tc.TAGGED_LEMMAS["xx"]
        self.assertIsNone(tc.analyser_classes("xx"))
        source = tc.Table("mueller7")
        source.add("patient", tc.Sense("n", ["больной", "пациент"], False, 0))
        source.add("ill", tc.Sense("adj", ["больной"], False, 0))
        d = tc.Direction("ru", "en")
        d.reverse, d.freq = [source], {"patient": 60, "ill": 50}
        self.assertEqual(tc.rank_direction(d, english_pos={})[0]["больной"][0], "n\tpatient")
        d.source_classes = {"больной": {"adj"}}
        self.assertEqual(tc.rank_direction(d, english_pos={})[0]["больной"][0], "adj\till")

    def test_a_source_of_real_senses_shows_one_sense_first(self):
        table = tc.Table("korean")
        table.keeps_senses = True
        table.add("말", tc.Sense("n", ["word", "speech"], False, 0))
        table.add("말", tc.Sense("n", ["horse"], False, 1))
        d = tc.Direction("ko", "en")
        d.direct, d.freq = [table], {"word": 50, "speech": 20, "horse": 40}
        entries, _ = tc.rank_direction(d)
        self.assertEqual(entries["말"], ["n\tword|speech", "n\thorse"])

    def test_weak_look_alike_forms_and_plurals_into_a_language_without_them_point_to_their_lemma(self):
        entries = {"fait": ["adj\tmature"], "faire": ["v\tdo|make"], "maisons": None}
        del entries["maisons"]
        entries["maison"] = ["n\thouse"]
        confidence = {"fait": -1.0, "faire": 4.0, "maison": 3.0}
        forms = {"fait": [("faire", "v")], "maisons": [("maison", "n")], "xyz": [("absent", "n")]}
        tc.add_lemma_links(entries, forms, confidence, lemma_forms={"fait"})
        self.assertEqual(entries["fait"][0], ">faire\tv")
        self.assertEqual(entries["maisons"], [">maison\tn"])
        self.assertNotIn("xyz", entries)
        # A form with a good entry of its own keeps it: "filha" is daughter, not "filho".
        entries = {"filha": ["n\tdaughter"], "filho": ["n\tson"]}
        tc.add_lemma_links(entries, {"filha": [("filho", "n")]}, {"filha": 3.0, "filho": 3.8}, lemma_forms=set())
        self.assertEqual(entries["filha"], ["n\tdaughter"])
        # Into a language without plurals an English plural noun shows its singular first, unless the
        # plural is a word of its own.
        entries = {"books": ["\t图书"], "book": ["n\t书"], "glasses": ["n\t眼镜"], "glass": ["n\t玻璃"]}
        forms = {"books": [("book", "v"), ("book", "n")], "glasses": [("glass", "n")]}
        tc.add_lemma_links(entries, forms, {"books": 5.0, "book": 3.0, "glasses": 4.0, "glass": 3.0}, set(),
                           plural_words={"glasses"})
        self.assertEqual(entries["books"], [">book\tn", "\t图书"])
        self.assertEqual(entries["glasses"], ["n\t眼镜"])


class Commonness(unittest.TestCase):
    """Frequencies of the target language and the sources' register labels decide the first word."""

    def frequencies(self, values, floor=1.0):
        return tc.Frequencies("jieba", values, floor)

    def test_the_common_word_beats_the_literary_one_the_source_lists_first(self):
        cedict = tc.Table("cedict")
        cedict.add("晨", tc.Sense("", ["morning", "dawn"], False, 0))
        cedict.add("上午", tc.Sense("", ["morning"], False, 0))
        cedict.add("朝", tc.Sense("", ["morning"], False, 0))
        d = tc.Direction("en", "zh")
        d.reverse = [cedict]
        d.zipf = self.frequencies({"晨": 3.9, "上午": 4.7, "朝": 5.4})
        d.zipf.bound = {"朝", "晨"}  # jieba tags them as a place name and a morpheme
        entries, _ = tc.rank_direction(d)
        # A character jieba knows as a name or morpheme does not win on its count.
        self.assertEqual(entries["morning"][0].split("\t")[1].split("|")[0], "上午")

    def test_labelled_words_never_come_first(self):
        edict = tc.Table("edict")
        edict.add("咄す", tc.Sense("v", ["speak"], False, 0, marked=True))
        edict.add("話す", tc.Sense("v", ["talk", "speak"], False, 1))
        d = tc.Direction("en", "ja")
        d.reverse = [edict]
        d.zipf = self.frequencies({"咄す": 6.0, "話す": 3.0})  # even when the labelled one looks commoner
        entries, _ = tc.rank_direction(d)
        self.assertEqual(entries["speak"][0].split("\t")[1].split("|")[:2], ["話す", "咄す"])
        # A word labelled in one sense and plain in another is a plain word.
        self.assertFalse(tc.Sense("", ["x"], marked=False).marked)
        self.assertTrue(tc.Sense("", ["x"], marked=True).domain)

    def test_a_translation_through_spanish_is_no_proof_it_translates_back(self):
        forward = tc.Table("freedict", 0.3)
        forward.add("morning", tc.Sense("n", ["manhã"], False, 0))
        pivot = tc.Table("apertium")
        pivot.pivot = True
        pivot.add("morning", tc.Sense("n", ["amanhã", "manhã"], False, 1))
        back_pivot = tc.Table("apertium")
        back_pivot.pivot = True
        back_pivot.add("amanhã", tc.Sense("adv", ["morning", "tomorrow"], False, 1))
        back = tc.Table("freedict", 0.3)
        back.add("amanhã", tc.Sense("adv", ["tomorrow"], False, 0))
        back.add("manhã", tc.Sense("n", ["morning"], False, 0))
        d = tc.Direction("en", "pt")
        d.direct, d.reverse = [forward, pivot], [back, back_pivot]
        d.zipf = tc.Frequencies("dasher", {"manhã": 4.9, "amanhã": 5.3}, 3.7)
        entries, _ = tc.rank_direction(d)
        self.assertEqual(entries["morning"][0], "n\tmanhã")  # "amanhã" stands apart, after it
        self.assertEqual(entries["morning"][1], "adv\tamanhã")

    def test_register_labels_of_each_source_are_read(self):
        with tempfile.TemporaryDirectory() as tmp:
            path = os.path.join(tmp, "cedict.txt")
            with open(path, "w", encoding="utf-8") as f:
                f.write("晨 晨 [chen2] /(literary) morning/\n上午 上午 [shang4 wu3] /morning/\n")
            table = tc.Table("cedict")
            tc.read_cedict(path, table)
            self.assertTrue(table.senses["晨"][0].marked)
            self.assertFalse(table.senses["上午"][0].marked)
        saved = tc.dictd_entries
        try:
            tc.dictd_entries = fake_dictd(["speak /spiːk/\nsprechen <v>\nreden <v> [geh.]\n"])
            table = tc.Table("ding")
            tc.read_freedict("x", True, False, table)
            self.assertEqual([s.marked for s in table.senses["speak"]], [False, True])
        finally:
            tc.dictd_entries = saved


class FrequencySources(unittest.TestCase):
    """Each source read on a small made-up copy; a missing or damaged one leaves the ranking as it
    was, with a message."""

    def test_jieba_counts_become_zipf_values(self):
        with tempfile.TemporaryDirectory() as tmp:
            path = os.path.join(tmp, "dict.txt")
            with open(path, "w", encoding="utf-8") as f:
                f.write("上午 3000 t\n早上 1000 t\n的 50000 uj\n朝 14885 ns\nbroken line\n")
            zipf = tc.jieba_frequencies(path)
            self.assertEqual(zipf.bound, {"朝"})
            self.assertAlmostEqual(zipf.zipf("的") - zipf.zipf("上午"), 1.22, places=2)
            self.assertLess(zipf.zipf("不在"), zipf.zipf("早上"))

    def test_ipadic_costs_prefer_the_usual_spelling(self):
        with tempfile.TemporaryDirectory() as tmp:
            with open(os.path.join(tmp, "Verb.csv"), "w", encoding="euc_jp") as f:
                f.write("分かる,772,772,5559,動詞,自立\n解る,772,772,7159,動詞,自立\n")
                for i in range(10000):
                    f.write(f"語{i},1,1,9000,名詞\n")
            with open(os.path.join(tmp, "Noun.name.csv"), "w", encoding="euc_jp") as f:
                f.write("分,1,1,100,名詞\n")  # names never count
            zipf = tc.ipadic_frequencies(tmp)
            self.assertGreater(zipf.zipf("分かる"), zipf.zipf("解る") + 1.5)
            self.assertEqual(zipf.zipf("分"), zipf.floor)

    def test_ipadic_adjectival_nouns_cheaper_than_the_plain_noun_are_adjectives(self):
        with tempfile.TemporaryDirectory() as tmp:
            self.assertIsNone(tc.ipadic_classes(tmp))  # no dictionary: no classes
            with open(os.path.join(tmp, "Noun.adjv.csv"), "w", encoding="euc_jp") as f:
                f.write("幸せ,1287,1287,3400,名詞,形容動詞語幹\n本当,1287,1287,9683,名詞,形容動詞語幹\n"
                        "静か,1287,1287,4766,名詞,形容動詞語幹\n")
            with open(os.path.join(tmp, "Noun.csv"), "w", encoding="euc_jp") as f:
                f.write("幸せ,1285,1285,7056,名詞,一般\n本当,1285,1285,7380,名詞,一般\n")
            self.assertEqual(tc.ipadic_classes(tmp), {"幸せ": {"adj"}, "静か": {"adj"}})

    def test_japanese_prefers_the_usual_spelling_and_the_word_whose_reading_is_common(self):
        costs = tc.Frequencies("ipadic", {"分かる": 3.9, "解る": 2.3}, 0.5)
        with tempfile.TemporaryDirectory() as tmp:
            path = os.path.join(tmp, "kana.txt")
            with open(path, "w", encoding="utf-8") as f:
                f.write("かぜが>ふいた>へは>" * 8000 + "おならを>")
            kana = tc.counts_to_zipf(tc.kana_word_counts(path), "dasher")
        readings = {"分かる": {"わかる"}, "解る": {"わかる"}, "風": {"かぜ"}, "屁": {"へ", "おなら"}}
        ja = tc.JapaneseCommonness(costs, [(("わかる", "understand"), ["分かる", "解る"])], readings, kana)
        self.assertGreater(ja.zipf("分かる"), ja.zipf("解る") + 1.5)
        # "へ" is a particle far more often than a word: one-kana readings do not count.
        self.assertGreater(ja.zipf("風"), ja.zipf("屁") + 2)

    def test_a_text_counts_forms_for_their_lemma(self):
        with tempfile.TemporaryDirectory() as tmp:
            with open(os.path.join(tmp, tc.DASHER_TEXTS["ru"]), "w", encoding="utf-8") as f:
                f.write("книги книгу книга стол " * 6000)
            zipf = tc.corpus_frequencies("ru", {"книги": [("книга", "n")], "книгу": [("книга", "n")]}, tmp)
            self.assertAlmostEqual(zipf.zipf("книга") - zipf.zipf("стол"), math.log10(3), places=3)
            self.assertLess(zipf.zipf("синий стол"), zipf.zipf("стол"))

    def test_missing_or_damaged_sources_give_a_message_and_no_frequencies(self):
        saved = (tc.JIEBA, tc.DASHER, sys.stderr)
        with tempfile.TemporaryDirectory() as tmp:
            damaged = os.path.join(tmp, tc.DASHER_TEXTS["fr"])
            with open(damaged, "wb") as f:
                f.write(b"\xff\xfe\x00garbage" * 10)
            with open(os.path.join(tmp, tc.DASHER_TEXTS["de"]), "w", encoding="utf-8") as f:
                f.write("zu kurz")
            try:
                tc.JIEBA, tc.DASHER = os.path.join(tmp, "absent.txt"), tmp
                sys.stderr = io.StringIO()
                for language in ("zh", "fr", "de"):
                    self.assertIsNone(tc.load_frequencies(language))
                messages = sys.stderr.getvalue()
            finally:
                tc.JIEBA, tc.DASHER, sys.stderr = saved
        self.assertEqual(messages.count("ranking"), 3, messages)
        self.assertIn("No word frequencies for zh", messages)
        # Without frequencies the direction is ranked as before, from the dictionaries' own counts.
        forward = tc.Table("ding", 0.15)
        forward.add("dog", tc.Sense("n", ["Klammhaken"], False, 0))
        forward.add("dog", tc.Sense("n", ["Hund"], False, 1))
        d = tc.Direction("en", "de")
        d.direct, d.freq = [forward], {"hund": 40, "klammhaken": 1}
        entries, _ = tc.rank_direction(d)
        self.assertEqual(entries["dog"][0], "n\tHund|Klammhaken")


    def test_subtitle_counts_fold_case_count_forms_for_lemmas_and_a_damaged_file_falls_back(self):
        saved = (tc.SUBTLEX, sys.stderr)
        with tempfile.TemporaryDirectory() as tmp:
            good = os.path.join(tmp, "index.json")
            with open(good, "w", encoding="utf-8") as f:
                f.write('[{"word": "Went", "count": 600000}, {"word": "went", "count": 400000},'
                        ' {"word": "go", "count": 500000}, {"word": 7, "count": "x"}]')
            damaged = os.path.join(tmp, "damaged.json")
            with open(damaged, "w", encoding="utf-8") as f:
                f.write('[{"word": "go", "cou')
            try:
                tc.SUBTLEX = good
                counts = tc.subtlex_counts(good)
                frequencies = tc.english_frequencies({"went": [("go", "v")]})
                tc.SUBTLEX = damaged
                sys.stderr = io.StringIO()
                fallback = tc.english_frequencies()
                messages = sys.stderr.getvalue()
            finally:
                tc.SUBTLEX, sys.stderr = saved
        self.assertEqual(dict(counts), {"went": 1000000, "go": 500000})
        self.assertEqual(frequencies.source, "subtlex")
        self.assertGreater(frequencies.zipf("go"), frequencies.zipf("went"))
        self.assertIn("unreadable", messages)
        self.assertEqual(fallback.source, "dasher")


class GermanCore(unittest.TestCase):
    def test_inflected_forms_of_core_adjectives_and_verbs(self):
        core = tc.Table("german-core")
        core.add("klein", tc.Sense("adj", ["small"], False, 0))
        core.add("kaufen", tc.Sense("v", ["buy"], False, 0))
        core.add("Haus", tc.Sense("n", ["house"], False, 0))
        forms = tc.german_core_forms(core)
        self.assertEqual(forms["kleine"], [("klein", "adj")])
        self.assertEqual(forms["kaufte"], [("kaufen", "v")])
        self.assertEqual(forms["gekauft"], [("kaufen", "v")])
        self.assertNotIn("Hause", forms)
        # A look-alike noun entry gives way to the adjective it is a form of.
        entries = {"kleine": ["n\twhisky"], "klein": ["adj\tsmall"]}
        tc.add_lemma_links(entries, forms, {"kleine": 0.5, "klein": 5.0}, set())
        self.assertEqual(entries["kleine"][0], ">klein\tadj")


class FileFormat(unittest.TestCase):
    def test_written_files_read_back_sorted_by_bytes(self):
        with tempfile.TemporaryDirectory() as tmp:
            path = os.path.join(tmp, "en-ru.tdict")
            entries = {"б": ["n\tb"], "a": ["n\tx"], "Z": [">a"], "ä": ["adj\ty"]}
            tc.write_tdict(path, entries, [("direction", "en-ru"), ("source", "test; licence GPL")])
            table = tq.load(path)
            self.assertEqual(table, {"Z": ">a", "a": "n\tx", "ä": "adj\ty", "б": "n\tb"})
            with open(path, "rb") as f:
                data = f.read()
            self.assertTrue(data.startswith(b"TDICT\x01"))
            self.assertTrue(data.endswith(b"direction: en-ru\nsource: test; licence GPL"))

    def test_korean_vocabulary_lines(self):
        with tempfile.TemporaryDirectory() as tmp:
            path = os.path.join(tmp, "ko.tsv")
            with open(path, "w", encoding="utf-8") as f:
                f.write("# comment\n눈\tn\teye|snow\n쓰다\tv\twrite|use\nbroken line\n")
            ko_en, en_ko = tc.Table("korean"), tc.Table("korean")
            tc.read_korean(path, ko_en, en_ko)
            self.assertEqual([s.cands for s in ko_en.senses["눈"]], [["eye"], ["snow"]])
            self.assertEqual(ko_en.senses["쓰다"][1].order, 1)
            self.assertEqual(len(ko_en.senses), 2)

    def test_every_line_of_our_korean_lists_is_read_as_a_lemma_a_class_and_senses(self):
        # read_korean skips a line it cannot split, so a line typed with spaces for tabs would
        # silently lose its word.
        folder = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../../data/korean")
        lists = sorted(f for f in os.listdir(folder) if f.endswith(".tsv"))
        self.assertIn("korean_english.tsv", lists)
        classes = {"n", "v", "adj", "adv", "pron", "num", "det", "intj", "conj", "part", "cnt"}
        for name in lists:
            with open(os.path.join(folder, name), encoding="utf-8") as f:
                for number, line in enumerate(f, 1):
                    line = line.rstrip("\n")
                    if not line or line.startswith("#"):
                        continue
                    where = f"{name}:{number}: {line}"
                    fields = line.split("\t")
                    self.assertEqual(len(fields), 3, where)
                    lemma, pos, glosses = fields
                    self.assertRegex(lemma, r"^[가-힣]+( [가-힣]+)*$", where)
                    self.assertIn(pos, classes, where)
                    if pos in ("v", "adj"):
                        self.assertTrue(lemma.endswith("다"), where)
                    for sense in glosses.split("|"):
                        cands = [c.strip() for c in sense.split(";")]
                        self.assertTrue(all(cands), where)
                        if pos == "v":
                            self.assertFalse(any(c.startswith("to ") for c in cands), where)

    def test_later_korean_lists_add_lemmas_and_rank_after_the_core_list(self):
        with tempfile.TemporaryDirectory() as tmp:
            core, everyday = os.path.join(tmp, "core.tsv"), os.path.join(tmp, "everyday.tsv")
            with open(core, "w", encoding="utf-8") as f:
                f.write("저녁\tn\tevening; dinner\n눈\tn\teye\n")
            with open(everyday, "w", encoding="utf-8") as f:
                f.write("저녁식사\tn\tdinner\n눈\tn\tsnow\n")
            for lists in (["--korean", core, "--korean", everyday], ["--korean", core + "," + everyday]):
                out = os.path.join(tmp, "out")
                with contextlib.redirect_stdout(io.StringIO()), contextlib.redirect_stderr(io.StringIO()):
                    tc.main(["tdict_compile.py", out, *lists, "--only", "ko-en,en-ko", "--no-frequencies"])
                ko_en, en_ko = tq.load(os.path.join(out, "ko-en.tdict")), tq.load(os.path.join(out, "en-ko.tdict"))
                self.assertEqual(ko_en["저녁식사"], "n\tdinner")
                self.assertEqual(ko_en["눈"].split("\n"), ["n\teye", "n\tsnow"])  # the core's sense first
                self.assertTrue(en_ko["dinner"].startswith("n\t저녁|"), en_ko["dinner"])


    def test_a_later_lists_sense_of_a_core_lemma_stays_after_the_cores_despite_a_commoner_word(self):
        with tempfile.TemporaryDirectory() as tmp:
            core, later = os.path.join(tmp, "core.tsv"), os.path.join(tmp, "later.tsv")
            with open(core, "w", encoding="utf-8") as f:
                f.write("미치다\tv\tgo crazy; go mad\n")
            with open(later, "w", encoding="utf-8") as f:
                f.write("미치다\tv\treach; affect\n")
            ko_en, en_ko = tc.Table("korean"), tc.Table("korean")
            tc.read_korean(core, ko_en, en_ko)
            tc.read_korean(later, ko_en, en_ko, common=False)
            ko_en.keeps_senses = True
            d = tc.Direction("ko", "en")
            d.direct, d.freq = [ko_en], {"reach": 60000, "affect": 9000, "go crazy": 3000, "go mad": 800}
            entries, _ = tc.rank_direction(d, english_pos={})
            self.assertTrue(entries["미치다"][0].startswith("v\tgo crazy"), entries["미치다"])

class SourceConventions(unittest.TestCase):
    """How each source marks senses, spellings and readings, read into the ranking."""

    def cedict(self, text):
        with tempfile.TemporaryDirectory() as tmp:
            path = os.path.join(tmp, "cedict.txt")
            with open(path, "w", encoding="utf-8") as f:
                f.write(text)
            table = tc.Table("cedict")
            tc.read_cedict(path, table)
            return table

    def test_cedict_labels_after_a_gloss_runs_of_synonyms_and_minor_readings(self):
        table = self.cedict("听 听 [yin3] /smile (archaic)/\n"
                            "钱 钱 [qian2] /coin/money/CL:笔[bi3]/unit of weight/\n"
                            "赢 赢 [ying2] /to beat/to win/to profit/\n"
                            "生气 生气 [sheng1 qi4] /to get angry; to be furious/vitality; liveliness/\n"
                            "便宜 便宜 [bian4 yi2] /convenient/\n"
                            "便宜 便宜 [pian2 yi5] /cheap; inexpensive/a petty advantage/to let sb off lightly/\n")
        self.assertTrue(table.senses["听"][0].marked)
        self.assertEqual([s.cands for s in table.senses["钱"]], [["coin", "money"], ["unit of weight"]])
        self.assertEqual(table.senses["赢"][0].cands, ["beat", "win", "profit"])
        # Senses CC-CEDICT groups itself stay apart.
        self.assertEqual([s.cands for s in table.senses["生气"]], [["get angry", "be furious"],
                                                                   ["vitality", "liveliness"]])
        orders = {s.cands[0]: s.order for s in table.senses["便宜"]}
        self.assertGreater(orders["convenient"], orders["cheap"])

    def test_the_usual_class_of_a_chinese_word_picks_its_gloss(self):
        with tempfile.TemporaryDirectory() as tmp:
            path = os.path.join(tmp, "dict.txt")
            with open(path, "w", encoding="utf-8") as f:
                f.write("重 15718 a\n听 45776 v\n的 50000 uj\n")
            classes = tc.jieba_classes(path)
        self.assertEqual(classes, {"重": {"adj"}, "听": {"v"}})
        table = self.cedict("重 重 [chong2] /to repeat/repetition/again/\n重 重 [zhong4] /heavy/serious/\n")
        table.keeps_senses = True
        d = tc.Direction("zh", "en")
        d.direct, d.source_classes = [table], classes
        d.zipf = tc.Frequencies("dasher", {"repeat": 4.5, "heavy": 4.4}, 2.0)
        english_pos = {"heavy": {"adj": 40, "n": 2}, "repeat": {"v": 30, "n": 5}}
        entries, _ = tc.rank_direction(d, english_pos)
        self.assertEqual(entries["重"][0].split("\t")[1].split("|")[0], "heavy")

    def test_a_usually_kana_word_is_shown_in_kana(self):
        with tempfile.TemporaryDirectory() as tmp:
            path = os.path.join(tmp, "edict")
            with open(path, "w", encoding="euc_jp") as f:
                f.write("矢張り [やはり] /(adv) (1) (uk) also/as well/(P)/\n本 [ほん] /(n) book/(P)/\n"
                        "見る [みる] /(v1,vt) (1) to see/(aux-v,v1) (2) (uk) to try/(P)/\n"
                        "為る [する] /(oK) (vs-i) (1) (uk) to do/(vs-i) (2) (uk) to make/(P)/\n")
            saved, tc.EDICT = tc.EDICT, path
            try:
                table = tc.Table("edict")
                tc.read_edict(table)
            finally:
                tc.EDICT = saved
        self.assertLess(table.senses["やはり"][0].order, table.senses["矢張り"][0].order)
        self.assertLess(table.senses["本"][0].order, table.senses["ほん"][0].order)
        self.assertLess(table.senses["見る"][0].order, table.senses["みる"][0].order)  # kana in one use only
        # An out-dated kanji spelling labels the spelling, not the first sense of the word.
        self.assertEqual([(s.cands, s.marked) for s in table.senses["する"]], [(["do"], False), (["make"], False)])
        self.assertTrue(table.senses["為る"][0].marked)
        d = tc.Direction("en", "ja")
        d.reverse = [table]
        entries, _ = tc.rank_direction(d)
        self.assertEqual(entries["also"][0].split("\t")[1].split("|")[0], "やはり")

    def test_a_word_apertium_also_gives_beats_the_dictionary_alone(self):
        freedict = tc.Table("freedict", 0.3)
        freedict.add("comer", tc.Sense("", ["relish", "eat"], False, 0))
        backwards = tc.Table("freedict", 0.3)
        backwards.add("eat", tc.Sense("v", ["comer"], False, 0))
        backwards.add("relish", tc.Sense("v", ["comer"], False, 0))
        pivot = tc.Table("apertium")
        pivot.pivot = True
        pivot.add("comer", tc.Sense("v", ["eat"], False, 1))
        d = tc.Direction("pt", "en")
        d.direct, d.reverse = [freedict, pivot], [backwards]
        d.zipf = tc.Frequencies("dasher", {"eat": 4.0, "relish": 4.0}, 2.0)
        entries, confidence = tc.rank_direction(d)
        self.assertEqual(entries["comer"][0], "v\teat|relish")
        # The agreement orders the words only: Apertium knows lemmas, not forms such as "filha",
        # and an entry's confidence decides whether a form goes to its lemma.
        saved, tc.AGREEMENT = tc.AGREEMENT, 0.0
        try:
            self.assertEqual(confidence["comer"], tc.rank_direction(d)[1]["comer"])
        finally:
            tc.AGREEMENT = saved
        # A word Apertium alone gives still never leads over a dictionary's.
        pivot.add("nome", tc.Sense("n", ["noun"], False, 1))
        freedict.add("nome", tc.Sense("n", ["name"], False, 0))
        entries, _ = tc.rank_direction(d)
        self.assertEqual(entries["nome"][0], "n\tname")

    @unittest.skipUnless(os.path.exists(os.path.join(tc.APERTIUM, tc.BIDIX[("it", "es")])), "apertium-spa-ita missing")
    def test_apertium_is_asked_with_the_full_tags_of_a_lemma(self):
        found = tc.bidix_translations("it", "es", {("braccio", "n"): "<n><m><sg>", ("veloce", "adj"): "<adj><mf><sg>"})
        self.assertEqual(found["braccio"][0][:2], ("brazo", "n"))
        self.assertEqual(found["veloce"][0][:2], ("veloz", "adj"))


if __name__ == "__main__":
    unittest.main(verbosity=1)
