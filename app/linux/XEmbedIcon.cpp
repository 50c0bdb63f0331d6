#include "XEmbedIcon.h"

#include "FramedMenu.h"
#include "TrayGlyph.h"

#include <QContextMenuEvent>
#include <QPainter>
#include <QTimer>
#include <QWindow>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <optional>
#include <utility>

namespace wakeloft {

namespace {

constexpr int usualSide = 22;
constexpr QRgb lightInk = 0xfff4f4f5;
constexpr QRgb darkInk = 0xff2b2c30;
constexpr int middleGray = 140; // where both inks stand out alike
constexpr std::uint32_t requestDock = 0;
constexpr auto settling = std::chrono::milliseconds(500);

/// Does the tray blend what is translucent with itself? It says so by the visual that it wants.
bool blends(xcb_connection_t* x, xcb_window_t tray) {
    const XcbReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        x, xcb_get_property(x, 0, tray, xcbAtom(x, "_NET_SYSTEM_TRAY_VISUAL"), XCB_ATOM_VISUALID, 0, 1),
        nullptr));
    if (!reply || xcb_get_property_value_length(reply.get()) < static_cast<int>(sizeof(xcb_visualid_t)))
        return false;
    const auto wanted = *static_cast<xcb_visualid_t*>(xcb_get_property_value(reply.get()));
    constexpr int withAlpha = 32;
    for (auto screens = xcb_setup_roots_iterator(xcb_get_setup(x)); screens.rem > 0;
         xcb_screen_next(&screens))
        for (auto depths = xcb_screen_allowed_depths_iterator(screens.data); depths.rem > 0;
             xcb_depth_next(&depths))
            for (int index = 0; index < xcb_depth_visuals_length(depths.data); ++index)
                if (xcb_depth_visuals(depths.data)[index].visual_id == wanted)
                    return depths.data->depth == withAlpha;
    return false;
}

/// Reads the window itself; null when it is gone. The toolkit would read the screen instead, which a
/// compositor has not drawn again yet.
QImage pixelsOf(xcb_connection_t* x, xcb_window_t window, QRect area) {
    constexpr std::uint32_t allPlanes = ~0U;
    const XcbReply<xcb_get_image_reply_t> reply(xcb_get_image_reply(
        x,
        xcb_get_image(x, XCB_IMAGE_FORMAT_Z_PIXMAP, window, static_cast<std::int16_t>(area.x()),
                      static_cast<std::int16_t>(area.y()), static_cast<std::uint16_t>(area.width()),
                      static_cast<std::uint16_t>(area.height()), allPlanes),
        nullptr));
    if (!reply || xcb_get_image_data_length(reply.get()) < area.width() * area.height() * 4)
        return {};
    return QImage(xcb_get_image_data(reply.get()), area.width(), area.height(), QImage::Format_RGB32).copy();
}

/// Where a point of the window is on the screen, in device pixels; nothing when the window is gone.
std::optional<QPoint> onScreen(xcb_connection_t* x, xcb_window_t window, QPoint point) {
    const XcbReply<xcb_translate_coordinates_reply_t> reply(xcb_translate_coordinates_reply(
        x,
        xcb_translate_coordinates(x, window, rootWindow(x), static_cast<std::int16_t>(point.x()),
                                  static_cast<std::int16_t>(point.y())),
        nullptr));
    return reply ? std::optional(QPoint(reply->dst_x, reply->dst_y)) : std::nullopt;
}

} // namespace

XEmbedIcon::XEmbedIcon(xcb_window_t tray, Events events) : events_(std::move(events)) {
    xcb_connection_t* x = xcbConnection();
    setWindowFlags(Qt::Window | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint);
    setAttribute(Qt::WA_TranslucentBackground, blends(x, tray));
    setAttribute(Qt::WA_NoSystemBackground);
    setAttribute(Qt::WA_AlwaysShowToolTips); // the tray is never the active window
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_QuitOnClose, false);
    setFocusPolicy(Qt::NoFocus);
    setMinimumSize(usualSide, usualSide); // for trays that give a window what it needs
    resize(usualSide, usualSide);
    connect(this, &QAbstractButton::clicked, this, [this] { tellPress(); });

    xcb_client_message_event_t request{};
    request.response_type = XCB_CLIENT_MESSAGE;
    request.format = 32;
    request.window = tray;
    request.type = xcbAtom(x, "_NET_SYSTEM_TRAY_OPCODE");
    request.data.data32[0] = XCB_CURRENT_TIME;
    request.data.data32[1] = requestDock;
    request.data.data32[2] = static_cast<std::uint32_t>(winId());
    xcb_send_event(x, 0, tray, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&request));
    xcb_flush(x);
    windowHandle()->installEventFilter(this);
}

void XEmbedIcon::setFace(const MenuBarIcon& icon, const TrayItemFace& face) {
    icon_ = icon;
    face_ = face;
    setAccessibleName(QString::fromStdString(face.title));
    const std::string toolTip =
        face.toolTipText.empty() ? face.toolTipTitle : face.toolTipTitle + "\n" + face.toolTipText;
    setToolTip(QString::fromStdString(toolTip));
    setLayoutDirection(face.isRightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
    update();
}

void XEmbedIcon::tellPress() {
    const auto middle = (QPointF(width(), height()) * devicePixelRatio() / 2).toPoint();
    if (const auto place = onScreen(xcbConnection(), static_cast<xcb_window_t>(winId()), middle))
        events_.pressed(place->x(), place->y()); // else the tray has just gone, and the window with it
}

/// What the tray shows where the icon is. One that does not blend lends its background for a moment: kept, it
/// would forbid the tray to move the window into another kind of window.
QImage XEmbedIcon::trayBehind() {
    xcb_connection_t* x = xcbConnection();
    const auto window = static_cast<xcb_window_t>(winId());
    if (testAttribute(Qt::WA_TranslucentBackground)) { // then the corner is the tray's already
        const auto corner = onScreen(x, window, {});
        return corner ? pixelsOf(x, rootWindow(x), {*corner, QSize(1, 1)}) : QImage();
    }
    const auto setBackground = [&](std::uint32_t pixmap) {
        xcb_change_window_attributes(x, window, XCB_CW_BACK_PIXMAP, &pixmap);
    };
    setBackground(XCB_BACK_PIXMAP_PARENT_RELATIVE);
    xcb_clear_area(x, 0, window, 0, 0, 0, 0);
    setBackground(XCB_BACK_PIXMAP_NONE);
    const XcbReply<xcb_get_geometry_reply_t> size(
        xcb_get_geometry_reply(x, xcb_get_geometry(x, window), nullptr));
    return size ? pixelsOf(x, window, {0, 0, size->width, size->height}) : QImage();
}

// A tray that changes its background, or draws it only after it has embedded the icon, does not say so.
void XEmbedIcon::showEvent(QShowEvent* event) {
    QAbstractButton::showEvent(event);
    QTimer::singleShot(settling, this, [this] { update(); });
}

// What lies behind may have been covered when it was looked at.
bool XEmbedIcon::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Expose)
        update();
    return QAbstractButton::eventFilter(watched, event);
}

void XEmbedIcon::enterEvent(QEnterEvent* event) {
    QAbstractButton::enterEvent(event);
    update();
}

// Nothing tells an old tray's colours, and the desktop's preference says little about them: many bars are
// dark on the lightest of desktops. So the ink goes by what lies behind.
void XEmbedIcon::paintEvent(QPaintEvent*) {
    const QImage behind = trayBehind();
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    if (testAttribute(Qt::WA_TranslucentBackground))
        painter.fillRect(rect(), Qt::transparent);
    else if (behind.isNull())
        painter.fillRect(rect(), palette().window());
    else
        painter.drawImage(rect(), behind);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);

    QRgb ink = trayGlyphColor;
    if (!behind.isNull())
        ink = qGray(behind.pixel(0, 0)) < middleGray ? lightInk : darkInk;
    const qreal ratio = devicePixelRatio();
    const int side = static_cast<int>(std::min(width(), height()) * ratio);
    const auto direction = face_.isRightToLeft ? LayoutDirection::rightToLeft : LayoutDirection::leftToRight;
    QImage image = trayImage(icon_, direction, side, QColor::fromRgb(ink));
    image.setDevicePixelRatio(ratio);
    const auto inset = [&](int length) { return std::floor((length * ratio - side) / 2) / ratio; };
    painter.drawImage(QPointF(inset(width()), inset(height())), image);
}

void XEmbedIcon::contextMenuEvent(QContextMenuEvent* event) {
    auto* menu = new FramedMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (const TrayMenuLine& line : face_.menu) {
        if (line.isSeparator) {
            menu->addSeparator();
            continue;
        }
        QAction* action = menu->addAction(
            QString::fromStdString(line.label).replace(QLatin1Char('&'), QLatin1String("&&")));
        action->setEnabled(line.isEnabled);
        action->setCheckable(line.isChecked.has_value());
        action->setChecked(line.isChecked.value_or(false));
        connect(action, &QAction::triggered, this, [this, id = line.id] { events_.menuChosen(id); });
    }
    menu->openAt(event->globalPos());
}

} // namespace wakeloft
