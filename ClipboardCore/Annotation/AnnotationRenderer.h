#pragma once

#include "Annotation/AnnotationSession.h"

namespace ClipboardCore {

class DrawingContext;

/// Draws a session's picture and marks into a context whose origin shows a corner of a region of the picture.
class AnnotationRenderer final
{
public:
    /// Draws into `context` as long as it lives; puts its state back when it goes.
    AnnotationRenderer(const AnnotationSession& session, DrawingContext& context, const QRectF& region, double scale);
    ~AnnotationRenderer();
    Q_DISABLE_COPY_MOVE(AnnotationRenderer)

    void drawPicture();
    /// Without a pixelated picture the pixelated areas stay away.
    void drawMarks(const Picture* pixelatedPicture);

private:
    void drawMark(AnnotationSession::Index index, const Picture* pixelatedPicture);
    void drawArrow(const Annotation& mark);
    void drawPixelated(const Annotation& mark, const Picture& pixelatedPicture);
    void drawCounter(const Annotation& mark, int number);
    void drawText(const Annotation& mark, bool isBeingTyped);

    const AnnotationSession& m_session;
    const AnnotationMeasures& m_measures;
    DrawingContext& m_context;
    QRectF m_visible; // what can show in the region, the blur of edges included
};

} // namespace ClipboardCore
