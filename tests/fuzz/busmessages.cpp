#include "app/instance/applicationobject.h"
#include "app/instance/tasksinterface.h"
#include "app/menubar/dbusmenu.h"
#include "app/menubar/statusnotifieritem.h"
#include "fuzz.h"

#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusServer>
#include <QDBusSignature>
#include <QEventLoop>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <fuzzer/FuzzedDataProvider.h>

#include <iterator>
#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace
{

// An input is a flood of messages to all that the program exports on the session bus. They go over
// a socket and are written, read and dispatched as always; only the bus between is left out, which
// would hand them on as they are.

/// What the program has on the bus, and a party that calls it.
class Parties : public QObject
{
    Q_OBJECT

public:
    Parties()
    {
        connect(&m_server, &QDBusServer::newConnection, this,
                [this](const QDBusConnection &program) {
                    m_program = program;
                    m_item = std::make_unique<StatusNotifierItem>(program, itemicon::forBar({}));
                    new TasksInterface(program, &m_application);
                    m_program->registerObject(u"/dk/tulo/TimeTracker"_s, &m_application,
                                              QDBusConnection::ExportAllSlots |
                                                  QDBusConnection::ExportAdaptors);
                });
        m_client = QDBusConnection::connectToPeer(m_server.address(), u"client"_s);
        while (!m_item)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    QDBusConnection &client() { return m_client; }
    QDBusConnection &program() { return *m_program; }

private:
    QDBusServer m_server;
    QDBusConnection m_client{QString()};
    std::optional<QDBusConnection> m_program;
    std::unique_ptr<StatusNotifierItem> m_item;
    ApplicationObject m_application;
};

QString text(FuzzedDataProvider &input)
{
    static constexpr const char *known[] = {
        "",
        "clicked",
        "opened",
        "closed",
        "hovered",
        "label",
        "enabled",
        "type",
        "children-display",
        "quit",
        "show",
        "Menu",
        "ToolTip",
        "IconPixmap",
        "Status",
        "Version",
        "vertical",
        "horizontal",
        "activation-token",
        "desktop-startup-id",
        "com.canonical.dbusmenu",
        "org.kde.StatusNotifierItem",
        "org.freedesktop.Application",
        "dk.tulo.TimeTracker1",
        "Changes",
        "2026-11-01",
        "2026-11-30",
    };
    if (input.ConsumeIntegralInRange(0, 2) != 0)
        return QString::fromLatin1(input.PickValueInArray(known));
    return QString::fromStdString(input.ConsumeRandomLengthString(100));
}

int number(FuzzedDataProvider &input)
{
    // Mostly an item of the menu, or nearly.
    return input.ConsumeBool() ? input.ConsumeIntegralInRange(-1, 6) : input.ConsumeIntegral<int>();
}

QVariant anything(FuzzedDataProvider &input, int depth = 0);

template<class Value, class Make>
QList<Value> listOf(FuzzedDataProvider &input, Make make)
{
    QList<Value> list;
    for (int left = input.ConsumeIntegralInRange(0, 5); left > 0; --left)
        list.append(make());
    return list;
}

QVariantMap map(FuzzedDataProvider &input, int depth)
{
    QVariantMap map;
    for (int left = input.ConsumeIntegralInRange(0, 4); left > 0; --left) {
        const QString key = text(input);
        map.insert(key, anything(input, depth + 1));
    }
    return map;
}

/// A structure of the bus, which no method takes but in a list.
DBusMenuEvent structure(FuzzedDataProvider &input, int depth)
{
    return {number(input), text(input), QDBusVariant(anything(input, depth + 1)),
            input.ConsumeIntegral<uint>()};
}

/// A value of a type that methods and properties have; its signature on the bus is @p signature.
QVariant valueOf(FuzzedDataProvider &input, const QByteArray &signature, int depth)
{
    const auto aText = [&input] { return text(input); };
    if (signature == "i")
        return number(input);
    if (signature == "u")
        return input.ConsumeIntegral<uint>();
    if (signature == "s")
        return text(input);
    if (signature == "v")
        return QVariant::fromValue(QDBusVariant(anything(input, depth + 1)));
    if (signature == "as")
        return QStringList(listOf<QString>(input, aText));
    if (signature == "ai")
        return QVariant::fromValue(listOf<int>(input, [&input] { return number(input); }));
    if (signature == "av")
        return listOf<QVariant>(input, [&] { return anything(input, depth + 1); });
    if (signature == "a{sv}")
        return map(input, depth);
    // a(isvu)
    return QVariant::fromValue(
        listOf<DBusMenuEvent>(input, [&] { return structure(input, depth); }));
}

QVariant anything(FuzzedDataProvider &input, int depth)
{
    static constexpr const char *containers[] = {"v", "as", "ai", "av", "a{sv}", "a(isvu)"};
    constexpr int deepest = 6;
    switch (input.ConsumeIntegralInRange(0, depth < deepest ? 16 : 10)) {
    case 0:
        return text(input);
    case 1:
        return number(input);
    case 2:
        return input.ConsumeBool();
    case 3:
        return QVariant::fromValue(input.ConsumeIntegral<uchar>());
    case 4:
        return QVariant::fromValue(input.ConsumeIntegral<short>());
    case 5:
        return QVariant::fromValue(input.ConsumeIntegral<ushort>());
    case 6:
        return input.ConsumeIntegral<uint>();
    case 7:
        return input.ConsumeIntegral<qlonglong>();
    case 8:
        return input.ConsumeFloatingPoint<double>();
    case 9:
        return QVariant::fromValue(QDBusObjectPath(u"/MenuBar"_s));
    case 10:
        return QVariant::fromValue(QDBusSignature(u"a{sv}"_s));
    case 11:
        return QByteArray::fromStdString(input.ConsumeRandomLengthString(100));
    case 12:
        return QVariant::fromValue(structure(input, depth));
    default:
        return valueOf(input, input.PickValueInArray(containers), depth);
    }
}

struct Method {
    const char *path;
    const char *interface;
    const char *name;
    QList<QByteArray> signature;
};

const Method &method(FuzzedDataProvider &input)
{
    static const Method methods[] = {
        {"/MenuBar", "com.canonical.dbusmenu", "GetLayout", {"i", "i", "as"}},
        {"/MenuBar", "com.canonical.dbusmenu", "GetGroupProperties", {"ai", "as"}},
        {"/MenuBar", "com.canonical.dbusmenu", "GetProperty", {"i", "s"}},
        {"/MenuBar", "com.canonical.dbusmenu", "Event", {"i", "s", "v", "u"}},
        {"/MenuBar", "com.canonical.dbusmenu", "EventGroup", {"a(isvu)"}},
        {"/MenuBar", "com.canonical.dbusmenu", "AboutToShow", {"i"}},
        {"/MenuBar", "com.canonical.dbusmenu", "AboutToShowGroup", {"ai"}},
        {"/StatusNotifierItem", "org.kde.StatusNotifierItem", "Activate", {"i", "i"}},
        {"/StatusNotifierItem", "org.kde.StatusNotifierItem", "SecondaryActivate", {"i", "i"}},
        {"/StatusNotifierItem", "org.kde.StatusNotifierItem", "ContextMenu", {"i", "i"}},
        {"/StatusNotifierItem", "org.kde.StatusNotifierItem", "Scroll", {"i", "s"}},
        {"/StatusNotifierItem", "org.kde.StatusNotifierItem", "XAyatanaSecondaryActivate", {"u"}},
        {"/StatusNotifierItem", "org.kde.StatusNotifierItem", "ProvideXdgActivationToken", {"s"}},
        {"/dk/tulo/TimeTracker", "org.freedesktop.Application", "Activate", {"a{sv}"}},
        {"/dk/tulo/TimeTracker", "org.freedesktop.Application", "Open", {"as", "a{sv}"}},
        {"/dk/tulo/TimeTracker",
         "org.freedesktop.Application",
         "ActivateAction",
         {"s", "av", "a{sv}"}},
        {"/dk/tulo/TimeTracker", "dk.tulo.TimeTracker1", "Tasks", {"s", "s"}},
        {"/MenuBar", "org.freedesktop.DBus.Properties", "Get", {"s", "s"}},
        {"/MenuBar", "org.freedesktop.DBus.Properties", "Set", {"s", "s", "v"}},
        {"/MenuBar", "org.freedesktop.DBus.Properties", "GetAll", {"s"}},
        {"/StatusNotifierItem", "org.freedesktop.DBus.Properties", "Get", {"s", "s"}},
        {"/StatusNotifierItem", "org.freedesktop.DBus.Properties", "Set", {"s", "s", "v"}},
        {"/StatusNotifierItem", "org.freedesktop.DBus.Properties", "GetAll", {"s"}},
        {"/dk/tulo/TimeTracker", "org.freedesktop.DBus.Properties", "GetAll", {"s"}},
        {"/dk/tulo", "org.freedesktop.DBus.Introspectable", "Introspect", {}},
        {"/MenuBar", "org.freedesktop.DBus.Introspectable", "Introspect", {}},
    };
    return methods[input.ConsumeIntegralInRange<std::size_t>(0, std::size(methods) - 1)];
}

QDBusMessage message(FuzzedDataProvider &input)
{
    const Method &called = method(input);
    QVariantList arguments;
    for (const QByteArray &signature : called.signature)
        arguments << valueOf(input, signature, 0);
    // One argument too many, too few, or of another type.
    switch (input.ConsumeIntegralInRange(0, 9)) {
    case 0:
        arguments << anything(input);
        break;
    case 1:
        if (!arguments.isEmpty())
            arguments.removeLast();
        break;
    case 2:
    case 3:
        if (!arguments.isEmpty())
            arguments[input.ConsumeIntegralInRange<qsizetype>(0, arguments.size() - 1)] =
                anything(input);
        break;
    default:
        break;
    }
    QDBusMessage message = QDBusMessage::createMethodCall({}, QString::fromLatin1(called.path),
                                                          QString::fromLatin1(called.interface),
                                                          QString::fromLatin1(called.name));
    message.setArguments(arguments);
    return message;
}

QList<MenuLine> menuLines()
{
    return {{.id = 1, .label = u"I dag 7.25 t"_s, .isEnabled = false},
            {.id = 2, .isSeparator = true},
            {.id = 3, .label = u"en_to"_s, .isChecked = true},
            {.id = 4, .label = u"Afslut"_s}};
}

/// The answer to @p call, once it is there.
QDBusMessage answerTo(const QDBusPendingCall &call)
{
    const QDBusPendingCallWatcher watcher(call);
    QEventLoop loop;
    QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, &loop, &QEventLoop::quit);
    loop.exec();
    return watcher.reply();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    // The item writes its picture there.
    static const QTemporaryDir cache;
    qputenv("XDG_CACHE_HOME", QFile::encodeName(cache.path()));
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static const QGuiApplication application(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static Parties parties;
    FuzzedDataProvider input(data, size);

    DBusMenu menu(parties.program(), StatusNotifierItem::menuPath());
    menu.setLines(menuLines());
    QObject::connect(&menu, &DBusMenu::chosen, [](int id) {
        expect(id == 3 || id == 4, "only a line that can be chosen is chosen");
    });

    QList<QDBusPendingCall> calls;
    while (input.remaining_bytes() > 0 && calls.size() < 50)
        calls << parties.client().asyncCall(message(input));
    const QDBusMessage layout = answerTo(parties.client().asyncCall(
        QDBusMessage::createMethodCall({}, StatusNotifierItem::menuPath(),
                                       u"com.canonical.dbusmenu"_s, u"GetLayout"_s)
        << 0 << -1 << QStringList()));

    expect(layout.type() == QDBusMessage::ReplyMessage, "the program still answers");
    const auto root = qdbus_cast<DBusMenuLayout>(layout.arguments().value(1));
    // Its first opening tells of it once.
    expect(layout.arguments().value(0).toUInt() <= 2 && root.children.size() == 4,
           "calls do not change the menu");
    for (const QDBusPendingCall &call : std::as_const(calls))
        expect(call.isFinished(), "each call is answered, and in its turn");
    return 0;
}

#include "busmessages.moc"
