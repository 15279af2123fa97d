#pragma once

#include "CanvasView.h"
#include "EditorController.h"
#include "EditorWindow.h"
#include "Fakes.h"
#include "PasteService.h"
#include "Pictures.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QKeySequence>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QWindow>

namespace Clipboard::Testing {

/// The editor with the desktop faked, and a mouse and a keyboard.
struct EditorFixture
{
    QTemporaryDir folder;
    QWidget panel; // takes the keyboard from the editor
    FakeWindowSystem windows;
    FakeKeystrokeSender keystrokes;
    QStringList toasts;
    std::function<void(const QString&)> toast = [this](const QString& text) { toasts.append(text); };
    PasteService pasteService{keystrokes, toast};
    QString imagesDir = folder.filePath(QStringLiteral("images"));
    EditorController editor{imagesDir, {windows, pasteService, toast, [] { return QStringLiteral("pas\r\nted"); }}};
    ClipboardCore::ClipItem item{QUuid::createUuid(),
                                 ClipboardCore::ClipType::image,
                                 folder.filePath(QStringLiteral("original.png")),
                                 {},
                                 {},
                                 0,
                                 false};
    const QUuid newID = QUuid::createUuid();
    QStringList added;
    QList<QByteArray> written;
    QList<std::optional<QUuid>> closedWith;
    bool isPanelSlow = false;
    int quits = 0;

    EditorFixture()
    {
        QCoreApplication::setOrganizationName(QStringLiteral("Tessaly"));
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
        editor.addResult = [this](const QString& path, const ClipboardCore::ClipItem& /*from*/) {
            added.append(path);
            return newID;
        };
        editor.writePNG = [this](const QByteArray& png) { written.append(png); };
        editor.onClose = [this](std::optional<QUuid> selecting) {
            closedWith.append(selecting);
            if (isPanelSlow)
                return;
            panel.show();
            panel.activateWindow();
        };
        editor.onQuit = [this] { ++quits; };
        plain().save(item.content.toString());
    }
    void open(const QImage& picture = plain())
    {
        panel.hide();
        editor.open(picture, nullptr, EditorController::rememberedColor(), EditorController::rememberedSize(), item);
        QTRY_VERIFY(window() && QTest::qWaitForWindowActive(window(), patience));
    }
    /// With a rectangle from 100|100 to 200|200 that is selected.
    void openWithMark()
    {
        open();
        keys(QStringLiteral("R"));
        drag({100, 100}, {200, 200});
        click({100, 150});
    }
    [[nodiscard]] static EditorWindow* window()
    {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            auto* found = qobject_cast<EditorWindow*>(widget);
            if (found && found->isVisible())
                return found;
        }
        return nullptr;
    }
    [[nodiscard]] static CanvasView* canvas() { return window()->findChild<CanvasView*>(); }
    template <typename Widget = QWidget>
    [[nodiscard]] static Widget* child(const QString& name)
    {
        return window()->findChild<Widget*>(name);
    }
    static void keys(const QString& sequences)
    {
        for (const QString& sequence : sequences.split(u' ', Qt::SkipEmptyParts)) {
            const QKeyCombination chord = QKeySequence(sequence)[0];
            QTest::keyClick(window()->windowHandle(), chord.key(), chord.keyboardModifiers());
        }
    }
    static void type(const QString& text)
    {
        for (const QChar character : text)
            QTest::keyClick(window()->windowHandle(), character.toLatin1());
    }
    static QPoint place(QPointF picture) { return canvas()->viewport().toCanvas(picture).toPoint(); }
    static QColor colorAt(QPointF picture) { return canvas()->grab().toImage().pixelColor(place(picture)); }
    static void click(QPointF at) { QTest::mouseClick(canvas(), Qt::LeftButton, {}, place(at)); }
    static void drag(QPointF from, QPointF to)
    {
        QTest::mousePress(canvas(), Qt::LeftButton, {}, place(from));
        QTest::mouseMove(canvas(), place((from + to) / 2));
        QTest::mouseMove(canvas(), place(to));
        QTest::mouseRelease(canvas(), Qt::LeftButton, {}, place(to));
    }
    /// Begins a label and answers what takes the typing.
    static QWidget* beginLabel()
    {
        keys(QStringLiteral("T"));
        click({61, 53});
        return child(QStringLiteral("LabelEditor"));
    }
};

} // namespace Clipboard::Testing
