#include "TextRecognition.h"

#include "PictureReading.h"
#include "RecognitionPicture.h"
#include "TesseractLanguages.h"

#include <QImage>

#include <omp.h>
#include <tesseract/baseapi.h>
#include <tesseract/resultiterator.h>

#include <memory>

namespace Clipboard {

namespace {

// Sizes and gaps are judged against it. A screen's letters, doubled, are those of a page scanned at about this.
constexpr int dotsPerInch = 200;

/// Tesseract's threads wait for each other by spinning: two on a busy machine take up to fifteen times as long as one.
void stayOnOneThread()
{
    omp_set_max_active_levels(0);
}

QStringList lines(tesseract::TessBaseAPI& tesseract)
{
    QStringList found;
    const std::unique_ptr<tesseract::ResultIterator> line(tesseract.GetIterator());
    if (!line)
        return found;
    do {
        const std::unique_ptr<const char[]> utf8(line->GetUTF8Text(tesseract::RIL_TEXTLINE));
        const QString text = QString::fromUtf8(utf8.get()).trimmed();
        if (!text.isEmpty())
            found.append(text);
    } while (line->Next(tesseract::RIL_TEXTLINE));
    return found;
}

QStringList linesIn(const QImage& picture, const QStringList& uiLanguages)
{
    tesseract::TessBaseAPI tesseract;
    if (tesseract.Init(nullptr, tesseractLanguages(uiLanguages).constData(), tesseract::OEM_LSTM_ONLY) != 0)
        return {};
    tesseract.SetPageSegMode(tesseract::PSM_AUTO);
    tesseract.SetImage(picture.constBits(), picture.width(), picture.height(), 1, int(picture.bytesPerLine()));
    tesseract.SetSourceResolution(dotsPerInch);
    if (tesseract.Recognize(nullptr) != 0)
        return {};
    return lines(tesseract);
}

} // namespace

std::optional<QStringList> recognizeText(QIODevice& source, const QStringList& uiLanguages)
{
    stayOnOneThread();
    const QImage picture = recognitionPicture(PictureReading::read(source));
    if (picture.isNull())
        return std::nullopt;
    return linesIn(picture, uiLanguages);
}

} // namespace Clipboard
