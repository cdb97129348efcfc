// Walks a running Tidemark over the accessibility bus, as a screen reader does: starts its search and reads
// the rows that are found. Prints what isn't as it must be and returns 1 then. accessibility-bus.sh runs it.

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusInterface>
#include <QDBusMetaType>
#include <QDBusReply>
#include <QElapsedTimer>
#include <QThread>

#include <cstdio>
#include <functional>
#include <optional>

using namespace Qt::Literals::StringLiterals;

/// An object on the bus.
struct Node
{
    QString service;
    QDBusObjectPath path;
};
Q_DECLARE_METATYPE(Node)

QDBusArgument &operator<<(QDBusArgument &argument, const Node &node)
{
    argument.beginStructure();
    argument << node.service << node.path;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, Node &node)
{
    argument.beginStructure();
    argument >> node.service >> node.path;
    argument.endStructure();
    return argument;
}

namespace {

constexpr int LONGEST_WAIT_MS = 30000;
constexpr int POLL_MS = 50;
constexpr int DEEPEST = 12;
constexpr uint EXPANDED = 1U << 10;
const QString ACCESSIBLE = u"org.a11y.atspi.Accessible"_s;

class Bus
{
public:
    explicit Bus(const QString &address) : _bus(QDBusConnection::connectToBus(address, u"a11y"_s)) {}

    bool isConnected() const { return _bus.isConnected(); }
    QList<Node> children(const Node &node) const
    {
        return QDBusReply<QList<Node>>(_call(node, ACCESSIBLE, u"GetChildren"_s)).value();
    }
    QString name(const Node &node) const
    {
        const QDBusReply<QVariant> name =
            _call(node, u"org.freedesktop.DBus.Properties"_s, u"Get"_s, {ACCESSIBLE, u"Name"_s});
        return name.value().toString();
    }
    QString role(const Node &node) const
    {
        return QDBusReply<QString>(_call(node, ACCESSIBLE, u"GetRoleName"_s)).value();
    }
    int index(const Node &node) const
    {
        return QDBusReply<int>(_call(node, ACCESSIBLE, u"GetIndexInParent"_s)).value();
    }
    uint states(const Node &node) const
    {
        return QDBusReply<QList<uint>>(_call(node, ACCESSIBLE, u"GetState"_s)).value().value(0);
    }
    void press(const Node &node) const { (void)_call(node, u"org.a11y.atspi.Action"_s, u"DoAction"_s, {0}); }

    /// The first one, from the top.
    std::optional<Node> find(const Node &from, const QString &role, const QString &name, int depth = 0) const
    {
        if (this->role(from) == role && (name.isEmpty() || this->name(from).contains(name)))
            return from;
        const QList<Node> below = depth < DEEPEST ? children(from) : QList<Node>();
        for (const Node &child : below) {
            if (const auto found = find(child, role, name, depth + 1))
                return found;
        }
        return {};
    }

private:
    QDBusMessage _call(const Node &node, const QString &interface, const QString &method,
                       const QVariantList &arguments = {}) const
    {
        QDBusMessage call = QDBusMessage::createMethodCall(node.service, node.path.path(), interface, method);
        call.setArguments(arguments);
        return _bus.call(call);
    }

    QDBusConnection _bus;
};

bool waitFor(const std::function<bool()> &condition)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > LONGEST_WAIT_MS)
            return false;
        QThread::msleep(POLL_MS);
    }
    return true;
}

int fail(const QString &what)
{
    std::printf("%s\n", qPrintable(what));
    return 1;
}

const QStringList ROWS = {u"a.txt, 3 matches, expanded"_s, u"line 2, match 1 of 2: foo foo"_s,
                          u"line 4, 1 match: foo"_s};

int checkRows(const Bus &bus, const QList<Node> &rows)
{
    for (qsizetype index = 0; index < ROWS.size(); ++index) {
        const Node &row = rows[index];
        if (bus.name(row) != ROWS[index])
            return fail(u"row %1 is \"%2\""_s.arg(index).arg(bus.name(row)));
        if (bus.index(row) != index)
            return fail(u"row %1 says it is row %2"_s.arg(index).arg(bus.index(row)));
        if (bool(bus.states(row) & EXPANDED) != (index == 0))
            return fail(u"row %1 has states %2"_s.arg(index).arg(bus.states(row), 0, 16));
        if (bus.role(row) != u"tree item"_s)
            return fail(u"row %1 is a %2"_s.arg(index).arg(bus.role(row)));
    }
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    qDBusRegisterMetaType<Node>();
    qDBusRegisterMetaType<QList<Node>>();
    QDBusInterface launcher(u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.a11y.Bus"_s);
    const QDBusReply<QString> address = launcher.call(u"GetAddress"_s);
    const Bus bus(address.value());
    if (!bus.isConnected())
        return fail(u"there is no accessibility bus: "_s + address.error().message());
    const Node root = {u"org.a11y.atspi.Registry"_s, QDBusObjectPath(u"/org/a11y/atspi/accessible/root"_s)};

    std::optional<Node> found;
    if (!waitFor([&] { return (found = bus.find(root, u"push button"_s, u"Start Search"_s)).has_value(); }))
        return fail(u"no button starts the search"_s);
    bus.press(*found);
    QList<Node> rows;
    const auto isListed = [&] {
        const auto tree = bus.find(root, u"tree"_s, {});
        rows = tree ? bus.children(*tree) : QList<Node>();
        return rows.size() == ROWS.size() && bus.name(rows[1]) == ROWS[1];
    };
    if (!waitFor(isListed))
        return fail(u"there are %1 rows"_s.arg(rows.size()));
    if (!waitFor([&] { return bus.find(root, u"label"_s, u"Search completed (3 matches"_s).has_value(); }))
        return fail(u"nothing says that the search is completed"_s);
    return checkRows(bus, rows);
}
