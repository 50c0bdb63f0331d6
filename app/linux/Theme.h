#pragma once

#include "Appearance.h"

#include <QColor>
#include <QFont>
#include <QPalette>

namespace wakeloft {

/// The palette roles that our own widgets paint with.
namespace role {
constexpr auto background = QPalette::Window;
constexpr auto text = QPalette::WindowText;
constexpr auto secondaryText = QPalette::PlaceholderText;
constexpr auto accent = QPalette::Highlight;
constexpr auto textOnAccent = QPalette::HighlightedText;
constexpr auto buttonFill = QPalette::Button;
constexpr auto link = QPalette::Link;
constexpr auto focusRing = QPalette::Link;
constexpr auto warning = QPalette::BrightText;
constexpr auto failure = QPalette::LinkVisited;
constexpr auto switchOff = QPalette::Dark; ///< the track of a switch that is off
constexpr auto border = QPalette::Mid;
constexpr auto divider = QPalette::Midlight;
constexpr auto star = QPalette::Light;
} // namespace role

QPalette themePalette(bool isDark);

/// `a` with so much of `b`, from 0 to 1.
QColor mixed(const QColor& a, const QColor& b, qreal shareOfB);

/// Gives the whole application our look: our style and `themePalette`. May be called again when the user
/// wants another appearance.
void applyTheme(const Appearance& appearance);

/// Multiples of the system's font size.
namespace fontScale {
constexpr qreal title = 1.3;
constexpr qreal body = 1.0;
constexpr qreal small = 0.92;
constexpr qreal footnote = 0.85;
} // namespace fontScale

QFont scaledFont(qreal scale, QFont::Weight weight = QFont::Normal);

} // namespace wakeloft
