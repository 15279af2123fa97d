#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

namespace Clipboard::Testing {

/// What a screen reader sees and hears: a client of AT-SPI on the accessibility bus of a session
/// (https://gitlab.gnome.org/GNOME/at-spi2-core/-/tree/main/xml).
class AssistiveClient final : public QObject
{
    Q_OBJECT
public:
    /// Bits of the state that elements report; the numbers are AT-SPI's.
    enum State { checked = 4, editable = 7, focusable = 11, focused = 12, modal = 16, selected = 23, showing = 25 };

    struct Element
    {
        QString service;
        QString path;
        QString role; // as AT-SPI names it: "list item"
        QString name;
        QString description;
        quint64 states = 0;
        [[nodiscard]] bool is(State state) const { return (states >> state & 1U) != 0; }
    };

    /// Programs send each key around over the bus before they take it while somebody listens as a screen reader does.
    /// They go on speaking to an eavesdropper, who signs off as soon as they know of it.
    enum class Manner { screenReader, eavesdropper };

    /// Connects to the session's accessibility bus, which that starts, and begins to listen.
    explicit AssistiveClient(const QString& sessionBus, Manner manner = Manner::screenReader);
    ~AssistiveClient() override;
    Q_DISABLE_COPY_MOVE(AssistiveClient)

    /// Every element below that one, or of every program, that is on the screen, parents before their children.
    [[nodiscard]] QList<Element>
    elements(const QString& service = registry,
             const QString& path = QStringLiteral("/org/a11y/atspi/accessible/root")) const;
    /// Does what the element offers under that name. False when it offers no such thing.
    [[nodiscard]] bool perform(const Element& element, const QString& action) const;

    /// Which elements came into which state: "focused list item Text, hello".
    [[nodiscard]] const QStringList& heard() const { return m_heard; }
    void forgetHeard(qsizetype count) { m_heard.remove(0, count); }

signals:
    /// To an eavesdropper: one more program has come that says from now on what there is to say.
    void joined();
    /// One more of what heard() has.
    void said(const QString& words);

private slots: // by name, as a bus signal needs it
    void stateChanged(const QDBusMessage& message);
    void childrenChanged(const QDBusMessage& message);

private:
    static constexpr QLatin1String registry{"org.a11y.atspi.Registry"};

    QVariant ask(const QString& service, const QString& path, const QString& interface, const QString& method,
                 const QVariantList& arguments = {}) const;
    [[nodiscard]] Element element(const QString& service, const QString& path) const;

    QDBusConnection m_bus;
    QStringList m_heard;
};

} // namespace Clipboard::Testing
