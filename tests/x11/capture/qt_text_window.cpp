// SPDX-License-Identifier: GPL-3.0-or-later
// A Qt 6 window for the text-capture tests. "edit": a text edit and a button; "drawn": text that is
// only painted, with nothing for the accessibility bus to read. Once shown it prints where some
// characters are on the screen (root-window pixels), one "name x y" per line, then "ready". With
// --select WORD the text edit selects WORD and takes the focus; with --file PATH it shows that
// file's text instead of its own.
#include <QApplication>
#include <QFile>
#include <QFontMetrics>
#include <QPainter>
#include <QPushButton>
#include <QTextEdit>
#include <QTimer>
#include <QVBoxLayout>
#include <QWidget>

#include <cstdio>

namespace {

const QString sentence = QStringLiteral("Hello, world! The quick brown fox jumps.");

void print(const char* name, QPoint logical, const QWidget* widget)
{
    const double scale = widget->devicePixelRatioF();
    std::printf("%s %d %d\n", name, qRound(logical.x() * scale), qRound(logical.y() * scale));
}

class DrawnText final : public QWidget
{
public:
    explicit DrawnText(int pixelSize)
    {
        QFont f = font();
        f.setPixelSize(pixelSize);
        setFont(f);
        setAutoFillBackground(true);
        QPalette p = palette();
        p.setColor(QPalette::Window, Qt::white);
        setPalette(p);
    }
    QPoint wordCentre(const QString& word) const
    {
        const QFontMetrics metrics(font());
        const qsizetype at = sentence.indexOf(word);
        const int x = origin.x() + metrics.horizontalAdvance(sentence.left(at)) + metrics.horizontalAdvance(word) / 2;
        return mapToGlobal(QPoint(x, origin.y() - metrics.ascent() / 2));
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setPen(Qt::black);
        painter.drawText(QPoint(origin.x(), origin.y() - 40), QStringLiteral("Preferences and settings"));
        painter.drawText(origin, sentence);
        painter.drawText(QPoint(origin.x(), origin.y() + 40), QStringLiteral("Another line below it"));
    }

private:
    QPoint origin{30, 100};
};

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    const QStringList args = app.arguments();
    const bool drawn = args.contains(QStringLiteral("drawn"));
    const qsizetype selectAt = args.indexOf(QStringLiteral("--select"));
    const QString selectWord = selectAt >= 0 && selectAt + 1 < args.size() ? args.at(selectAt + 1) : QString();
    const qsizetype fileAt = args.indexOf(QStringLiteral("--file"));
    QString fileText;
    if (fileAt >= 0 && fileAt + 1 < args.size()) {
        QFile file(args.at(fileAt + 1));
        if (file.open(QIODevice::ReadOnly))
            fileText = QString::fromUtf8(file.readAll());
    }

    QWidget window;
    window.setWindowTitle(QStringLiteral("Capture Qt"));
    // "small": a window that still fits the screen when the application scales itself up.
    if (args.contains(QStringLiteral("small"))) {
        window.resize(560, 200);
        window.move(30, 30);
    } else {
        window.resize(640, 320);
        window.move(60, 420);
    }
    auto* layout = new QVBoxLayout(&window);
    QTextEdit* edit = nullptr;
    QPushButton* button = nullptr;
    DrawnText* canvas = nullptr;
    if (drawn) {
        canvas = new DrawnText(13);
        layout->addWidget(canvas);
    } else {
        edit = new QTextEdit;
        edit->setPlainText(fileText.isEmpty()
                               ? sentence +
                                     QStringLiteral("\nA second line of text.\nThumbs 👍🏽 up for naïve words.")
                               : fileText);
        button = new QPushButton(QStringLiteral("Open file"));
        layout->addWidget(edit);
        layout->addWidget(button);
    }
    window.show();
    if (edit && !selectWord.isEmpty()) {
        QTextCursor cursor = edit->textCursor();
        const qsizetype at = edit->toPlainText().indexOf(selectWord);
        cursor.setPosition(int(at));
        cursor.setPosition(int(at + selectWord.size()), QTextCursor::KeepAnchor);
        edit->setTextCursor(cursor);
        window.activateWindow();
        edit->setFocus();
    }

    QTimer::singleShot(700, &app, [&] {
        if (canvas) {
            print("drawn-quick", canvas->wordCentre(QStringLiteral("quick")), canvas);
            print("drawn-brown", canvas->wordCentre(QStringLiteral("brown")), canvas);
        } else {
            auto charCentre = [&](const QString& word, int extra) {
                QTextCursor cursor(edit->document());
                cursor.setPosition(int(edit->toPlainText().indexOf(word)) + extra);
                const QRect before = edit->cursorRect(cursor);
                cursor.movePosition(QTextCursor::NextCharacter);
                const QRect after = edit->cursorRect(cursor);
                return edit->viewport()->mapToGlobal(QPoint((before.x() + after.x()) / 2, before.center().y()));
            };
            print("edit-quick", charCentre(QStringLiteral("quick"), 2), edit);
            print("edit-naive", charCentre(QStringLiteral("naïve"), 4), edit);
            print("button", button->mapToGlobal(button->rect().center()), button);
        }
        std::printf("ready\n");
        std::fflush(stdout);
    });
    return app.exec();
}
