#include "Support/KeyChord.h"

#include "Rows.h"

using ClipboardCore::KeyChord;
using namespace Qt::StringLiterals;

namespace {

/// `read` is the chord as it is written again; empty for no chord.
void checkChord(const char* text, const QString& read)
{
    const auto chord = KeyChord::fromText(QString::fromLatin1(text));
    QCOMPARE(chord ? chord->text() : QString(), read);
    QCOMPARE(chord ? KeyChord::fromText(read) : std::nullopt, chord);
}

} // namespace

class KeyChordTest final : public QObject
{
    Q_OBJECT
private slots:
    void readsWhatAPersonWrites()
    {
        checkRows(checkChord, {{"Super+Shift+V", u"Super+Shift+V"_s},
                               {"shift + CTRL+pageup", u"Ctrl+Shift+PageUp"_s},
                               {"alt+7", u"Alt+7"_s},
                               {"f24", u"F24"_s},
                               {"Pause", u"Pause"_s},
                               {"V", {}},
                               {"Shift+V", {}},
                               {"Shift+Space", {}},
                               {"Ctrl+F25", {}},
                               {"Ctrl+F01", {}},
                               {"Ctrl+", {}},
                               {"Hyper+V", {}},
                               {"Ctrl+Tab", {}},
                               {"Ctrl+\xC4", {}},
                               {"", {}}});
    }
};

QTEST_GUILESS_MAIN(KeyChordTest)
#include "KeyChordTest.moc"
