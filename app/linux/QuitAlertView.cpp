#include "QuitAlertView.h"

#include "ActionButton.h"
#include "GlyphImage.h"
#include "TextLabel.h"
#include "Theme.h"
#include "status/AwakeGlyph.h"

#include <QDialog>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QVBoxLayout>

#include <algorithm>

namespace wakeloft {

namespace {

constexpr int textWidth = 280;
constexpr int margin = 20;
constexpr int glyphSide = 40;
constexpr int buttonHeight = 36;
constexpr int buttonGap = 8;

/// A dialog of fixed size, which a tiling compositor floats.
class QuitAlert : public QDialog {
  public:
    explicit QuitAlert(const QuitAlertContent& content);

  private:
    ActionButton* button(ActionButton::Kind kind, const QuitAlertContent::Button& content, int result);
};

ActionButton* QuitAlert::button(ActionButton::Kind kind, const QuitAlertContent::Button& content,
                                int result) {
    auto* made = new ActionButton(kind, [this, result](const PanelAction&) { done(result); }, this);
    made->setContent({content.title, "", {}});
    return made;
}

QuitAlert::QuitAlert(const QuitAlertContent& content) {
    setWindowTitle(QGuiApplication::applicationDisplayName()); // as the bar of a desktop's questions says
    setAccessibleName(QString::fromStdString(content.title));
    setLayoutDirection(content.isRightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint |
                   Qt::WindowStaysOnTopHint);
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(margin, margin, margin, margin);
    rows->setSpacing(0);
    rows->setSizeConstraint(QLayout::SetFixedSize);

    auto* glyph = new GlyphImage(AwakeGlyph{.isFilled = true}.image(glyphSide), this);
    glyph->setFixedHeight(glyph->sizeHint().height());
    auto* title = new TextLabel(scaledFont(fontScale::body, QFont::DemiBold), role::text, this);
    auto* message = new TextLabel(scaledFont(fontScale::small), role::secondaryText, this);
    title->setText(QString::fromStdString(content.title));
    message->setText(QString::fromStdString(content.message));
    rows->addWidget(glyph, 0, Qt::AlignHCenter);
    rows->addSpacing(10);
    for (TextLabel* label : {title, message}) {
        label->setAlignment(Qt::AlignHCenter);
        label->setFixedSize(textWidth, label->heightForWidth(textWidth));
        rows->addWidget(label);
        rows->addSpacing(label == title ? 6 : 18);
    }
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(buttonGap);
    auto* cancel = button(ActionButton::Kind::beside, content.cancel, Rejected);
    auto* confirm = button(ActionButton::Kind::main, content.confirm, Accepted);
    // Alike, unless one needs more and the other leaves it.
    constexpr int half = (textWidth - buttonGap) / 2;
    const int wider = std::min(confirm->naturalWidth(), textWidth - buttonGap - cancel->naturalWidth());
    confirm->setFixedWidth(std::max(half, wider));
    cancel->setFixedWidth(textWidth - buttonGap - confirm->width());
    for (ActionButton* each : {cancel, confirm}) {
        each->setFixedHeight(std::max({buttonHeight, cancel->heightForWidth(cancel->width()),
                                       confirm->heightForWidth(confirm->width())}));
        buttons->addWidget(each);
    }
    rows->addLayout(buttons);
    confirm->setDefault(true);
    confirm->setFocus(Qt::OtherFocusReason);
    setAccessibleDescription(message->text());
}

} // namespace

bool askToQuit(const QuitAlertContent& content) {
    QuitAlert alert(content);
    alert.show();
    alert.raise();
    alert.activateWindow();
    return alert.exec() == QDialog::Accepted;
}

} // namespace wakeloft
