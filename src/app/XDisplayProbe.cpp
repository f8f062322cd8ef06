#include "XDisplayProbe.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <QGuiApplication>
#include <QScreen>

namespace {
template <typename Reply> using Owned = std::unique_ptr<Reply, decltype(&free)>;

xcb_atom_t atom(xcb_connection_t *x, const char *name)
{
    const Owned<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(x, xcb_intern_atom(x, 0, strlen(name), name), nullptr), &free);
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

// A property of a window, up to 256 bytes of it.
QByteArray property(xcb_connection_t *x, xcb_window_t window, xcb_atom_t name, xcb_atom_t type)
{
    const Owned<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(x, xcb_get_property(x, 0, window, name, type, 0, 64), nullptr),
        &free);
    if (!reply)
        return {};
    return QByteArray(static_cast<const char *>(xcb_get_property_value(reply.get())),
                      xcb_get_property_value_length(reply.get()));
}
} // namespace

xcb_connection_t *XDisplayProbe::connection()
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (QGuiApplication::platformName() != QLatin1StringView("xcb") || !x11)
        return nullptr;
    return x11->connection();
}

QString XDisplayProbe::windowManagerName()
{
    xcb_connection_t *x = connection();
    if (!x)
        return {};
    // An EWMH window manager names itself on a check window that the root window points to.
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
    const QByteArray check =
        property(x, root, atom(x, "_NET_SUPPORTING_WM_CHECK"), XCB_ATOM_WINDOW);
    if (check.size() != sizeof(xcb_window_t))
        return {};
    const QString name =
        QString::fromUtf8(property(x, *reinterpret_cast<const xcb_window_t *>(check.constData()),
                                   atom(x, "_NET_WM_NAME"), atom(x, "UTF8_STRING")));
    return name.isEmpty() ? QStringLiteral("?") : name;
}

bool XDisplayProbe::isXwayland()
{
    xcb_connection_t *x = connection();
    if (!x)
        return false;
    static constexpr char name[] = "XWAYLAND";
    const Owned<xcb_query_extension_reply_t> extension(
        xcb_query_extension_reply(x, xcb_query_extension(x, sizeof name - 1, name), nullptr),
        &free);
    if (extension && extension->present)
        return true;
    // Before Xwayland 23.1 (Debian 12 has 22.1) there is no such extension; its outputs have
    // always been named after it.
    const QList<QScreen *> screens = QGuiApplication::screens();
    return std::any_of(screens.cbegin(), screens.cend(), [](const QScreen *screen) {
        return screen->name().startsWith(QLatin1StringView("XWAYLAND"));
    });
}
