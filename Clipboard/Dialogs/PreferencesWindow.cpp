#include "PreferencesWindow.h"

#include "Accessibility.h"
#include "ChordButton.h"
#include "FormButton.h"
#include "FormField.h"
#include "FormLabel.h"
#include "InlineMenu.h"
#include "OverlayScrollArea.h"
#include "Preferences.h"
#include "Theme.h"
#include "WordList.h"

#include <QAction>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QScreen>

#include <algorithm>
#include <utility>

namespace Clipboard {

using namespace Qt::StringLiterals;
using Kind = Preference::Kind;
using Style = FormLabel::Style;

namespace {

constexpr int windowWidth = 560;
constexpr qreal shareOfScreen = 0.85;
constexpr int margin = 24;
constexpr int betweenRows = 14;
constexpr int aboveSection = 14;
constexpr int fieldWidth = 110;
constexpr int mostOffered = 12; // what a menu of applications shows without scrolling

QString shown(const char* text)
{
    return QCoreApplication::translate("Preference", text);
}

/// Controls beside each other from the left, or a list below its label: what is wide gets a line of its own.
bool isWide(const Preference& preference)
{
    return preference.kind == Kind::words || preference.kind == Kind::names || preference.kind == Kind::patterns;
}

} // namespace

PreferencesWindow::PreferencesWindow(Services services)
    : QWidget(nullptr, Qt::Window)
    , m_services(std::move(services))
{
    setWindowTitle(tr("Preferences"));
    setObjectName(u"PreferencesWindow"_s);
    setAttribute(Qt::WA_QuitOnClose, false);
    setFixedWidth(windowWidth);
    auto* page = new QWidget;
    auto* form = new QVBoxLayout(page);
    constexpr int side = margin - Theme::ringOutset; // the rings of the controls reach into the margin
    form->setContentsMargins(side, margin, side, margin);
    form->setSpacing(betweenRows);
    QByteArray section;
    for (const Preference& preference : preferenceTable()) {
        if (*preference.texts.section == '\0')
            continue;
        if (section != preference.texts.section) {
            form->addSpacing(section.isEmpty() ? 0 : aboveSection);
            section = preference.texts.section;
            form->addWidget(new FormLabel(shown(preference.texts.section), Style::section, page));
        }
        addRow(preference, form);
    }
    addPauseRow(form);
    form->addStretch();
    connect(&m_services.preferences, &Preferences::changed, this, &PreferencesWindow::sync);
    sync(); // before the first look at how much room all of it takes
    auto* area = new OverlayScrollArea(page, {}, this);
    area->setWidgetResizable(true);
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(area);
    const int highest = static_cast<int>(screen()->availableGeometry().height() * shareOfScreen);
    resize(windowWidth, std::min(form->totalHeightForWidth(windowWidth), highest));
}

PreferencesWindow::~PreferencesWindow() = default;

void PreferencesWindow::sync()
{
    for (const auto& sync : std::as_const(m_syncs))
        sync();
}

void PreferencesWindow::addRow(const Preference& preference, QVBoxLayout* form)
{
    auto* row = new QWidget;
    auto* texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addWidget(new FormLabel(shown(preference.texts.label), Style::label, row));
    if (*preference.texts.help != '\0')
        texts->addWidget(new FormLabel(shown(preference.texts.help), Style::help, row));
    QWidget* control = controlOf(preference, row);
    QBoxLayout* line = isWide(preference) ? static_cast<QBoxLayout*>(new QVBoxLayout(row)) : new QHBoxLayout(row);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(isWide(preference) ? Theme::spacing : margin);
    line->addLayout(texts, isWide(preference) ? 0 : 1);
    line->addWidget(control, 0, isWide(preference) ? Qt::Alignment() : Qt::AlignRight | Qt::AlignVCenter);
    form->addWidget(row);
}

QWidget* PreferencesWindow::controlOf(const Preference& preference, QWidget* row)
{
    switch (preference.kind) {
    case Kind::flag:
        return switchOf(preference, row);
    case Kind::number:
        return fieldOf(preference, row);
    case Kind::choice:
    case Kind::words:
        return chipsOf(preference, row);
    case Kind::names:
    case Kind::patterns:
        return listOf(preference, row);
    case Kind::chord:
        return chordOf(preference, row);
    }
    Q_UNREACHABLE();
}

QWidget* PreferencesWindow::switchOf(const Preference& preference, QWidget* row)
{
    auto* button = new FormButton(shown(preference.texts.label), FormButton::Shape::sliding, row);
    button->setIsChoice(QAccessible::CheckBox);
    connect(button, &QAbstractButton::clicked, this,
            [this, &preference](bool isOn) { choose(preference, {isOn ? u"true"_s : u"false"_s}); });
    whenSynced([this, &preference, button] { button->setChecked(m_services.preferences.flag(preference.key)); });
    return button;
}

QWidget* PreferencesWindow::chipsOf(const Preference& preference, QWidget* row)
{
    auto* chips = new QWidget(row);
    auto* line = new QHBoxLayout(chips);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(0); // the rings have their room
    chips->setAccessibleName(shown(preference.texts.label));
    for (qsizetype i = 0; i < preference.choices.size(); ++i) {
        const QString& choice = preference.choices.at(i);
        auto* chip = new FormButton(shown(preference.texts.choices.at(i)), FormButton::Shape::chip, chips);
        chip->setIsChoice(preference.isSingle() ? QAccessible::RadioButton : QAccessible::CheckBox);
        connect(chip, &QAbstractButton::clicked, this,
                [this, &preference, choice](bool isOn) { chooseChip(preference, choice, isOn); });
        whenSynced([this, &preference, choice, chip] {
            chip->setChecked(m_services.preferences.values(preference.key).contains(choice));
        });
        line->addWidget(chip);
    }
    if (!preference.isSingle())
        line->addStretch();
    return chips;
}

void PreferencesWindow::chooseChip(const Preference& preference, const QString& choice, bool isOn)
{
    QStringList values = preference.isSingle() ? QStringList() : m_services.preferences.values(preference.key);
    if (isOn || preference.isSingle())
        values.append(choice);
    else
        values.removeAll(choice);
    choose(preference, values);
    sync(); // a chip that stands for the only choice stays on
}

QWidget* PreferencesWindow::fieldOf(const Preference& preference, QWidget* row)
{
    auto* field = new FormField(m_services.copiedText, row);
    field->setRange(preference.least, preference.most);
    field->setFixedWidth(fieldWidth);
    field->setAccessibleName(shown(preference.texts.label));
    field->setAccessibleDescription(shown(preference.texts.help));
    connect(field, &FormField::numberChosen, this,
            [this, &preference](int number) { choose(preference, {QString::number(number)}); });
    whenSynced([this, &preference, field] {
        if (!field->hasFocus() || !field->isModified())
            field->setNumber(m_services.preferences.number(preference.key));
    });
    return field;
}

QWidget* PreferencesWindow::chordOf(const Preference& preference, QWidget* row)
{
    auto* button = new ChordButton(row);
    connect(button, &ChordButton::chordPressed, this,
            [this, &preference](const ClipboardCore::KeyChord& chord) { choose(preference, {chord.text()}); });
    whenSynced([this, &preference, button] {
        if (const auto chord = ClipboardCore::KeyChord::fromText(m_services.preferences.value(preference.key)))
            button->setChord(*chord);
    });
    return button;
}

QWidget* PreferencesWindow::listOf(const Preference& preference, QWidget* row)
{
    auto* whole = new QWidget(row);
    auto* column = new QVBoxLayout(whole);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(2);
    auto* list = new WordList(whole);
    list->setAccessibleName(shown(preference.texts.label));
    connect(list, &WordList::wordRemoved, this, [this, &preference](const QString& word) {
        QStringList words = m_services.preferences.values(preference.key);
        words.removeAll(word);
        choose(preference, words);
    });
    whenSynced([this, &preference, list] {
        list->setWords(m_services.preferences.values(preference.key), shownWords(preference));
    });
    column->addWidget(list);
    addWordSource(preference, column);
    return whole;
}

void PreferencesWindow::addWordSource(const Preference& preference, QVBoxLayout* column)
{
    auto* line = new QHBoxLayout;
    line->setSpacing(0);
    // In the order in which they have the focus.
    auto* field = preference.kind == Kind::names ? nullptr : patternField(preference, column->parentWidget());
    auto* button = new FormButton(tr("Add"), FormButton::Shape::button, column->parentWidget());
    if (!field) {
        button->setText(tr("Add Application…"));
        button->setAccessibleName(button->text());
        connect(button, &QAbstractButton::clicked, this, [this, button] { openSeenApplications(button); });
        line->addWidget(button);
        line->addStretch();
    } else {
        connect(button, &QAbstractButton::clicked, field, &QLineEdit::returnPressed);
        line->addWidget(field, 1);
        line->addWidget(button);
    }
    column->addLayout(line);
}

FormField* PreferencesWindow::patternField(const Preference& preference, QWidget* parent)
{
    auto* field = new FormField(m_services.copiedText, parent);
    field->setAccessibleName(shown(preference.texts.label));
    field->setPlaceholderText(tr("Regular expression"));
    connect(field, &QLineEdit::returnPressed, this, [this, &preference, field] {
        if (addWord(preference, field->text()))
            field->clear();
    });
    return field;
}

bool PreferencesWindow::addWord(const Preference& preference, const QString& word)
{
    return !word.trimmed().isEmpty() &&
           choose(preference, m_services.preferences.values(preference.key) + QStringList(word));
}

void PreferencesWindow::openSeenApplications(FormButton* button)
{
    const Preference& preference = *findPreference(PreferenceKey::neverApplications);
    const QStringList excluded = m_services.preferences.values(preference.key);
    QList<QAction*> actions;
    const QList<Application> seen = m_services.seenApplications();
    for (const Application& application : seen) {
        if (excluded.contains(application.id, Qt::CaseInsensitive) || actions.size() == mostOffered)
            continue;
        actions.append(new QAction(application.name, button));
        connect(actions.constLast(), &QAction::triggered, this,
                [this, &preference, id = application.id] { addWord(preference, id); });
    }
    if (actions.isEmpty()) {
        actions.append(new QAction(tr("Nothing was copied from another one"), button));
        actions.constFirst()->setEnabled(false);
    }
    auto* menu = new InlineMenu(actions, QRect(button->mapTo(this, QPoint()), button->size()), this);
    menu->setFocus(Qt::PopupFocusReason);
    connect(menu, &InlineMenu::closed, button, [button, actions] {
        button->setFocus(Qt::TabFocusReason);
        for (QAction* action : actions)
            action->deleteLater();
    });
}

QStringList PreferencesWindow::shownWords(const Preference& preference) const
{
    QStringList words = m_services.preferences.values(preference.key);
    if (preference.kind != Kind::names)
        return words;
    const QList<Application> seen = m_services.seenApplications();
    for (QString& word : words) {
        const auto named = std::ranges::find(seen, word, &Application::id);
        word = named == seen.cend() || named->name == word ? word : named->name + u" — "_s + word;
    }
    return words;
}

void PreferencesWindow::addPauseRow(QVBoxLayout* form)
{
    auto* row = new QWidget;
    auto* line = new QHBoxLayout(row);
    line->setContentsMargins(0, 0, 0, 0);
    auto* state = new FormLabel({}, Style::label, row);
    auto* button = new FormButton(tr("Pause Recording"), FormButton::Shape::button, row);
    connect(button, &QAbstractButton::clicked, this, [this] { m_services.togglePause(); });
    whenSynced([this, state, button] {
        const QString pause = m_services.pause();
        state->setText(pause.isEmpty() ? tr("Copies are being recorded.") : pause);
        button->setText(pause.isEmpty() ? tr("Pause Recording") : tr("Resume Recording"));
        button->setAccessibleName(button->text());
        button->updateGeometry();
    });
    line->addWidget(state, 1);
    line->addWidget(button);
    form->addWidget(row);
}

bool PreferencesWindow::choose(const Preference& preference, const QStringList& values)
{
    const auto wrong = m_services.preferences.set(preference, values);
    if (wrong) {
        emit refused(preference.kind == Kind::patterns ? tr("This is no regular expression that can be kept.")
                                                       : tr("The preference could not be kept."));
        sync();
    }
    return !wrong;
}

void PreferencesWindow::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape || event->matches(QKeySequence::Close))
        close();
    else
        QWidget::keyPressEvent(event);
}

void PreferencesWindow::paintEvent(QPaintEvent* /*event*/)
{
    QPainter(this).fillRect(rect(), Theme::panel);
}

} // namespace Clipboard
