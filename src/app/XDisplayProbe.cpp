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

// A property of a window, up to the given number of 32-bit units of it.
QByteArray property(xcb_connection_t *x, xcb_window_t window, xcb_atom_t name, xcb_atom_t type,
                    uint32_t units = 64)
{
    const Owned<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(x, xcb_get_property(x, 0, window, name, type, 0, units), nullptr),
        &free);
    if (!reply)
        return {};
    return QByteArray(static_cast<const char *>(xcb_get_property_value(reply.get())),
                      xcb_get_property_value_length(reply.get()));
}

// A property that is a list of 32-bit values (windows, atoms).
template <typename Value>
QList<Value> values(xcb_connection_t *x, xcb_window_t window, xcb_atom_t name, xcb_atom_t type)
{
    const QByteArray bytes = property(x, window, name, type, 4096);
    QList<Value> list(bytes.size() / qsizetype(sizeof(Value)));
    if (!list.isEmpty()) // an empty list's data() may be null, which memcpy must never get
        memcpy(list.data(), bytes.constData(), size_t(list.size()) * sizeof(Value));
    return list;
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

QRect XDisplayProbe::dockAt(const QPoint &point)
{
    xcb_connection_t *x = connection();
    if (!x)
        return {};
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
    const xcb_atom_t type = atom(x, "_NET_WM_WINDOW_TYPE");
    const xcb_atom_t dock = atom(x, "_NET_WM_WINDOW_TYPE_DOCK");
    for (xcb_window_t window :
         values<xcb_window_t>(x, root, atom(x, "_NET_CLIENT_LIST"), XCB_ATOM_WINDOW)) {
        if (!values<xcb_atom_t>(x, window, type, XCB_ATOM_ATOM).contains(dock))
            continue;
        const Owned<xcb_get_geometry_reply_t> size(
            xcb_get_geometry_reply(x, xcb_get_geometry(x, window), nullptr), &free);
        const Owned<xcb_translate_coordinates_reply_t> origin(
            xcb_translate_coordinates_reply(x, xcb_translate_coordinates(x, window, root, 0, 0),
                                            nullptr),
            &free);
        if (!size || !origin)
            continue;
        const QRect frame(origin->dst_x, origin->dst_y, size->width, size->height);
        if (frame.contains(point))
            return frame;
    }
    return {};
}
