# SPDX-License-Identifier: GPL-3.0-or-later
# The builder tests run the model and lexicon builders on small hand-made inputs.
if(TARGET tst_LanguageDataBuilders)
    add_dependencies(tst_LanguageDataBuilders tolvane_language_model_builder tolvane_english_lexicon_builder)
    target_compile_definitions(tst_LanguageDataBuilders PRIVATE
        TOLVANE_LANGUAGE_MODEL_BUILDER="$<TARGET_FILE:tolvane_language_model_builder>"
        TOLVANE_ENGLISH_LEXICON_BUILDER="$<TARGET_FILE:tolvane_english_lexicon_builder>")
endif()
