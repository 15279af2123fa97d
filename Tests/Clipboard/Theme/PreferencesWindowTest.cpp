#include "PreferencesWindow.h"
#include "ChordButton.h"
#include "FormButton.h"
#include "FormField.h"
#include "InlineMenu.h"
#include "Preferences.h"
#include "ReferencePicture.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Clipboard;
using namespace Clipboard::Testing;
using namespace Qt::StringLiterals;

/// The window for what the user can choose, with user defaults of its own.
class PreferencesWindowTest final : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup() { m_window.reset(); }
    void looksLikeTheDesign();
    void choosesByKeyboard();
    void takesAnotherHotKey();
    void followsTheFile();

private:
    template <typename Control>
    [[nodiscard]] Control* named(const QString& name) const
    {
        const auto controls = m_window->findChildren<Control*>();
        const auto found = std::ranges::find(controls, name, &Control::accessibleName);
        return found == controls.cend() ? nullptr : *found;
    }

    QTemporaryDir m_folder;
    std::unique_ptr<Preferences> m_preferences;
    std::unique_ptr<PreferencesWindow> m_window;
};

void PreferencesWindowTest::initTestCase()
{
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_folder.path());
    QCoreApplication::setOrganizationName(u"Tessaly"_s);
    QCoreApplication::setApplicationName(u"Tessaly"_s);
}

void PreferencesWindowTest::init()
{
    QSettings().clear();
    m_preferences = std::make_unique<Preferences>(LoginItem(m_folder.filePath(u"autostart"_s), u"/usr/bin/tessaly"_s));
    m_window = std::make_unique<PreferencesWindow>(PreferencesWindow::Services{
        *m_preferences,
        [] {
            return QList<PreferencesWindow::Application>{{u"org.keepassxc.KeePassXC"_s, u"KeePassXC"_s}};
        },
        [] { return u"pasted"_s; }, [] { return QString(); }, [] {}});
}

void PreferencesWindowTest::looksLikeTheDesign()
{
    (void)m_preferences->set(*findPreference(PreferenceKey::recordedTypes), {u"text"_s, u"link"_s, u"code"_s});
    (void)m_preferences->set(*findPreference(PreferenceKey::neverApplications), {u"org.keepassxc.KeePassXC"_s});
    (void)m_preferences->set(*findPreference(PreferenceKey::neverPatterns), {u"^\\d{6}$"_s, u"PRIVATE KEY"_s});
    (void)m_preferences->set(*findPreference(PreferenceKey::startAtLogin), {u"true"_s});
    m_window->resize(560, 900);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get(), patience));
    named<FormButton>(u"Newest copy"_s)->setFocus(Qt::TabFocusReason);
    for (const qreal ratio : {1.0, 2.0})
        expectPicture(u"preferences, %1x"_s.arg(ratio), *m_window, ratio);
    QPoint last;
    auto* control = m_window->findChild<ChordButton*>()->nextInFocusChain();
    for (; control != m_window.get(); control = control->nextInFocusChain()) {
        if ((control->focusPolicy() & Qt::TabFocus) == 0 || !control->isVisible())
            continue;
        const QPoint place = control->mapTo(m_window.get(), control->rect().center());
        QVERIFY2(place.y() > last.y() + 9 || place.x() > last.x(), qPrintable(control->accessibleName()));
        last = place;
    }
}

void PreferencesWindowTest::choosesByKeyboard()
{
    QSignalSpy refused(m_window.get(), &PreferencesWindow::refused);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get(), patience));
    QTest::keyClick(named<FormButton>(u"Forget at the end"_s), Qt::Key_Space);
    QTest::keyClick(named<FormButton>(u"Newest copy"_s), Qt::Key_Return);
    QTest::keyClick(named<FormButton>(u"Images"_s), Qt::Key_Space);
    auto* entries = named<FormField>(u"Entries kept"_s);
    entries->setFocus();
    entries->selectAll();
    QTest::keyClicks(entries, u"5"_s);
    QCOMPARE(m_preferences->number(PreferenceKey::historyEntries), 500); // not while it is being typed
    QTest::keyClick(entries, Qt::Key_Return);
    auto* pattern = named<FormField>(u"Never matching"_s);
    for (const QString& text : {u"("_s, u"secret"_s}) {
        pattern->setText(text);
        QTest::keyClick(pattern, Qt::Key_Return);
    }
    QTest::keyClick(named<FormButton>(u"Add Application…"_s), Qt::Key_Space);
    QTest::keyClick(m_window->findChild<InlineMenu*>(), Qt::Key_Return);
    QCOMPARE(refused.size(), 1);
    const Preferences kept(LoginItem(m_folder.filePath(u"autostart"_s), {}));
    QVERIFY(kept.flag(PreferenceKey::forgetOnExit));
    QCOMPARE(kept.value(PreferenceKey::selectAtOpening), u"newest"_s);
    QVERIFY(!kept.values(PreferenceKey::recordedTypes).contains(u"image"_s));
    QCOMPARE(kept.number(PreferenceKey::historyEntries), 10); // the fewest that there can be
    QCOMPARE(kept.values(PreferenceKey::neverPatterns), QStringList{u"secret"_s});
    QCOMPARE(kept.values(PreferenceKey::neverApplications), QStringList{u"org.keepassxc.KeePassXC"_s});
    QTest::keyClick(named<FormButton>(u"Remove secret"_s), Qt::Key_Space);
    QCOMPARE(m_preferences->values(PreferenceKey::neverPatterns), QStringList());
    QTest::keyClick(m_window.get(), Qt::Key_Escape);
    QVERIFY(!m_window->isVisible());
}

void PreferencesWindowTest::takesAnotherHotKey()
{
    auto* button = m_window->findChild<ChordButton*>();
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get(), patience));
    button->setFocus();
    QTest::keyClick(button, Qt::Key_Space);
    QTest::keyClick(button, Qt::Key_V, Qt::ShiftModifier); // types a letter
    QTest::keyClick(button, Qt::Key_PageUp, Qt::ControlModifier | Qt::AltModifier);
    QCOMPARE(m_preferences->value(PreferenceKey::hotKey), u"Ctrl+Alt+PageUp"_s);
    QTest::keyClick(button, Qt::Key_F9); // records no longer
    QTest::keyClick(button, Qt::Key_Return);
    QTest::keyClick(button, Qt::Key_Escape);
    QTest::keyClick(button, Qt::Key_F9);
    QCOMPARE(m_preferences->value(PreferenceKey::hotKey), u"Ctrl+Alt+PageUp"_s);
    QVERIFY(m_window->isVisible());
}

void PreferencesWindowTest::followsTheFile()
{
    m_preferences->follow();
    QFile file(QSettings().fileName());
    QVERIFY(file.open(QFile::WriteOnly) && file.write("[General]\nhistoryDays=30\nhotKey=nonsense\n") > 0);
    file.close();
    QVERIFY(QFile::rename(file.fileName(), m_folder.filePath(u"aside"_s)) &&
            QFile::rename(m_folder.filePath(u"aside"_s), file.fileName()));
    QTRY_COMPARE(named<FormField>(u"Days kept"_s)->text(), u"30"_s);
    QCOMPARE(m_preferences->value(PreferenceKey::hotKey), u"Super+Shift+V"_s);
}

QTEST_MAIN(PreferencesWindowTest)
#include "PreferencesWindowTest.moc"
