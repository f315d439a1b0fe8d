# SPDX-License-Identifier: GPL-3.0-or-later
#
# Language services: the recogniser's models (compiled here from installed Debian packages, never
# downloaded), Hunspell for the model builder, ICU transliterators and MeCab for readings.

pkg_check_modules(HUNSPELL REQUIRED IMPORTED_TARGET hunspell)
pkg_check_modules(ICU REQUIRED IMPORTED_TARGET icu-i18n icu-uc)
find_library(MECAB_LIBRARY mecab REQUIRED)
find_path(MECAB_INCLUDE_DIR mecab.h REQUIRED)
target_link_libraries(${fragment_target} PUBLIC PkgConfig::ICU ${MECAB_LIBRARY})
target_include_directories(${fragment_target} PRIVATE ${MECAB_INCLUDE_DIR})

add_executable(tolvane_language_model_builder ${PROJECT_SOURCE_DIR}/data/language/LanguageModelBuilder.cpp)
tolvane_target_settings(tolvane_language_model_builder)
target_include_directories(tolvane_language_model_builder PRIVATE ${PROJECT_SOURCE_DIR}/src)
target_link_libraries(tolvane_language_model_builder PRIVATE Qt6::Core PkgConfig::HUNSPELL)

# Built where an installed Tolvane keeps them (share/tolvane beside bin/), so the executable finds
# them the same way in the build tree and after installation.
set(tolvane_language_model_dir ${PROJECT_BINARY_DIR}/share/tolvane/language)
set(tolvane_dasher /usr/share/dasher)
set(tolvane_hunspell /usr/share/hunspell)
set(tolvane_dictd /usr/share/dictd)
set(tolvane_english_text ${tolvane_dasher}/training_english_GB.txt)

set(tolvane_language_model_files)
function(tolvane_language_model code corpus dictionary)
    set(probe)
    if(NOT code STREQUAL "en")
        # Which English words this language's speller also accepts: the words the two share.
        set(probe --probe ${tolvane_english_text})
    endif()
    set(output ${tolvane_language_model_dir}/${code}.langmodel)
    add_custom_command(
        OUTPUT ${output}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${tolvane_language_model_dir}
        COMMAND tolvane_language_model_builder --output ${output} --corpus ${tolvane_dasher}/${corpus}
                --dictionary ${tolvane_hunspell}/${dictionary} ${ARGN} ${probe}
        DEPENDS tolvane_language_model_builder
        COMMENT "Compiling the ${code} language model"
        VERBATIM)
    set(tolvane_language_model_files ${tolvane_language_model_files} ${output} PARENT_SCOPE)
endfunction()

tolvane_language_model(en training_english_GB.txt en_US
    --headwords ${tolvane_dictd}/freedict-eng-fra.index --headwords ${tolvane_dictd}/freedict-eng-ita.index
    --headwords ${tolvane_dictd}/freedict-eng-spa.index --headwords ${tolvane_dictd}/freedict-eng-por.index
    --rare-headwords ${tolvane_dictd}/mueller7.index
    --glosses /usr/share/wordnet/data.noun --glosses /usr/share/wordnet/data.verb
    --glosses /usr/share/wordnet/data.adj --glosses /usr/share/wordnet/data.adv)
tolvane_language_model(fr training_french_FR.txt fr --headwords ${tolvane_dictd}/freedict-fra-eng.index)
tolvane_language_model(de training_german_DE.txt de_DE --keep-capitalized
    --rare-headwords ${tolvane_dictd}/freedict-deu-eng.index)
tolvane_language_model(it training_italian_IT.txt it_IT --headwords ${tolvane_dictd}/freedict-ita-eng.index)
tolvane_language_model(pt training_portugueseC_BR.txt pt_BR --headwords ${tolvane_dictd}/freedict-por-eng.index)
tolvane_language_model(ru training_russian_RU.txt ru_RU)
tolvane_language_model(es training_spanish_ES.txt es_ES --headwords ${tolvane_dictd}/freedict-spa-eng.index)

add_custom_target(tolvane_language_models ALL DEPENDS ${tolvane_language_model_files})
add_dependencies(${fragment_target} tolvane_language_models)
install(FILES ${tolvane_language_model_files} DESTINATION ${CMAKE_INSTALL_DATADIR}/tolvane/language)

# The English lexicon of the part-of-speech tagger, from WordNet.
add_executable(tolvane_english_lexicon_builder ${PROJECT_SOURCE_DIR}/data/language/EnglishLexiconBuilder.cpp)
tolvane_target_settings(tolvane_english_lexicon_builder)
target_include_directories(tolvane_english_lexicon_builder PRIVATE ${PROJECT_SOURCE_DIR}/src)
target_link_libraries(tolvane_english_lexicon_builder PRIVATE Qt6::Core)
set(tolvane_english_lexicon ${tolvane_language_model_dir}/en.lexicon)
add_custom_command(
    OUTPUT ${tolvane_english_lexicon}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${tolvane_language_model_dir}
    COMMAND tolvane_english_lexicon_builder /usr/share/wordnet ${tolvane_english_lexicon}
    DEPENDS tolvane_english_lexicon_builder
    COMMENT "Compiling the English lexicon"
    VERBATIM)
add_custom_target(tolvane_english_lexicon ALL DEPENDS ${tolvane_english_lexicon})
add_dependencies(${fragment_target} tolvane_english_lexicon)
install(FILES ${tolvane_english_lexicon} DESTINATION ${CMAKE_INSTALL_DATADIR}/tolvane/language)
