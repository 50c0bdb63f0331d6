#include "PanelView.h"

#include "PanelBody.h"
#include "PanelFrame.h"
#include "PanelPlacement.h"
#include "X11Desktop.h"

#include <QApplication>
#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScreen>
#include <QWindow>

#include <chrono>
#include <utility>

namespace wakeloft {

namespace {

using namespace std::chrono_literals;

constexpr auto samePress = 200ms;

QScreen* screenOf(QPoint logical) {
    QScreen* screen = QGuiApplication::screenAt(logical);
    return screen != nullptr ? screen : QGuiApplication::primaryScreen();
}

/// Hosts tell X11's device pixels.
QPoint logicalAnchor(QPoint told) {
    if (!isX11())
        return told;
    for (const QScreen* screen : QGuiApplication::screens()) {
        const QRect logical = screen->geometry();
        const QRect native(logical.topLeft(), (QSizeF(logical.size()) * screen->devicePixelRatio()).toSize());
        if (native.contains(told))
            return logicalPoint(told, logical, screen->devicePixelRatio());
    }
    return told;
}

} // namespace

PanelView::PanelView(Source source)
    : source_(std::move(source)),
      outsidePress_({[this] { pressedAnywhere(); }, [this] { releasedAnywhere(); }}) {
    setAttribute(Qt::WA_QuitOnClose, false);
    tick_.setTimerType(Qt::PreciseTimer); // never early, so that no second shows twice
    tick_.setSingleShot(true);
    connect(&tick_, &QTimer::timeout, this, [this] { refresh(); });
}

PanelView::~PanelView() = default;

void PanelView::build() {
    if (body_ != nullptr)
        return;
    body_ = new PanelBody(
        [this](const PanelAction& action) {
            source_.perform(action);
            refresh();
        },
        this);
    settings_ = std::make_unique<SettingsView>(source_.settings, body_->settingsButton());
    settingsChanged_ = source_.settings.menu.changed().subscribe([this] { refresh(); });
}

void PanelView::refresh() {
    if (isVisible())
        draw();
}

void PanelView::draw() {
    PanelContent content = source_.content();
    if (shown_ != content) {
        setWindowTitle(QString::fromStdString(content.title));
        setLayoutDirection(content.isRightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
        body_->setContent(content);
        shown_ = std::move(content);
        fitIfSeen();
    }
    drawSettings();
    armTick();
}

void PanelView::drawSettings() {
    const auto failure = source_.settings.menu.content().failure;
    if (std::exchange(settingsTrouble_, failure) == failure)
        return;
    body_->setSettingsTrouble(failure);
    fitIfSeen();
}

// --- Opening and closing

void PanelView::openAt(QPoint anchor) {
    if (form_ == Form::panel && isVisible()) {
        hide();
        return;
    }
    if (wasJustClosed())
        return;
    const QPoint told = logicalAnchor(anchor);
    const QPoint pointer = QCursor::pos();
    anchor_ = isX11() ? trustedAnchor(told, pointer, screenOf(pointer)->geometry()) : told;
    become(Form::panel);
    open();
    startWatchingPresses();
}

void PanelView::openAsWindow() {
    become(Form::window);
    open();
}

void PanelView::become(Form form) {
    const bool isComposited = form == Form::panel && hasCompositor();
    if (form == form_ && isComposited == isComposited_)
        return;
    hide();
    form_ = form;
    isToBeCentered_ = form == Form::window; // not with its title bar under the tray, where the panel was
    isComposited_ = isComposited;
    setAttribute(Qt::WA_TranslucentBackground, isComposited);
    setAttribute(Qt::WA_NoSystemBackground, isComposited);
    if (form == Form::panel)
        setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint);
    else
        setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                       Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint);
}

void PanelView::open() {
    build();
    source_.opened();
    draw();
    fitWindow(); // the form or the anchor may be new, too
    winId();     // the native window, to describe it before it appears
    if (isComposited_)
        declareShadow(*windowHandle(), panelFrame::margins);
    if (!isVisible()) {
        listInTaskbars(*windowHandle(), form_ == Form::window);
        body_->focusMainButton(Qt::OtherFocusReason);
    }
    wasDeactivated_ = false;
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    if (form_ == Form::panel)
        plasma_.place(*windowHandle(), pos());
    raise();
    activateWindow();
}

bool PanelView::wasJustClosed() const {
    return closingPressIsHeld_ || (sinceClosed_.isValid() && !sinceClosed_.hasExpired(samePress.count()));
}

void PanelView::startWatchingPresses() {
    if (!isX11())
        return; // Wayland takes the focus away at a press elsewhere
    if (auto started = outsidePress_.start(); !started)
        qWarning("%s", started.error().description.c_str());
}

void PanelView::pressedAnywhere() {
    const QRect onScreen = bodyRect().translated(mapToGlobal(QPoint()));
    if (!isVisible() || onScreen.contains(QCursor::pos()) || QApplication::activePopupWidget() != nullptr)
        return;                 // a press beside a menu or popover closes only that
    closingPressIsHeld_ = true; // many hosts tell of a press at its release
    hide();
}

void PanelView::releasedAnywhere() {
    if (!closingPressIsHeld_)
        return;
    closingPressIsHeld_ = false;
    sinceClosed_.start();
    if (!isVisible())
        outsidePress_.stop();
}

void PanelView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && form_ == Form::panel)
        hide();
    else if (!settings_->performShortcut(*event))
        QWidget::keyPressEvent(event);
}

void PanelView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange)
        armTick();
    if (event->type() != QEvent::ActivationChange || !isVisible())
        return;
    if (!isActiveWindow()) {
        if (QApplication::activePopupWidget() != nullptr)
            return; // its own menu or popover
        wasDeactivated_ = true;
        if (form_ == Form::panel)
            hide();
    } else if (std::exchange(wasDeactivated_, false)) {
        source_.opened();
        draw();
    }
}

void PanelView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    armTick();
}

void PanelView::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    plasma_.forget();
    armTick();
    sinceClosed_.start();
    if (!closingPressIsHeld_)
        outsidePress_.stop();
}

// --- The countdown

void PanelView::armTick() {
    tick_.stop();
    const auto wait = isVisible() && !isMinimized() ? source_.untilStatusLineTicks() : std::nullopt;
    if (wait)
        tick_.start(std::chrono::ceil<std::chrono::milliseconds>(std::chrono::duration<double>(*wait)));
}

// --- The window

void PanelView::fitIfSeen() {
    if (isVisible())
        fitWindow(); // else it is done as it opens
}

void PanelView::fitWindow() {
    const QMargins shadow = isComposited_ ? panelFrame::margins : QMargins();
    const QSize size(PanelBody::fixedWidth, body_->place());
    const QRect body(QPoint(shadow.left(), shadow.top()), size);
    body_->setGeometry(body);
    const QSize outer = size.grownBy(shadow);
    if (form_ == Form::panel) {
        const QScreen* screen = screenOf(anchor_);
        const QPoint place = panelPosition(size, anchor_, {screen->geometry(), screen->availableGeometry()});
        move(place - body.topLeft());
        if (isVisible())
            plasma_.place(*windowHandle(), pos());
    }
    setFixedSize(outer);
    if (std::exchange(isToBeCentered_, false))
        move(screen()->availableGeometry().center() - rect().center());
}

QRect PanelView::bodyRect() const {
    return isComposited_ ? rect().marginsRemoved(panelFrame::margins) : rect();
}

void PanelView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const bool isFramed = form_ == Form::panel;
    const int rim = isComposited_ ? panelFrame::radius : 1;
    const QRect inside = bodyRect().adjusted(rim, rim, -rim, -rim);
    if (!isFramed || inside.contains(event->rect()))
        painter.fillRect(event->rect(), palette().color(backgroundRole())); // such as a new second
    else if (isComposited_)
        panelFrame::paint(painter, rect(), palette());
    else
        panelFrame::paintSquare(painter, rect(), palette());
}

} // namespace wakeloft
