#include "systeminfo/mac/platform/live/services.h"

#include "systeminfo/mac/platform/live/fileDescriptor.h"

#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>

namespace norvex {

namespace {

/// The moment by which a query must have ended.
class Deadline
{
public:
    explicit Deadline(std::chrono::milliseconds time) : end_(std::chrono::steady_clock::now() + time) {}

    /// The time that is left; at least 1, because to the functions that take it 0 or less means no limit or a default.
    int milliseconds() const
    {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(end_ - std::chrono::steady_clock::now());
        return int(std::max<std::chrono::milliseconds::rep>(left.count(), 1));
    }

    std::chrono::steady_clock::time_point end() const { return end_; }

private:
    std::chrono::steady_clock::time_point end_;
};

/// The path of the socket at a bus's address ("unix:path=/run/bus,guid=1"), empty for addresses of other kinds. An
/// abstract name begins with a zero byte.
QByteArray socketPath(const QByteArray& address)
{
    const QByteArray transport = "unix:";
    if (!address.startsWith(transport)) {
        return {};
    }
    for (const QByteArray& option : address.mid(transport.size()).split(',')) {
        if (option.startsWith("path=")) {
            return QByteArray::fromPercentEncoding(option.mid(5));
        }
        if (option.startsWith("abstract=")) {
            return '\0' + QByteArray::fromPercentEncoding(option.mid(9));
        }
    }
    return {};
}

/// The addresses of the system bus, the preferred one first.
QList<QByteArray> systemBusAddresses()
{
    const QByteArray chosen = qgetenv("DBUS_SYSTEM_BUS_ADDRESS");
    return chosen.isEmpty() ? QList<QByteArray>{"unix:path=/run/dbus/system_bus_socket"} : chosen.split(';');
}

/// Whether a bus accepts connections at the socket and answers the first step of the authentication. The bus library
/// itself would wait without a limit for a bus that hangs.
bool busAnswers(const QByteArray& path, const Deadline& deadline)
{
    sockaddr_un name = {};
    name.sun_family = AF_UNIX;
    if (path.isEmpty() || std::size_t(path.size()) >= sizeof name.sun_path) {
        return false;
    }
    std::memcpy(name.sun_path, path.constData(), std::size_t(path.size()));
    const auto length = socklen_t(offsetof(sockaddr_un, sun_path) + std::size_t(path.size()));

    const FileDescriptor bus(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    static const char request[] = "\0AUTH\r\n";
    char first = 0;
    return bus && ::connect(bus.get(), reinterpret_cast<const sockaddr*>(&name), length) == 0 &&
           ::send(bus.get(), request, sizeof request - 1, MSG_NOSIGNAL) > 0 &&
           waitUntilReady(bus.get(), POLLIN, deadline.end()) && ::recv(bus.get(), &first, 1, 0) == 1;
}

/// A connection to a bus that nothing else uses. It is opened as a connection to a peer: to a bus, Qt says Hello while
/// it connects, waits up to half a minute for the answer, and ends the process when the bus refuses.
class BusConnection
{
public:
    BusConnection(const QByteArray& address, const Deadline& deadline)
        : deadline_(deadline), name_(uniqueName()),
          connection_(QDBusConnection::connectToPeer(QString::fromLocal8Bit(address), name_))
    {}
    BusConnection(const BusConnection&) = delete;
    BusConnection& operator=(const BusConnection&) = delete;
    ~BusConnection() { QDBusConnection::disconnectFromPeer(name_); }

    /// Makes the connection known to the bus, which it expects before any other call.
    void greet() const
    {
        call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "Hello");
    }

    /// The text that a method without arguments returns; empty when it fails or takes too long. The call does not
    /// start a service that is not running.
    QByteArray call(const char* service, const char* path, const char* interface, const char* method) const
    {
        QDBusMessage message =
            QDBusMessage::createMethodCall(QString::fromLatin1(service), QString::fromLatin1(path),
                                           QString::fromLatin1(interface), QString::fromLatin1(method));
        message.setAutoStartService(false);
        const QDBusMessage reply = connection_.call(message, QDBus::Block, deadline_.milliseconds());
        if (reply.type() != QDBusMessage::ReplyMessage) {
            return {};
        }
        return reply.arguments().value(0).toString().toUtf8();
    }

private:
    static QString uniqueName()
    {
        static std::atomic<unsigned> number{0};
        return QStringLiteral("norvexSystemInfo-%1").arg(++number);
    }

    const Deadline& deadline_;
    QString name_;
    QDBusConnection connection_;
};

} // namespace

std::optional<std::uint32_t> avahiVersionNumber(const QByteArray& versionText)
{
    // The program's name, a blank, and two or three numbers; the last may have a suffix.
    const QList<QByteArray> parts = versionText.mid(versionText.indexOf(' ') + 1).split('.');
    const std::uint32_t weights[] = {10000, 100, 1};
    std::uint32_t number = 0;
    for (int part = 0; part < qMin(parts.size(), 3); ++part) {
        const auto isDigit = [](char character) { return character >= '0' && character <= '9'; };
        const auto end = std::find_if_not(parts[part].cbegin(), parts[part].cend(), isDigit);
        const auto digits = parts[part].left(int(end - parts[part].cbegin()));
        if (digits.isEmpty() || digits.size() > (part == 0 ? 4 : 2)) {
            return std::nullopt;
        }
        number += digits.toUInt() * weights[part];
    }
    return parts.size() < 2 ? std::nullopt : std::make_optional(number);
}

DaemonAnswer avahiVersion()
{
    constexpr std::int32_t notRunning = -65563;
    // Less than the promised 200 ms, because the bus library's timers may be 5 % late.
    const Deadline deadline(std::chrono::milliseconds(180));
    for (const QByteArray& address : systemBusAddresses()) {
        if (!busAnswers(socketPath(address), deadline)) {
            continue;
        }
        const BusConnection bus(address, deadline);
        bus.greet();
        const auto version = avahiVersionNumber(
            bus.call("org.freedesktop.Avahi", "/", "org.freedesktop.Avahi.Server", "GetVersionString"));
        return version ? DaemonAnswer{0, *version} : DaemonAnswer{notRunning, 0};
    }
    return {notRunning, 0};
}

} // namespace norvex
