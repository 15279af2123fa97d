#pragma once

#include "Actions/SmartActions.h"
#include "Support/ToastText.h"

#include <QByteArray>
#include <QImage>
#include <QString>
#include <QThreadPool>

#include <chrono>
#include <functional>
#include <optional>

namespace Clipboard {

class HistoryViewModel;
class LinkMetadataProvider;
class Pasteboard;
class TextRecognizer;
class Workspace;

/// Carries out what smart actions ask for. Nothing it starts is cancelled: a recognition or a page title that comes
/// late is still put on the pasteboard. Main thread only; must outlive the view models that are given to it.
class SmartActionRunner final
{
public:
    struct Services
    {
        Pasteboard& pasteboard;
        Workspace& workspace;
        TextRecognizer& textRecognizer;
        LinkMetadataProvider& linkMetadata;
        std::function<void(const ClipboardCore::ToastText& text)> toast;
        /// The QR code of these bytes; nothing when there is none.
        std::function<std::optional<QImage>(const QByteArray& bytes)> qrCode;
    };

    /// How long the title of a page may take.
    static constexpr std::chrono::milliseconds titleLimit{3000};

    explicit SmartActionRunner(Services services);
    ~SmartActionRunner();
    SmartActionRunner(const SmartActionRunner&) = delete;
    SmartActionRunner& operator=(const SmartActionRunner&) = delete;

    /// Returns at once. Every write to the pasteboard is followed by the model's markOwnChange; a QR code also becomes
    /// its qrPreview. What is still to be answered holds the model's actionUnderWay() until then. What fails ends in a
    /// notice or in nothing, never in a half-done write.
    void perform(const ClipboardCore::SmartActionEffect& effect, HistoryViewModel& viewModel);

private:
    void copy(const ClipboardCore::Utf8Text& text, const HistoryViewModel& viewModel);
    void openURL(const ClipboardCore::Utf8Text& link);
    void copyFileToDesktop(const QString& path, HistoryViewModel& viewModel);
    void copyFileToPictures(const QString& path, HistoryViewModel& viewModel);
    void recognizeText(const QString& path, HistoryViewModel& viewModel);
    void copyQRCode(const ClipboardCore::Utf8Text& text, HistoryViewModel& viewModel);
    void copyMarkdownLink(const ClipboardCore::Utf8Text& link, HistoryViewModel& viewModel);

    Services m_services;
    QThreadPool m_pool; // copies to the Desktop
};

} // namespace Clipboard
