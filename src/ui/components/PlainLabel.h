// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QLabel;
class QWidget;

namespace tolvane {

// A wrapped label in Qt::PlainText, whose text is never read as HTML: words, translations, sentences and
// application names are shown as they are.
QLabel* plainLabel(const QString& text = {}, QWidget* parent = nullptr);
// The same in the palette's quieter text colour, which follows a switch between light and dark.
QLabel* secondaryLabel(const QString& text, QWidget* parent = nullptr);
// A quieter label a tenth smaller than the text it explains.
QLabel* captionLabel(const QString& text, QWidget* parent = nullptr);
// A label for a picture (a symbol, a state icon): Qt::PlainText too, so that no text set on it later
// is read as markup.
QLabel* pictureLabel(QWidget* parent = nullptr);

} // namespace tolvane
