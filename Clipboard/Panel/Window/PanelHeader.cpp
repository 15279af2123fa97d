#include "PanelHeader.h"

#include "ClearButton.h"
#include "FilterChips.h"
#include "HistoryViewModel.h"
#include "SearchField.h"
#include "Theme.h"
#include "TintedIcon.h"

#include <QPainter>

namespace Clipboard {

namespace {

constexpr int lensSize = 18;
constexpr int textLeft = 44;
constexpr int fieldTextInset = 2;
constexpr int fieldHeight = 28;
constexpr int searchMiddle = 25; // the text sits a pixel below the middle of its band
constexpr int clearSize = 16;
constexpr int clearGap = 10;

} // namespace

PanelHeader::PanelHeader(HistoryViewModel& viewModel, QWidget* parent)
    : QWidget(parent)
    , m_viewModel(viewModel)
    , m_field(new SearchField(Fonts::search, tr("Search clipboard…"), viewModel, this))
    , m_clear(new ClearButton(this))
    , m_chips(new FilterChips(viewModel, this))
{
    connect(m_field, &QLineEdit::textEdited, this, [this](const QString& text) { m_viewModel.setQuery(text); });
    connect(m_clear, &QAbstractButton::clicked, this, [this] { m_viewModel.setQuery(QString()); });
}

void PanelHeader::sync()
{
    if (m_field->text() != m_viewModel.query())
        m_field->setText(m_viewModel.query());
    m_clear->setVisible(!m_viewModel.query().isEmpty());
    m_field->setCaretShown(!m_viewModel.focus().has_value() && !m_viewModel.cmdkOpen());
    m_chips->sync();
}

void PanelHeader::resizeEvent(QResizeEvent* event)
{
    const int clearLeft = width() - Theme::margin - clearSize;
    const int fieldLeft = textLeft - fieldTextInset;
    m_field->setGeometry(fieldLeft, searchMiddle - fieldHeight / 2, clearLeft - clearGap - fieldLeft, fieldHeight);
    m_clear->setControlGeometry({clearLeft, searchMiddle - clearSize / 2, clearSize, clearSize});
    m_chips->setGeometry(0, Theme::searchHeight - Theme::ringOutset, width(),
                         Theme::chipHeight + 2 * Theme::ringOutset);
    QWidget::resizeEvent(event);
}

void PanelHeader::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    const QRectF lens(Theme::margin, searchMiddle - lensSize / 2.0, lensSize, lensSize);
    drawIcon(painter, lens, {QLatin1String("search"), lensSize, Theme::text2});
}

} // namespace Clipboard
