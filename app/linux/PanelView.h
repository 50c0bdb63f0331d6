#pragma once

#include "OutsidePress.h"
#include "PanelContent.h"
#include "PlasmaPlacement.h"
#include "SettingsView.h"
#include "support/Date.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

namespace wakeloft {

class PanelBody;

/// The panel's window. Draws the content it is given and hands the user's actions on; it builds nothing
/// before it is first opened and runs no timer while it is not seen. Main thread.
class PanelView : public QWidget {
  public:
    struct Source {
        std::function<PanelContent()> content;
        /// How long its status line is right; nothing where that does not tick.
        std::function<std::optional<Seconds>()> untilStatusLineTicks;
        std::function<void(const PanelAction&)> perform;
        /// The user opens the panel: it appears, or its window becomes active again. Called before it draws.
        std::function<void()> opened;
        SettingsSource settings;
    };
    explicit PanelView(Source source);
    ~PanelView() override;

    /// Asks for the content again and redraws what differs. Does nothing while hidden.
    void refresh();

    /// Opens a frameless panel beside the tray item, or closes it when it is open. `anchor` is where the host
    /// said that the item was pressed, as it came over the bus. Ignored just after a press closed the panel:
    /// it is the same press. Escape, a press elsewhere and the loss of the focus close it.
    void openAt(QPoint anchor);

    /// Opens it as an ordinary window, for desktops without a tray. Closing it hides it.
    void openAsWindow();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

  private:
    enum class Form { none, panel, window };

    void build();
    void become(Form form);
    void open();
    void draw();
    void drawSettings();
    void fitIfSeen();
    void fitWindow();
    [[nodiscard]] QRect bodyRect() const;

    void armTick();

    void startWatchingPresses();
    void pressedAnywhere();
    void releasedAnywhere();
    [[nodiscard]] bool wasJustClosed() const;

    Source source_;
    PanelContent shown_;
    PanelBody* body_ = nullptr;
    std::unique_ptr<SettingsView> settings_;
    std::string settingsTrouble_;
    Subscription settingsChanged_;
    Form form_ = Form::none;
    bool isComposited_ = false;
    bool isToBeCentered_ = false;
    bool wasDeactivated_ = false;
    QPoint anchor_;
    QTimer tick_;
    QElapsedTimer sinceClosed_;
    bool closingPressIsHeld_ = false;
    OutsidePress outsidePress_;
    PlasmaPlacement plasma_;
};

} // namespace wakeloft
