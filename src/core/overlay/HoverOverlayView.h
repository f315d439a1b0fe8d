// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>
#include <optional>

namespace tolvane {

class Transliterator;

// What the word card shows. An immutable value: every update hands the card a new one.
struct HoverOverlayView
{
    // The card's states, in this order. Each state carries either one text (the word, or the
    // placeholder's text) or a looked-up word with its translation.
    struct State
    {
        enum class Kind {
            placeholder,  // tracking feedback before any result
            lookup,       // a word read through accessibility, translated
            unmatched,    // a word was read but has no translation
            ocrLookup,    // a word read by text recognition, translated
            ocrUnmatched, // a word read by text recognition without translation
            translating,  // a translation is on its way
            liveLookup,   // a word translated live by the translation service
            noLabel,      // the element under the pointer exposes no text
        };

        Kind kind = Kind::placeholder;
        // The placeholder's text or the word of unmatched, ocrUnmatched and translating; the
        // source word of the three looked-up states.
        QString text;
        QString translation;            // looked-up states only
        std::optional<QString> context; // lookup and liveLookup only

        static State placeholder(QString text) { return {Kind::placeholder, std::move(text), {}, {}}; }
        static State lookup(QString source, QString translation, std::optional<QString> context = std::nullopt)
        {
            return {Kind::lookup, std::move(source), std::move(translation), std::move(context)};
        }
        static State unmatched(QString word) { return {Kind::unmatched, std::move(word), {}, {}}; }
        static State ocrLookup(QString source, QString translation)
        {
            return {Kind::ocrLookup, std::move(source), std::move(translation), {}};
        }
        static State ocrUnmatched(QString word) { return {Kind::ocrUnmatched, std::move(word), {}, {}}; }
        static State translating(QString word) { return {Kind::translating, std::move(word), {}, {}}; }
        static State liveLookup(QString source, QString translation, std::optional<QString> context = std::nullopt)
        {
            return {Kind::liveLookup, std::move(source), std::move(translation), std::move(context)};
        }
        static State noLabel() { return {Kind::noLabel, {}, {}, {}}; }

        // lookup, ocrLookup and liveLookup: a source word with its translation.
        bool hasTranslation() const
        {
            return kind == Kind::lookup || kind == Kind::ocrLookup || kind == Kind::liveLookup;
        }
        const QString& source() const { return text; }

        friend bool operator==(const State&, const State&) = default;
    };

    // The colour a state is drawn in: its border, and the placeholder's accent.
    enum class Tint { blue, accent, purple, green, secondary };

    State state;
    std::optional<QString> directionLabel;     // "EN → FR", shown as a tag above the content
    std::optional<QString> partOfSpeech;       // "n.", "v.", shown after the source word
    std::optional<QString> exampleSentence;    // a sentence, then after the first "\n" its translation
    std::optional<QString> targetLanguageCode; // the learning language; selects the reading line
    std::function<void()> onSpeak;             // when set, a speaker button calls it

    static Tint tint(State::Kind kind);
    Tint tint() const { return tint(state.kind); }

    // The reading shown under the translation: pinyin or kana for a translation written with Han
    // characters when the learning language is Chinese or Japanese; nothing otherwise.
    std::optional<QString> reading(const Transliterator& transliterator) const;
};

// The texts the word card shows of its own.
namespace HoverOverlayTexts {
inline const QString hoverTracking = QStringLiteral("Hover tracking");
inline const QString noTranslationFound = QStringLiteral("No translation found");
inline const QString translating = QStringLiteral("Translating…");
inline const QString noAccessibleText = QStringLiteral("No accessible text label here");
inline const QString speak = QStringLiteral("Speak");
} // namespace HoverOverlayTexts

} // namespace tolvane
