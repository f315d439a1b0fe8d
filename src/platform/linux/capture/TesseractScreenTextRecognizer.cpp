// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/capture/TesseractScreenTextRecognizer.h"

#include "core/capture/GraphemeText.h"
#include "core/support/Logging.h"
#include "platform/linux/ScreenCoordinates.h"
#include "platform/linux/X11Window.h"
#include "platform/linux/capture/X11ClientWindow.h"

#include <QGuiApplication>
#include <QHash>
#include <QMutex>
#include <QPixmap>
#include <QScreen>

#include <tesseract/baseapi.h>
#include <tesseract/resultiterator.h>

#include <cmath>
#include <limits>

TOLVANE_DEFINE_LOG(lcRecognizer, "ScreenTextRecognizer")

namespace tolvane {

namespace {

struct TesseractDeleter
{
    void operator()(tesseract::TessBaseAPI* api) const
    {
        api->End();
        delete api;
    }
};

struct TextDeleter
{
    void operator()(char* text) const { delete[] text; }
};

// Room around the line's box: Tesseract reads a line better with a little margin.
constexpr int linePadding = 4;

double distanceToBox(QPointF point, const QRect& box, QSize size)
{
    const double dx = std::max({double(box.left()) - point.x(), 0.0, point.x() - double(box.right())});
    const double dy = std::max({double(box.top()) - point.y(), 0.0, point.y() - double(box.bottom())});
    return std::hypot(dx / size.width(), dy / size.height());
}

} // namespace

struct TesseractScreenTextRecognizer::Engine
{
    QMutex mutex;
    std::unique_ptr<tesseract::TessBaseAPI, TesseractDeleter> api;
    QString languages;

    bool load(const QString& wanted)
    {
        if (api && languages == wanted)
            return true;
        api.reset(new tesseract::TessBaseAPI);
        if (api->Init(nullptr, wanted.toUtf8().constData(), tesseract::OEM_LSTM_ONLY) == 0) {
            // Tesseract prints a line for every strip whose resolution it has to guess.
            api->SetVariable("debug_file", "/dev/null");
            languages = wanted;
            return true;
        }
        api.reset();
        languages.clear();
        qCWarning(lcRecognizer) << "Tesseract could not load" << wanted << "(install tesseract-ocr-eng and the"
                                << "learning language's data)";
        return false;
    }

    // The text line nearest the image's centre, by layout analysis alone.
    QRect lineUnderCentre(tesseract::PageSegMode mode, QSize size)
    {
        api->SetPageSegMode(mode);
        const QPointF centre(size.width() / 2.0, size.height() / 2.0);
        QRect lineBox;
        double best = std::numeric_limits<double>::max();
        std::unique_ptr<tesseract::PageIterator> layout(api->AnalyseLayout());
        if (!layout)
            return {};
        do {
            if (!PTIsTextType(layout->BlockType()))
                continue;
            int left = 0, top = 0, right = 0, bottom = 0;
            if (!layout->BoundingBox(tesseract::RIL_TEXTLINE, &left, &top, &right, &bottom))
                continue;
            const QRect box(QPoint(left, top), QPoint(right - 1, bottom - 1));
            const double d = distanceToBox(centre, box, size);
            if (d < best) {
                best = d;
                lineBox = box;
            }
        } while (layout->Next(tesseract::RIL_TEXTLINE));
        return lineBox;
    }

    Result<RecognizedText> recognize(const QImage& captured, QRectF strip, double scale, const QStringList& locales)
    {
        const QMutexLocker lock(&mutex);
        const QStringList names = engineLanguages(locales);
        if (names.isEmpty() || !(load(names.join(QLatin1Char('+'))) || load(QStringLiteral("eng"))))
            return Error{QStringLiteral("No text recognition data is installed.")};

        QImage image = captured.convertToFormat(QImage::Format_Grayscale8);
        if (image.isNull() || image.width() < 8 || image.height() < 8)
            return Error{QStringLiteral("The captured strip is empty.")};
        // Tesseract reads dark text on light ground; turning a dark theme over ourselves is
        // faster than letting it try both ways.
        quint64 sum = 0;
        for (int y = 0; y < image.height(); ++y) {
            const uchar* row = image.constScanLine(y);
            for (int x = 0; x < image.width(); ++x)
                sum += row[x];
        }
        if (sum / quint64(image.width() * image.height()) < 128)
            image.invertPixels();

        api->SetImage(image.constBits(), image.width(), image.height(), 1, int(image.bytesPerLine()));
        // Automatic layout sets pictures and window edges apart from the text; a strip made of
        // nothing but text may come out as one block instead.
        QRect lineBox = lineUnderCentre(tesseract::PSM_AUTO, image.size());
        if (lineBox.isEmpty())
            lineBox = lineUnderCentre(tesseract::PSM_SINGLE_BLOCK, image.size());
        RecognizedText result{{}, strip};
        if (lineBox.isEmpty())
            return result;

        // SetRectangle misreads rectangles as wide as the image; a copy of the line does not.
        const QRect crop =
            lineBox.adjusted(-linePadding, -linePadding, linePadding, linePadding).intersected(image.rect());
        const QImage line = image.copy(crop);
        api->SetPageSegMode(tesseract::PSM_SINGLE_LINE);
        api->SetImage(line.constBits(), line.width(), line.height(), 1, int(line.bytesPerLine()));
        if (api->Recognize(nullptr) != 0)
            return Error{QStringLiteral("Text recognition failed.")};

        // Device pixels in the strip image → bottom-left-origin points relative to the strip.
        auto toPoints = [&](int left, int top, int right, int bottom) {
            const double x = (crop.x() + left) / scale;
            const double w = (right - left) / scale;
            const double h = (bottom - top) / scale;
            const double yFromTop = (crop.y() + top) / scale;
            return QRectF(x, strip.height() - yFromTop - h, w, h);
        };
        RecognizedLine recognized;
        std::unique_ptr<tesseract::ResultIterator> words(api->GetIterator());
        if (words) {
            do {
                std::unique_ptr<char, TextDeleter> text(words->GetUTF8Text(tesseract::RIL_WORD));
                if (!text)
                    continue;
                const QString word = QString::fromUtf8(text.get()).trimmed();
                if (word.isEmpty())
                    continue;
                int left = 0, top = 0, right = 0, bottom = 0;
                words->BoundingBox(tesseract::RIL_WORD, &left, &top, &right, &bottom);
                const QRectF box = toPoints(left, top, right, bottom);
                recognized.words.append({word, box});
                recognized.box = recognized.box.isNull() ? box : recognized.box.united(box);
            } while (words->Next(tesseract::RIL_WORD));
        }
        api->Clear();
        if (recognized.words.isEmpty())
            return result;
        QStringList texts;
        for (const RecognizedWord& w : std::as_const(recognized.words))
            texts.append(w.text);
        recognized.text = texts.join(QLatin1Char(' '));
        result.lines.append(std::move(recognized));
        return result;
    }

    Result<QList<RecognizedWord>> words(const QImage& captured, const QStringList& locales)
    {
        const QMutexLocker lock(&mutex);
        const QStringList names = engineLanguages(locales);
        if (names.isEmpty() || !(load(names.join(QLatin1Char('+'))) || load(QStringLiteral("eng"))))
            return Error{QStringLiteral("No text recognition data is installed.")};
        const QImage image = captured.convertToFormat(QImage::Format_Grayscale8);
        if (image.isNull())
            return Error{QStringLiteral("The image is empty.")};
        api->SetPageSegMode(tesseract::PSM_AUTO);
        api->SetImage(image.constBits(), image.width(), image.height(), 1, int(image.bytesPerLine()));
        if (api->Recognize(nullptr) != 0)
            return Error{QStringLiteral("Text recognition failed.")};
        QList<RecognizedWord> found;
        std::unique_ptr<tesseract::ResultIterator> iterator(api->GetIterator());
        if (iterator) {
            do {
                std::unique_ptr<char, TextDeleter> text(iterator->GetUTF8Text(tesseract::RIL_WORD));
                if (!text)
                    continue;
                int left = 0, top = 0, right = 0, bottom = 0;
                iterator->BoundingBox(tesseract::RIL_WORD, &left, &top, &right, &bottom);
                found.append({QString::fromUtf8(text.get()).trimmed(), QRectF(left, top, right - left, bottom - top)});
            } while (iterator->Next(tesseract::RIL_WORD));
        }
        api->Clear();
        return found;
    }
};

TesseractScreenTextRecognizer::TesseractScreenTextRecognizer()
    : m_engine(std::make_shared<Engine>())
{
    // One engine, one thread: Tesseract is not to be shared between threads at once.
    m_worker.setMaxThreadCount(1);
    m_worker.setExpiryTimeout(-1);
}

TesseractScreenTextRecognizer::~TesseractScreenTextRecognizer()
{
    m_worker.waitForDone();
}

bool TesseractScreenTextRecognizer::isCaptureGranted() const
{
    // On X11 every client may read the screen.
    return x11::available();
}

bool TesseractScreenTextRecognizer::requestCaptureAccess()
{
    return isCaptureGranted();
}

Result<void> TesseractScreenTextRecognizer::openCaptureSettings()
{
    if (isCaptureGranted())
        return Error{QStringLiteral("On X11 any application may capture the screen: there is nothing to allow.")};
    return Error{QStringLiteral("This desktop does not let Tolvane capture the screen.")};
}

QStringList TesseractScreenTextRecognizer::engineLanguages(const QStringList& locales)
{
    static const QHash<QString, QString> names{
        {QStringLiteral("en"), QStringLiteral("eng")}, {QStringLiteral("de"), QStringLiteral("deu")},
        {QStringLiteral("es"), QStringLiteral("spa")}, {QStringLiteral("fr"), QStringLiteral("fra")},
        {QStringLiteral("it"), QStringLiteral("ita")}, {QStringLiteral("pt"), QStringLiteral("por")},
        {QStringLiteral("ru"), QStringLiteral("rus")},
    };
    QStringList result;
    for (const QString& locale : locales) {
        const QString name = names.value(locale.section(QLatin1Char('-'), 0, 0));
        if (!name.isEmpty() && !result.contains(name))
            result.append(name);
    }
    return result;
}

Result<QImage> TesseractScreenTextRecognizer::captureStrip(QRectF stripInPoints)
{
    const QRectF logical = screen::toQt(stripInPoints);
    const QList<QScreen*> screens = QGuiApplication::screens();
    if (screens.isEmpty()) {
        // Without a window system integration (the command line) the X server is asked itself.
        const QImage image = x11::grabRoot(logical.toAlignedRect());
        if (image.isNull())
            return Error{QStringLiteral("There is no screen to capture.")};
        return image;
    }
    QScreen* chosen = screens.constFirst();
    for (QScreen* s : screens) {
        if (QRectF(s->geometry()).intersects(logical)) {
            chosen = s;
            break;
        }
    }
    // grabWindow takes logical coordinates and answers in device pixels.
    const QRect rect = logical.toAlignedRect();
    const QPixmap pixmap = chosen->grabWindow(0, rect.x(), rect.y(), rect.width(), rect.height());
    if (pixmap.isNull())
        return Error{QStringLiteral("The screen could not be captured.")};
    return pixmap.toImage();
}

Result<RecognizedText> TesseractScreenTextRecognizer::recognizeImage(const QImage& image, QRectF stripInPoints,
                                                                     double scale, const QStringList& languages)
{
    return m_engine->recognize(image, stripInPoints, scale > 0 ? scale : 1.0, languages);
}

Result<QList<RecognizedWord>> TesseractScreenTextRecognizer::readWords(const QImage& image,
                                                                       const QStringList& languages)
{
    return m_engine->words(image, languages);
}

std::optional<QPoint> TesseractScreenTextRecognizer::locateWord(const QRect& rootRect, const QString& word,
                                                                const QStringList& languages)
{
    const QImage image = x11::grabRoot(rootRect);
    if (image.isNull())
        return std::nullopt;
    // Interface text is small for Tesseract: it reads it twice as large much better.
    QImage larger = image.scaled(image.size() * 2, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                        .convertToFormat(QImage::Format_RGB32);
    for (int pass = 0; pass < 2; ++pass) {
        if (pass == 1) {
            // Spelling underlines and other coloured marks hide whole lines from the layout
            // analysis; on the brightest channel they turn white while dark text stays dark.
            for (int y = 0; y < larger.height(); ++y) {
                auto* row = reinterpret_cast<QRgb*>(larger.scanLine(y));
                for (int x = 0; x < larger.width(); ++x) {
                    const int v = std::max({qRed(row[x]), qGreen(row[x]), qBlue(row[x])});
                    row[x] = qRgb(v, v, v);
                }
            }
        }
        const Result<QList<RecognizedWord>> words = readWords(larger, languages);
        if (!words)
            return std::nullopt;
        // The last one seen: a document's text comes below the title and tab that may name it.
        for (auto it = words.value().crbegin(); it != words.value().crend(); ++it) {
            if (textrules::trimmedPunctuation(it->text).compare(word, Qt::CaseInsensitive) == 0)
                return rootRect.topLeft() + (it->box.center() / 2).toPoint();
        }
    }
    return std::nullopt;
}

void TesseractScreenTextRecognizer::recognizeStrip(QRectF stripInPoints, QStringList languages, Completion completion)
{
    Result<QImage> captured = captureStrip(stripInPoints);
    if (!captured) {
        completion(captured.error());
        return;
    }
    QImage image = std::move(captured).value();
    const double scale = stripInPoints.width() > 0 ? image.width() / stripInPoints.width() : 1.0;
    std::shared_ptr<Engine> engine = m_engine;
    m_worker.start([engine, image = std::move(image), stripInPoints, scale, languages = std::move(languages),
                    completion = std::move(completion)] {
        completion(engine->recognize(image, stripInPoints, scale, languages));
    });
}

} // namespace tolvane
